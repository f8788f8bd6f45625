#pragma once

#include <string>

namespace vellumcaster {

/// Prints a saved stack to standard output as a table, a row for each item from the bottom of the stack up. No picture is
/// loaded. A `Refusal` says what is wrong with the file, behind what could be read of it.
void PrintStack(const std::string& path);

} // namespace vellumcaster
