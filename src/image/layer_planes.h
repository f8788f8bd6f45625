#pragma once

#include "image/overlay_layer.h"
#include "image/picture_format.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

/// The top byte of a colour 0xAABBGGRR.
constexpr std::uint32_t AlphaOf(std::uint32_t color) { return color >> 24; }

/// The alpha by which a layer's coverage is scaled: the item's, for a text times its colour's, rounded. An item's
/// alpha outside of 0 to 255 counts as the nearest of them.
[[nodiscard]] std::uint32_t EffectiveAlpha(std::int16_t alpha);
[[nodiscard]] std::uint32_t EffectiveAlpha(std::int16_t alpha, std::uint32_t color);

/// Whether pictures of this size in pixels are made at all: at least 1 x 1 and within the size limits.
[[nodiscard]] bool IsPictureSize(const SIZE& size);

/// Bytes of a 32-bit picture, enough for the same picture in every stream format. \param size  a picture size.
[[nodiscard]] std::size_t PictureBytes(const SIZE& size);

/// Fills a layer's colour plane with its colour, or empties it where `bDrawn` is not set.
/// \return S_OK; E_INVALIDARG for a size that the format cannot have; E_OUTOFMEMORY; what `FillBlock` answers.
[[nodiscard]] HRESULT FillPlane(OverlayLayer& layer, const SIZE& size, std::uint32_t dwFormat, std::uint32_t color,
                                bool bDrawn);

/// Scales a layer's coverage in `planeAlpha` into its weights; empties them for an alpha of 0 or without coverage.
/// \param alpha  0 to 255.
/// \return S_OK; E_INVALIDARG for a size that the format cannot have; E_OUTOFMEMORY.
[[nodiscard]] HRESULT WeighPlane(OverlayLayer& layer, const SIZE& size, std::uint32_t dwFormat, std::uint32_t alpha);

} // namespace vellumcaster
