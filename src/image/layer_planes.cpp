#include "image/layer_planes.h"

#include "image/block_fill.h"
#include "image/mix_kernel.h"
#include "image/plane_layout.h"
#include "image/rounding.h"

#include <algorithm>

namespace vellumcaster {

std::uint32_t EffectiveAlpha(std::int16_t alpha) {
    return static_cast<std::uint32_t>(std::clamp<std::int16_t>(alpha, 0, 255));
}

std::uint32_t EffectiveAlpha(std::int16_t alpha, std::uint32_t color) {
    return static_cast<std::uint32_t>(RoundToInt64(EffectiveAlpha(alpha) * AlphaOf(color) / 255.0));
}

bool IsPictureSize(const SIZE& size) {
    return size.cx >= 1 && size.cy >= 1 && size.cx <= nLargestSide && size.cy <= nLargestSide &&
           std::int64_t{size.cx} * size.cy * 4 <= cbLargestPicture;
}

std::size_t PictureBytes(const SIZE& size) {
    return static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy) * 4;
}

HRESULT FillPlane(OverlayLayer& layer, const SIZE& size, std::uint32_t dwFormat, std::uint32_t color, bool bDrawn) {
    layer.planeColor.Clear();
    if (!bDrawn) return S_OK;
    if (!IsPictureSize(size)) return E_INVALIDARG;
    HRESULT hr = layer.planeColor.Resize(PictureBytes(size));
    if (FAILED(hr)) return hr;
    const PictureFormat pf{dwFormat, size.cx, -size.cy, 0};
    hr = CPictureFormats::FillBlock(layer.planeColor.Data(), &pf, color, nullptr);
    if (FAILED(hr)) layer.planeColor.Clear();
    return hr;
}

HRESULT WeighPlane(OverlayLayer& layer, const SIZE& size, std::uint32_t dwFormat, std::uint32_t alpha) {
    layer.planeWeight.Clear();
    if (alpha == 0 || layer.planeAlpha.IsEmpty()) return S_OK;
    const std::size_t cb = CPictureFormats::GetBufferSize({dwFormat, size.cx, -size.cy, 0});
    if (cb == 0 || cb > layer.planeAlpha.Size()) return E_INVALIDARG;
    const HRESULT hr = layer.planeWeight.Resize(cb);
    if (FAILED(hr)) return hr;
    MixScaleWeights(layer.planeAlpha.Data(), layer.planeWeight.Data(), alpha, 8, cb);
    return S_OK;
}

} // namespace vellumcaster
