#include "engine/item_planes.h"

#include "image/layer_planes.h"
#include "image/prepare_layer.h"

#include <array>

namespace vellumcaster {

namespace {

/// A text's layers, in the order in which they are prepared, and the colours that they are drawn in.
struct TextLayer {
    OverlayLayer OverlayItem::*layer;
    LONG OVERLAY_PROPS::*color;

    [[nodiscard]] OverlayLayer& LayerOf(OverlayItem& item) const { return item.*layer; }
    [[nodiscard]] std::uint32_t ColorOf(const OverlayItem& item) const {
        return static_cast<std::uint32_t>(item.props.*color);
    }
};

constexpr std::array<TextLayer, 3> textLayers{{
    {&OverlayItem::layerFore, &OVERLAY_PROPS::lForeColor},
    {&OverlayItem::layerBack, &OVERLAY_PROPS::lBackColor},
    {&OverlayItem::layerOutline, &OVERLAY_PROPS::lOutColor},
}};

} // namespace

HRESULT PrepareImage(OverlayItem& item, std::uint32_t dwInput) {
    if (dwInput == 0) return S_OK;
    if (item.eType == eImage) {
        if (item.blobImage.IsEmpty()) return E_UNEXPECTED;
        return PrepareImage2(item.blobImage, item.sizeItem, dwInput, item.props, item.layerFore);
    }
    if (item.layerFore.blobAlpha.IsEmpty()) return S_OK;
    return PrepareText(item, dwInput, item);
}

HRESULT PrepareText(const OverlayItem& coverage, std::uint32_t dwFormat, OverlayItem& item) {
    // Where a layer fails, those behind it must not be mixed with what they were in another format or size.
    for (const TextLayer& text : textLayers) {
        text.LayerOf(item).planeAlpha.Clear();
        text.LayerOf(item).planeWeight.Clear();
    }
    for (const TextLayer& text : textLayers) {
        const HRESULT hr = PrepareImage2((coverage.*text.layer).blobAlpha, coverage.sizeItem, dwFormat,
                                         text.ColorOf(item), item.props.sAlphaValue, text.LayerOf(item));
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT UpdateItemColors(OverlayItem& item, std::uint32_t dwOutput) {
    if (item.eType == eImage) {
        item.layerBack.planeColor.Clear();
        item.layerOutline.planeColor.Clear();
        return S_OK;
    }
    for (const TextLayer& text : textLayers) {
        const std::uint32_t color = text.ColorOf(item);
        const bool bHasLayer = text.layer != &OverlayItem::layerOutline || item.props.dblOutlineWidth > 0.0;
        const HRESULT hr =
            FillPlane(text.LayerOf(item), item.sizeItem, dwOutput, color, bHasLayer && AlphaOf(color) != 0);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT UpdateItemAlpha(OverlayItem& item, std::uint32_t dwInput) {
    if (item.eType == eImage) {
        item.layerBack.planeWeight.Clear();
        item.layerOutline.planeWeight.Clear();
        return WeighPlane(item.layerFore, item.sizeItem, dwInput, EffectiveAlpha(item.props.sAlphaValue));
    }
    for (const TextLayer& text : textLayers) {
        const std::uint32_t alpha = EffectiveAlpha(item.props.sAlphaValue, text.ColorOf(item));
        const HRESULT hr = WeighPlane(text.LayerOf(item), item.sizeItem, dwInput, alpha);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

} // namespace vellumcaster
