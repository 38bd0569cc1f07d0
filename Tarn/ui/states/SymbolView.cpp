#include "Tarn/ui/states/SymbolView.h"

#include <QtGui/QPainter>

namespace tarn {

SymbolView::SymbolView(int side, Icons::Tint tint, QWidget* parent) : QWidget(parent), tint_(tint) {
    setFixedSize(side, side);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SymbolView::setSymbol(std::string_view name) {
    icon_ = Icons::symbol(name, tint_);
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    icon_.paint(&painter, rect());
}

}  // namespace tarn
