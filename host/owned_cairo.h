#pragma once

#include <memory>

#include <cairo.h>

namespace vellumcaster {

struct DestroyCairo {
    void operator()(cairo_surface_t* p) const { cairo_surface_destroy(p); }
    void operator()(cairo_t* p) const { cairo_destroy(p); }
    void operator()(cairo_pattern_t* p) const { cairo_pattern_destroy(p); }
};

/// Owns a surface, a context or a pattern.
template <class T>
using OwnedCairo = std::unique_ptr<T, DestroyCairo>;

} // namespace vellumcaster
