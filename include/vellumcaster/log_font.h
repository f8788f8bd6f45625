#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// A font as an application asks for it. Sixty bytes, of which `lfFaceName` is UTF-8.
struct LOGFONT {
    LONG lfHeight = 0; ///< pixels: positive the cell, negative the em square, 0 the default
    LONG lfWidth = 0;
    LONG lfEscapement = 0;  ///< slope of the line, tenths of a degree
    LONG lfOrientation = 0; ///< slope of each glyph, tenths of a degree
    LONG lfWeight = 0;      ///< 400 regular, 700 bold, 0 the default
    BYTE lfItalic = 0;
    BYTE lfUnderline = 0;
    BYTE lfStrikeOut = 0;
    BYTE lfCharSet = 0;
    BYTE lfOutPrecision = 0;
    BYTE lfClipPrecision = 0;
    BYTE lfQuality = 0; ///< 3: edges are not smoothed
    BYTE lfPitchAndFamily = 0;
    char lfFaceName[32] = {}; ///< ends in a zero; empty: no font was asked for
};
static_assert(sizeof(LOGFONT) == 60);

} // namespace vellumcaster
