#pragma once

#include "image/picture_format.h"

#include <array>
#include <cstddef>

namespace vellumcaster {

/// Where the planes of a picture lie. Slot 0 is the Y plane or the whole picture, slot 1 the V plane, slot 2 the
/// U plane, in whichever order the format has them in memory:
///
///     YV12                I420
///     +-----------+       +-----------+
///     |  Y   [0]  |       |  Y   [0]  |
///     +-----+-----+       +-----+-----+
///     | V   | [1]         | U   | [2]
///     +-----+             +-----+
///     | U   | [2]         | V   | [1]
///     +-----+             +-----+
///
/// A picture of one plane uses slot 0 alone.
struct PlaneLayout {
    std::array<std::uint32_t, 3> offsets{}; ///< bytes from the start of the buffer
    std::array<std::uint32_t, 3> strides{}; ///< bytes from row to row
    bool bBottomUp = false;                 ///< the first row in memory is the lowest of the picture
};

/// Descriptors resolved to memory. All of them keep no state and may run on any thread.
namespace CPictureFormats {

/// What a descriptor says of its format. Each out-pointer may be null.
/// \return false for a stride below the width, an odd width or stride in a YUV format, an odd height in 4:2:0, a
///         format that cannot be processed, or a picture beyond the size limits; nothing is then written.
[[nodiscard]] bool GetFormatInfo(const PictureFormat* pf, bool* pbYuv, bool* pbPlanar, std::uint32_t* pnBits);

/// Plane offsets and row pitches in bytes. The pitch of a picture of one plane is a multiple of four; that of a
/// plane is not rounded.
/// \param offsets, strides  slots 1 and 2 are left alone for a picture of one plane; the caller zeroes them first.
/// \param pbBottomUp  may be null; is only ever set to true, so the caller clears it first.
/// \param bForcePlanar  packed YUV counts as unpacked into one full and two half planes.
/// \return false where `GetFormatInfo` refuses.
[[nodiscard]] bool GetPlaneLayout(const PictureFormat* pf, std::uint32_t offsets[3], std::uint32_t strides[3],
                                  bool* pbBottomUp, bool bForcePlanar);

/// The same into a record that starts out zero.
[[nodiscard]] bool GetPlaneLayout(const PictureFormat& pf, PlaneLayout& layout);

/// Bytes from the start of each plane to a pixel.
/// \param x  pixels from the left; even for YUV formats.
/// \param y  rows from the start of the buffer, not of the picture; even for 4:2:0.
/// \return false where `GetFormatInfo` refuses.
[[nodiscard]] bool GetPixelOffset(const PictureFormat* pf, int x, int y, std::uint32_t offsets[3], bool bForcePlanar);

/// The row from the start of the buffer at which a block of rows of the picture begins: the rectangle's top, or
/// for a bottom-up picture the row in which its bottom lies.
[[nodiscard]] int FirstBufferRow(const PictureFormat& pf, bool bBottomUp, const RECT& rc);

/// Bytes that a picture of this descriptor takes in memory, gaps at the ends of rows included; 0 where
/// `GetFormatInfo` refuses.
[[nodiscard]] std::size_t GetBufferSize(const PictureFormat& pf);

/// A generous byte count for any work block of an operation between the two pictures.
[[nodiscard]] std::size_t GetScratchSize(const PictureFormat& a, const PictureFormat& b);

} // namespace CPictureFormats
} // namespace vellumcaster
