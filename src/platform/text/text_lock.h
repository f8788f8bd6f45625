#pragma once

#include "platform/kernel/critical_section.h"

#include <glib-object.h>

#include <memory>

namespace vellumcaster {

/// Guards Pango, whose objects belong to one thread at a time, and all that is kept of fonts and glyphs.
CCriticalSection& TextLock();

struct ReleaseGObject {
    void operator()(void* p) const { g_object_unref(p); }
};

/// Owns one reference to an object of Pango. To be let go under the lock.
template <class T>
using CGObjectPtr = std::unique_ptr<T, ReleaseGObject>;

} // namespace vellumcaster
