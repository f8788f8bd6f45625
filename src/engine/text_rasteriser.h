#pragma once

#include <vellumcaster/log_font.h>
#include <vellumcaster/results.h>

/// Turns strings into coverage pictures, which say pixel by pixel how much of the text covers the pixel. Colours come
/// later: a text whose colours alone change keeps its pictures.
///
/// A coverage picture has 32-bit pixels, rows from the top down without a gap, and the same coverage in all four bytes
/// of a pixel: 0 outside of the text, 255 wholly inside. Text is UTF-8 that ends in a zero; bytes that are none become
/// U+FFFD. The operations may be called on any thread and share nothing.
namespace vellumcaster::CImageHelp {

/// Draws a text with the smoothness that its font asks for.
/// \param pLogFont       null: the platform's default font.
/// \param pSize          in: the least size in pixels; out: the size of the pictures, the width a multiple of 8, the
///                       height of 2. Null: no least size, and none is told.
/// \param ppFore         the text's coverage, in memory of `CoTaskMemAlloc` that is then the caller's.
/// \param ppBack         its complement, likewise; null where it is not wanted. It comes back as null where there is no
///                       memory for it.
/// \param nTextFormat    the format word, `DT_...`; an ampersand is an ordinary character all the same.
/// \param nMargin        pixels that are kept free on each side.
/// \return S_OK; E_POINTER for a null `pszText` or `ppFore`; E_INVALIDARG for a canvas beyond the size limits of
///         pictures; E_OUTOFMEMORY; the platform's failure, as for an empty text. After a failure no picture is given
///         out.
[[nodiscard]] HRESULT String2ImageAlpha(const char* pszText, const LOGFONT* pLogFont, SIZE* pSize, BYTE** ppFore,
                                        BYTE** ppBack, LONG nTextFormat, LONG nMargin);

/// Draws a text without smoothing at a multiple of its size and averages it down; also the stroke round its glyphs,
/// which is centred on their edges.
/// \param ppOutline        the stroke's coverage, like `ppFore`; null where it is not wanted.
/// \param dblOutlineWidth  width of the stroke in pixels of the pictures; of a negative one the magnitude counts.
/// \param nScale           the multiple, from 1. Small fonts raise it, a font by its em height to 16; the canvas stays
///                         in the font's own size where there is no font.
/// \return as `String2ImageAlpha`; E_INVALIDARG also for a multiple below 1 and a stroke of more than 32767
///         pixels at the multiple.
[[nodiscard]] HRESULT OutlineString2Alpha(const char* pszText, const LOGFONT* pLogFont, SIZE* pSize, BYTE** ppFore,
                                          BYTE** ppBack, BYTE** ppOutline, double dblOutlineWidth, LONG nTextFormat,
                                          LONG nMargin, LONG nScale);

} // namespace vellumcaster::CImageHelp
