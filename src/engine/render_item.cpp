#include "engine/item_planes.h"
#include "engine/overlay_engine.h"
#include "engine/text_item.h"
#include "image/format_table.h"
#include "image/mix_block.h"
#include "image/plane_layout.h"
#include "image/prepare_layer.h"
#include "image/rounding.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/utf8.h"

#include <cstdlib>

namespace vellumcaster {

namespace {

/// The picture that an item is drawn over.
PictureFormat TargetFormat(const ImageInfoTag& info) {
    const std::int64_t height = std::abs(std::int64_t{info.biHeight});
    return {info.biBitCount == 32 ? format_code::RGB32 : format_code::RGB24, info.biWidth, SaturateToInt32(height),
            static_cast<DWORD>(info.biWidth)};
}

HRESULT MixLayers(const OverlayItem& item, const SIZE& size, const PictureFormat& target, BYTE* pbImage) {
    const PictureFormat overlay = OverlayFormat(target.dwFormat, size);
    for (const auto member : mixingOrder) {
        const OverlayLayer& layer = item.*member;
        if (!layer.TakesPartInMixing()) continue;
        const HRESULT hr = CPictureFormats::MixBlockAlpha(layer.planeColor.Data(), layer.planeWeight.Data(), pbImage,
                                                          &overlay, &target, nullptr, nullptr);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

/// Whether a record asks for other coverage pictures than the item has.
bool NeedsDrawing(const OverlayItem& item, const OVERLAY_PROPS& props) {
    return props.bsTextString && (CBstr::View(props.bsTextString) != item.bsName.View() ||
                                  props.dblOutlineWidth != item.props.dblOutlineWidth);
}

HRESULT DrawTrialText(const OverlayItem& item, const OVERLAY_PROPS& props, OverlayItem& drawn) {
    TextCoverage coverage;
    const std::string text = ToUtf8(CBstr::View(props.bsTextString));
    const HRESULT hr = DrawText(item, text.c_str(), props.dblOutlineWidth, coverage);
    if (FAILED(hr)) return hr;
    drawn.sizeItem = coverage.size;
    drawn.layerFore.blobAlpha = std::move(coverage.fore);
    drawn.layerBack.blobAlpha = std::move(coverage.back);
    drawn.layerOutline.blobAlpha = std::move(coverage.outline);
    return S_OK;
}

HRESULT RenderText(const OverlayItem& item, const OVERLAY_PROPS& props, const PictureFormat& target, BYTE* pbImage) {
    OverlayItem trial;
    trial.props = props;
    const OverlayItem* pCoverage = &item;
    if (NeedsDrawing(item, props)) {
        const HRESULT hr = DrawTrialText(item, props, trial);
        if (FAILED(hr)) return hr;
        pCoverage = &trial;
    }
    if (pCoverage->layerFore.blobAlpha.IsEmpty()) return E_UNEXPECTED;
    const HRESULT hr = PrepareText(*pCoverage, target.dwFormat, trial);
    return FAILED(hr) ? hr : MixLayers(trial, pCoverage->sizeItem, target, pbImage);
}

} // namespace

HRESULT COverlayEngine::GetItemTextFormat(Cookie nCookie, LOGFONT* pLogFont, LONG* pnTextFormat, ITEM_TYPE* pType) {
    return WithItem(nCookie, [=](const OverlayItem& item) {
        if (pLogFont) *pLogFont = item.logFont;
        if (pnTextFormat) *pnTextFormat = item.nTextFormat;
        if (pType) *pType = item.eType;
        return S_OK;
    });
}

HRESULT COverlayEngine::RenderItem(Cookie nCookie, const OVERLAY_PROPS* pProps, const ImageInfoTag* pImageInfo,
                                   BYTE* pbImage) {
    if (!pImageInfo) return E_POINTER;
    const PictureFormat target = TargetFormat(*pImageInfo);
    return WithItem(nCookie, [&](const OverlayItem& item) {
        const OVERLAY_PROPS& props = pProps ? *pProps : item.props;
        if (item.eType != eImage) return WithoutExceptions([&] { return RenderText(item, props, target, pbImage); });
        if (item.blobImage.IsEmpty()) return E_UNEXPECTED;
        OverlayLayer layer;
        return PrepareImage2(item.blobImage, item.sizeItem, target.dwFormat, props, layer);
    });
}

} // namespace vellumcaster
