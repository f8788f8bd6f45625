#pragma once

#include <vellumcaster/results.h>

#include <new>

namespace vellumcaster {

/// Runs what answers a result, so that no exception leaves it.
/// \return its answer; E_OUTOFMEMORY; E_UNEXPECTED for any other exception.
template <class Call>
HRESULT WithoutExceptions(const Call& call) {
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

} // namespace vellumcaster
