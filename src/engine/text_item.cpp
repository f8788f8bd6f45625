#include "engine/text_item.h"

#include "engine/item_planes.h"
#include "engine/text_rasteriser.h"
#include "image/layer_planes.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

namespace {

constexpr LONG nMargin = 4; ///< pixels round a text
constexpr LONG nScale = 2;  ///< of the canvas that an outlined text is drawn on, before small fonts raise it

void Adopt(CTaskBlob& blob, BYTE* pPicture, const SIZE& size) {
    if (pPicture) blob.TakeOver(pPicture, PictureBytes(size));
}

} // namespace

HRESULT DrawText(const OverlayItem& item, const char* pszText, double dblOutlineWidth, TextCoverage& coverage) {
    const LOGFONT* pFont = item.logFont.lfFaceName[0] ? &item.logFont : nullptr;
    SIZE& size = coverage.size;
    BYTE* pFore = nullptr;
    BYTE* pBack = nullptr;
    BYTE* pOutline = nullptr;
    const HRESULT hr =
        dblOutlineWidth != 0.0
            ? CImageHelp::OutlineString2Alpha(pszText, pFont, &size, &pFore, &pBack, &pOutline, dblOutlineWidth,
                                              item.nTextFormat, nMargin, nScale)
            : CImageHelp::String2ImageAlpha(pszText, pFont, &size, &pFore, &pBack, item.nTextFormat, nMargin);
    if (FAILED(hr)) return hr;
    Adopt(coverage.fore, pFore, size);
    Adopt(coverage.back, pBack, size);
    Adopt(coverage.outline, pOutline, size);
    return hr;
}

HRESULT UpdateTextItem(OverlayItem& item, const char* pszText, std::uint32_t dwInput) {
    if (!pszText) return E_INVALIDARG;
    TextCoverage coverage;
    coverage.size = item.sizeItem;
    const HRESULT hr = DrawText(item, pszText, item.props.dblOutlineWidth, coverage);
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(
            TraceCategory::General, TraceLevel::Error,
            "###Err### CCoVellumcaster::UpdateTextItem - CImageHelp::OutlineString2Alpha('%s') FAILED hr = 0x%08X\n",
            pszText, hr);
        return hr;
    }
    item.sizeItem = coverage.size;
    item.layerFore.blobAlpha = std::move(coverage.fore);
    item.layerBack.blobAlpha = std::move(coverage.back);
    item.layerOutline.blobAlpha = std::move(coverage.outline);
    return PrepareImage(item, dwInput);
}

} // namespace vellumcaster
