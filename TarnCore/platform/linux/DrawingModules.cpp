#include "TarnCore/platform/linux/DrawingModules.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn::DrawingModules {
namespace {

template <class Entry>
auto load(const char* module, const char* symbol, int version) {
    auto* entry = reinterpret_cast<Entry*>(loadModuleSymbol(module, symbol));
    return entry ? entry(version) : nullptr;
}

}  // namespace

const PageDrawing* pages() {
    static const PageDrawing* const drawing =
        load<PageDrawingEntry>("tarn-documents", pageDrawingSymbol, pageDrawingVersion);
    return drawing;
}

const FontDrawing* fonts() {
    static const FontDrawing* const drawing =
        load<FontDrawingEntry>("tarn-fonts", fontDrawingSymbol, fontDrawingVersion);
    return drawing;
}

const MediaDecoding* media() {
    static const MediaDecoding* const decoding =
        load<MediaDecodingEntry>("tarn-player", mediaDecodingSymbol, mediaDecodingVersion);
    return decoding;
}

}  // namespace tarn::DrawingModules
