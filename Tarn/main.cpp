#include <QtWidgets/QApplication>

#include "TarnCore/platform/linux/LinuxPlatform.h"

int main(int argc, char** argv) {
    tarn::Platform::setCurrent(tarn::makeLinuxPlatform());
    QApplication app(argc, argv);
    return 0;
}
