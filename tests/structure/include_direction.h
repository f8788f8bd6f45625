#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vellumcaster::testing_support {

/// Judges one line of a source file by the rules of the house: includes run downward only, applications' headers
/// stand alone, and the platform layer alone knows the system and the libraries behind it.
/// \param path  from the root of the project, with forward slashes.
/// \return what is wrong with the line, or nothing.
[[nodiscard]] std::optional<std::string> JudgeInclude(std::string_view path, std::string_view line);

} // namespace vellumcaster::testing_support
