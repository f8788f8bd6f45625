#include "engine/text_item.h"

#include "engine/item_planes.h"
#include "engine/text_rasteriser.h"
#include "image/layer_planes.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

namespace {

constexpr LONG nMargin = 4; ///< pixels round a text
constexpr LONG nScale = 2;  ///< of the canvas that an outlined text is drawn on, before small fonts raise it

/// Coverage pictures on their way into an item.
struct Coverage {
    CTaskBlob fore;
    CTaskBlob back;
    CTaskBlob outline;
};

void Adopt(CTaskBlob& blob, BYTE* pPicture, const SIZE& size) {
    if (pPicture) blob.TakeOver(pPicture, PictureBytes(size));
}

HRESULT Draw(const OverlayItem& item, const char* pszText, SIZE& size, Coverage& coverage) {
    const LOGFONT* pFont = item.logFont.lfFaceName[0] ? &item.logFont : nullptr;
    BYTE* pFore = nullptr;
    BYTE* pBack = nullptr;
    BYTE* pOutline = nullptr;
    const HRESULT hr =
        item.props.dblOutlineWidth != 0.0
            ? CImageHelp::OutlineString2Alpha(pszText, pFont, &size, &pFore, &pBack, &pOutline,
                                              item.props.dblOutlineWidth, item.nTextFormat, nMargin, nScale)
            : CImageHelp::String2ImageAlpha(pszText, pFont, &size, &pFore, &pBack, item.nTextFormat, nMargin);
    if (FAILED(hr)) return hr;
    Adopt(coverage.fore, pFore, size);
    Adopt(coverage.back, pBack, size);
    Adopt(coverage.outline, pOutline, size);
    return hr;
}

} // namespace

HRESULT UpdateTextItem(OverlayItem& item, const char* pszText, std::uint32_t dwInput) {
    if (!pszText) return E_INVALIDARG;
    SIZE size = item.sizeItem;
    Coverage coverage;
    const HRESULT hr = Draw(item, pszText, size, coverage);
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(
            TraceCategory::General, TraceLevel::Error,
            "###Err### CCoVellumcaster::UpdateTextItem - CImageHelp::OutlineString2Alpha('%s') FAILED hr = 0x%08X\n",
            pszText, hr);
        return hr;
    }
    item.sizeItem = size;
    item.layerFore.blobAlpha = std::move(coverage.fore);
    item.layerBack.blobAlpha = std::move(coverage.back);
    item.layerOutline.blobAlpha = std::move(coverage.outline);
    return PrepareImage(item, dwInput);
}

} // namespace vellumcaster
