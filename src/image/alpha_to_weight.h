#pragma once

#include <vellumcaster/results.h>

/// From the coverage of a picture to one weight for every byte of the same picture in a stream's format, at the same
/// places.
///
/// \param src  32-bit pixels whose top byte is their coverage; rows of `size->cx` pixels without a gap.
/// \param dst  as large as the picture in the stream's format.
/// All answer S_OK; E_INVALIDARG for a null argument or a size that the format cannot have (below 1; but for RGB24 also
/// odd).
namespace vellumcaster::CImageHelp {

/// By the format: one of the routines below. \return also E_NOTIMPL for a format that has no weights.
[[nodiscard]] HRESULT AlphaToWeight(std::uint32_t dwFormat, const std::uint32_t* src, BYTE* dst, const SIZE* size);

/// Four times the coverage for each pixel.
[[nodiscard]] HRESULT AlphaToRGB32(const std::uint32_t* src, BYTE* dst, const SIZE* size);

/// Three times the coverage for each pixel; what is left at the end of a row, up to a multiple of four bytes, is not
/// written. Any size from 1.
[[nodiscard]] HRESULT AlphaToRGB24(const std::uint32_t* src, BYTE* dst, const SIZE* size);

/// For a pair of pixels with coverage a and b: a, c, b, c, or where `bChromaFirst` is set c, a, c, b, with c their
/// mean, truncated.
[[nodiscard]] HRESULT AlphaToYUY2(const std::uint32_t* src, BYTE* dst, const SIZE* size, bool bChromaFirst);

/// The coverage itself for luma; for both chroma planes, which follow, the mean of 2 x 2 pixels, truncated. In the
/// last columns beyond whole groups of eight it is the coverage of the lower right pixel alone.
[[nodiscard]] HRESULT AlphaToYV12(const std::uint32_t* src, BYTE* dst, const SIZE* size);

} // namespace vellumcaster::CImageHelp
