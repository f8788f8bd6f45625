#include "engine/text_rasteriser.h"
#include "engine/text_steps.h"
#include "platform/com/no_exceptions.h"

#include <algorithm>

namespace vellumcaster::CImageHelp {

namespace {

constexpr std::int64_t nWidthStep = 8;
constexpr std::int64_t nHeightStep = 2;

/// All channels of the canvas are equal, and so is their average: the picture is the text's coverage as it is read.
HRESULT DrawPlain(const char* pszText, const LOGFONT* pLogFont, SIZE* pSize, BYTE** ppFore, BYTE** ppBack,
                  LONG nTextFormat, LONG nMargin) {
    CTextDC dc;
    HRESULT hr = OpenContext(dc, pLogFont);
    if (FAILED(hr)) return hr;
    SIZE extent;
    hr = MeasureText(dc, pszText, !pLogFont, extent);
    if (FAILED(hr)) return hr;

    const SIZE least = pSize ? *pSize : SIZE{};
    const std::int64_t margins = 2 * std::int64_t{nMargin};
    const std::int64_t cx = RoundUp(std::max<std::int64_t>(extent.cx + margins, least.cx), nWidthStep);
    const std::int64_t cy = RoundUp(std::max<std::int64_t>(extent.cy + margins, least.cy), nHeightStep);
    CTextCanvas canvas;
    hr = CreateCanvas(canvas, cx, cy, 1);
    if (FAILED(hr)) return hr;
    PlacedText text;
    hr = PlaceText(dc, pszText, cx, cy, nMargin, nTextFormat, text);
    if (FAILED(hr)) return hr;
    canvas.FillText(text);

    CTaskBlob fore;
    SIZE size;
    hr = ReadCanvas(canvas, fore, size);
    if (FAILED(hr)) return hr;
    if (pSize) *pSize = size;
    if (ppBack) {
        CTaskBlob back = ComplementOf(fore);
        GiveOut(back, ppBack);
    }
    GiveOut(fore, ppFore);
    return S_OK;
}

} // namespace

HRESULT String2ImageAlpha(const char* pszText, const LOGFONT* pLogFont, SIZE* pSize, BYTE** ppFore, BYTE** ppBack,
                          LONG nTextFormat, LONG nMargin) {
    if (!pszText || !ppFore) return E_POINTER;
    *ppFore = nullptr;
    if (ppBack) *ppBack = nullptr;
    return WithoutExceptions([&] { return DrawPlain(pszText, pLogFont, pSize, ppFore, ppBack, nTextFormat, nMargin); });
}

} // namespace vellumcaster::CImageHelp
