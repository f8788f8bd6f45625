#include "engine/text_steps.h"

#include "engine/bitmap_to_image.h"
#include "image/rounding.h"
#include "platform/kernel/last_error.h"
#include "platform/kernel/trace.h"

#include <algorithm>

namespace vellumcaster::CImageHelp {

HRESULT OpenContext(CTextDC& dc, const LOGFONT* pLogFont) {
    if (!dc.CreateCompatibleDC()) {
        const HRESULT hr = LastErrorAsResult();
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CImageHelp::String2ImageAlpha(): CreateCompatibleDC() FAILED hr = 0x%08X\n", hr);
        return hr;
    }
    if (pLogFont && !dc.CreateFontIndirectA(*pLogFont)) {
        const HRESULT hr = LastErrorAsResult();
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CImageHelp::String2ImageAlpha(): CreateFontIndirect() FAILED hr = 0x%08X\n", hr);
        return hr;
    }
    return S_OK;
}

HRESULT MeasureText(CTextDC& dc, const char* pszText, bool bDefaultFont, SIZE& extent) {
    RECT rc;
    const DWORD format = DT_CALCRECT | DT_NOPREFIX | (bDefaultFont ? DT_INTERNAL : 0);
    if (dc.DrawTextA(pszText, &rc, format, nullptr) == 0) {
        const HRESULT hr = LastErrorAsResult();
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CImageHelp::String2ImageAlpha - DrawText( DT_CALCRECT )=0x%X\n", hr);
        return hr;
    }
    extent = {rc.right, rc.bottom};
    return S_OK;
}

HRESULT CreateCanvas(CTextCanvas& canvas, std::int64_t cx, std::int64_t cy, LONG nBlock) {
    if (canvas.CreateBitmap(cx, cy, nBlock)) return S_OK;
    const HRESULT hr = LastErrorAsResult();
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                      "###Err### CImageHelp::String2ImageAlpha - CreateCompatibleBitmap=0x%X\n", hr);
    return hr;
}

HRESULT PlaceText(CTextDC& dc, const char* pszText, std::int64_t cx, std::int64_t cy, LONG nMargin, LONG nTextFormat,
                  PlacedText& text) {
    RECT rc{nMargin, nMargin, SaturateToInt32(cx - nMargin), SaturateToInt32(cy - nMargin)};
    if (dc.DrawTextA(pszText, &rc, static_cast<DWORD>(nTextFormat) | DT_NOPREFIX, &text) != 0) return S_OK;
    const HRESULT hr = LastErrorAsResult();
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                      "###Err### CImageHelp::String2ImageAlpha - DrawText()=0x%X\n", hr);
    return hr;
}

HRESULT ReadCanvas(const CTextCanvas& canvas, CTaskBlob& picture, SIZE& size) {
    BYTE* pPixels = nullptr;
    BITMAPINFOHEADER info;
    const HRESULT hr = Bitmap2Image(canvas, &pPixels, &info);
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CImageHelp::String2ImageAlpha - CopyBitmap() FAILED hr = 0x%08X\n", hr);
        return hr;
    }
    picture.TakeOver(pPixels, info.biSizeImage);
    size = {info.biWidth, -info.biHeight};
    return S_OK;
}

CTaskBlob ComplementOf(const CTaskBlob& picture) {
    CTaskBlob complement;
    if (FAILED(complement.Resize(picture.Size()))) return complement;
    std::transform(picture.Data(), picture.Data() + picture.Size(), complement.Data(),
                   [](BYTE coverage) { return static_cast<BYTE>(255 - coverage); });
    return complement;
}

} // namespace vellumcaster::CImageHelp
