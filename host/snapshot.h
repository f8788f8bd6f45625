#pragma once

#include "host/y4m_header.h"

#include <span>
#include <string>

namespace vellumcaster {

/// A frame that is to be kept as a picture.
struct Snapshot {
    std::int64_t nFrame = 0; ///< counted from 0
    std::string path;
};

/// Reads "N:FILE.png". A `Refusal` says what is wrong with it.
[[nodiscard]] Snapshot ParseSnapshot(const std::string& text);

/// Writes a frame as a PNG picture, whole or not at all. Colours are taken as ITU-R BT.709 from 720 rows up, else as
/// BT.601, in the range that the header names; each pixel takes the chroma sample that covers it.
/// \param planes  Y, U, V as the clip has them.
void WriteSnapshot(const std::string& path, const Y4mHeader& header, std::span<const std::uint8_t> planes);

} // namespace vellumcaster
