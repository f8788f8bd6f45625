#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vellumcaster {

/// What an option says of a frame: "N:TEXT".
struct FrameOption {
    std::int64_t nFrame = 0; ///< counted from 0
    std::string text;        ///< not empty
};

/// \return nothing for a text of another form.
[[nodiscard]] std::optional<FrameOption> ParseFrameOption(const std::string& text);

} // namespace vellumcaster
