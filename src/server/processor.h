#pragma once

namespace vellumcaster {

/// Whether this processor has all that the library was compiled for; where it lacks something, one sentence on standard
/// error says so.
[[nodiscard]] bool ProcessorSuffices();

} // namespace vellumcaster
