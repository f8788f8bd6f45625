#include "image/prepare_layer.h"

#include "image/alpha_to_weight.h"
#include "image/block_fill.h"
#include "image/color_key.h"
#include "image/convert.h"
#include "image/layer_planes.h"
#include "image/plane_layout.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

namespace {

/// The pixels of a 32-bit picture. Blocks of memory are aligned for words.
const std::uint32_t* Pixels(const CTaskBlob& blob) { return reinterpret_cast<const std::uint32_t*>(blob.Data()); }

HRESULT FillAlphaPlane(const CTaskBlob& blobAlpha, const SIZE& size, std::uint32_t dwFormat, CVirtualBlob& plane) {
    HRESULT hr = plane.Resize(PictureBytes(size));
    if (FAILED(hr)) return hr;
    hr = CImageHelp::AlphaToWeight(dwFormat, Pixels(blobAlpha), plane.Data(), &size);
    if (FAILED(hr)) plane.Clear(); // or a new alpha would be laid over what it held before
    return hr;
}

HRESULT ApplyKey(const CTaskBlob& blobImage, const SIZE& size, const OVERLAY_PROPS& props, CTaskBlob& blobAlpha) {
    const HRESULT hr = blobAlpha.Resize(PictureBytes(size));
    if (FAILED(hr)) return hr;
    return ApplyColorKey(Pixels(blobImage), reinterpret_cast<std::uint32_t*>(blobAlpha.Data()), size.cx, size.cy,
                         props.nColorKeyMin, props.nColorKeyMax);
}

HRESULT ConvertPicture(CTaskBlob& blobAlpha, const SIZE& size, std::uint32_t dwFormat, CVirtualBlob& plane) {
    const HRESULT hr = plane.Resize(PictureBytes(size));
    if (FAILED(hr)) return hr;
    const PictureFormat pfPicture{format_code::RGB32, size.cx, -size.cy, 0};
    const PictureFormat pfPlane{dwFormat, size.cx, -size.cy, 0};
    return Img_Convert(blobAlpha.Data(), plane.Data(), &pfPicture, &pfPlane, nullptr, nullptr, 0, nullptr);
}

} // namespace

HRESULT PrepareImage2(const CTaskBlob& blobImage, const SIZE& size, std::uint32_t dwFormat, const OVERLAY_PROPS& props,
                      OverlayLayer& layer) {
    layer.planeWeight.Clear(); // so that a layer of which a step fails is not drawn
    if (!IsPictureSize(size) || blobImage.Size() < PictureBytes(size)) return E_INVALIDARG;
    HRESULT hr = ApplyKey(blobImage, size, props, layer.blobAlpha);
    if (FAILED(hr)) return hr;

    hr = ConvertPicture(layer.blobAlpha, size, dwFormat, layer.planeColor);
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CCoVellumcaster::PrepareImage2 - Img_Convert() FAILED hr = 0x%08X\n", hr);
        return hr;
    }
    hr = FillAlphaPlane(layer.blobAlpha, size, dwFormat, layer.planeAlpha);
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CCoVellumcaster::PrepareImage2 - CImageHelp::AlphaToWeight() FAILED hr = 0x%08X\n",
                          hr);
        return hr;
    }
    return WeighPlane(layer, size, dwFormat, EffectiveAlpha(props.sAlphaValue));
}

HRESULT PrepareImage2(const CTaskBlob& blobAlpha, const SIZE& size, std::uint32_t dwFormat, std::uint32_t color,
                      std::int16_t alpha, OverlayLayer& layer) {
    layer.planeWeight.Clear();
    const bool bCovers = !blobAlpha.IsEmpty();
    if (bCovers && (!IsPictureSize(size) || blobAlpha.Size() < PictureBytes(size))) return E_INVALIDARG;

    HRESULT hr = FillPlane(layer, size, dwFormat, color, bCovers && AlphaOf(color) != 0);
    if (FAILED(hr)) return hr;
    if (!bCovers) {
        layer.planeAlpha.Clear();
        return S_OK;
    }
    hr = FillAlphaPlane(blobAlpha, size, dwFormat, layer.planeAlpha);
    return FAILED(hr) ? hr : WeighPlane(layer, size, dwFormat, EffectiveAlpha(alpha, color));
}

} // namespace vellumcaster
