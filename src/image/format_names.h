#pragma once

#include "image/picture_format.h"

#include <string_view>

namespace vellumcaster::CPictureFormats {

/// What `FormatFromName` answers for a name that it does not know; no format has this code.
inline constexpr std::uint32_t unknownFormat = 0xFFFFFFFF;

/// The code of a colour space name, such as "RGB32", compared without regard to case.
/// \param pszName zero-ended; null is code 0.
[[nodiscard]] std::uint32_t FormatFromName(const OLECHAR* pszName);

/// The name of a code, or an empty text for one that has none.
[[nodiscard]] std::string_view NameFromFormat(std::uint32_t code);

} // namespace vellumcaster::CPictureFormats
