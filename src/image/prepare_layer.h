#pragma once

#include "image/overlay_layer.h"
#include "image/picture_format.h"

#include <vellumcaster/item.h>

namespace vellumcaster {

/// Builds the planes of an image's layer from its picture: applies the colour key into `layer.blobAlpha`, converts
/// that to the stream's format, and makes the weights of its alpha bytes and `props.sAlphaValue`.
///
/// \param blobImage  32-bit pixels B, G, R, A, top-down, at least `size.cx` x `size.cy` of them.
/// \param size  pixels; even, but for RGB24.
/// \param dwFormat  of the stream.
/// \return S_OK; E_NOTIMPL for a format that has no weights (ARGB32, RGB565, RGB555); E_INVALIDARG for a size that the
///         format cannot have; E_OUTOFMEMORY; what `Img_Convert` answers. What was built before a failure stays, and
///         the layer is not drawn.
[[nodiscard]] HRESULT PrepareImage2(const CTaskBlob& blobImage, const SIZE& size, std::uint32_t dwFormat,
                                    const OVERLAY_PROPS& props, OverlayLayer& layer);

/// Builds the planes of a text's layer from its coverage: a flat fill of the layer's colour, and weights.
///
/// \param blobAlpha  coverage as a 32-bit picture of `size`; empty: the layer's planes are emptied.
/// \param color  0xAABBGGRR; with an alpha byte of 0 the layer is not drawn.
/// \param alpha  of the item, 0 to 255.
/// \return as the image form.
[[nodiscard]] HRESULT PrepareImage2(const CTaskBlob& blobAlpha, const SIZE& size, std::uint32_t dwFormat,
                                    std::uint32_t color, std::int16_t alpha, OverlayLayer& layer);

} // namespace vellumcaster
