#pragma once

namespace vellumcaster {

/// The program `vellumcast`: reads the command line and runs a clip through the filter.
/// \return the exit status: 0, or 1 after one sentence on standard error.
[[nodiscard]] int RunVellumcast(int argc, char** argv);

} // namespace vellumcaster
