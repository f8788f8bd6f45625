#pragma once

#include <stdexcept>

namespace vellumcaster {

/// Ends a program of the host with one sentence to the person who called it.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace vellumcaster
