#pragma once

namespace vellumcaster {

/// Whether this processor has all that the library was compiled for; where it lacks something, the first call says so in one
/// sentence on standard error. Any thread.
[[nodiscard]] bool ProcessorSuffices();

} // namespace vellumcaster
