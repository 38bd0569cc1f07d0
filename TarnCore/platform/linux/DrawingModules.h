#pragma once

#include "TarnCore/platform/FontDrawing.h"
#include "TarnCore/platform/MediaDecoding.h"
#include "TarnCore/platform/PageDrawing.h"

namespace tarn {

/// What draws documents and fonts and decodes films, each from a module that is loaded when it is
/// first asked for. Null where the module is missing.
namespace DrawingModules {

const PageDrawing* pages();
const FontDrawing* fonts();
const MediaDecoding* media();

}  // namespace DrawingModules

/// The modules export a function of this type and name each, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using PageDrawingEntry = const PageDrawing*(int version);
inline constexpr int pageDrawingVersion = 1;
inline constexpr const char* pageDrawingSymbol = "tarnPageDrawing";
using FontDrawingEntry = const FontDrawing*(int version);
inline constexpr int fontDrawingVersion = 1;
inline constexpr const char* fontDrawingSymbol = "tarnFontDrawing";
using MediaDecodingEntry = const MediaDecoding*(int version);
inline constexpr int mediaDecodingVersion = 1;
inline constexpr const char* mediaDecodingSymbol = "tarnMediaDecoding";

}  // namespace tarn
