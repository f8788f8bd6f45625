#pragma once

#include "image/primitives/pixel_math.h"
#include "image/primitives/primitive_types.h"

#include <array>
#include <memory>
#include <new>

/// What the ways of scaling share. Nothing here is for the callers of the primitives.
namespace vellumcaster::scaling {

/// Within this distance a position counts as having reached the next pixel.
inline constexpr double nearlyNothing = 1e-7;

/// One direction of a scaling, the columns or the rows. In pixels; where it is not called absolute, a place is
/// counted from the first pixel of the region.
struct Axis {
    std::int32_t source;
    std::int32_t origin; ///< of the region, absolute
    std::int32_t region; ///< within the source
    std::int32_t output;
    double factor; ///< above 0; may be infinite

    /// The last pixel of the source, which may lie beyond the region.
    [[nodiscard]] std::int32_t Last() const { return source - origin - 1; }

    /// The distance between two outputs where the first and the last of them meet the ends of the region.
    [[nodiscard]] double StepFromEndToEnd() const {
        const double scaled = region * factor;
        return scaled > 1 ? (region - 1) / (scaled - 1) : 0;
    }
};

/// Checked and clipped.
struct Job {
    const BYTE* pSrc; ///< the source's first pixel
    std::int32_t srcStep;
    BYTE* pDst;
    std::int32_t dstStep;
    Axis columns;
    Axis rows;

    [[nodiscard]] const BYTE* SourceRow(std::int32_t absolute) const { return RowAt(pSrc, srcStep, absolute); }
    [[nodiscard]] BYTE* OutputRow(std::int32_t y) const { return RowAt(pDst, dstStep, y); }
};

/// Where an output falls in the source.
struct Place {
    double position;
    std::int32_t index; ///< 0 to the last of the source
};

/// Visits every output of an axis in turn with its number and place. Positions are summed up, not multiplied, and
/// so carry the same error to the same output every time.
template <class Visit>
void ForEachPlace(const Axis& axis, double start, double step, Visit visit) {
    const std::int32_t last = axis.Last();
    double position = start;
    for (std::int32_t k = 0; k < axis.output; ++k, position += step) {
        const double reached = position + nearlyNothing;
        visit(k, Place{position, reached < last ? static_cast<std::int32_t>(reached) : last});
    }
}

/// Memory for one call, aligned for the widest vectors.
template <class T>
class CWorkArray {
public:
    /// \return whether there is room for `count` of them; their content is undefined.
    [[nodiscard]] bool Allocate(std::int64_t count) {
        m_spData.reset(static_cast<T*>(
            ::operator new (static_cast<std::size_t>(count) * sizeof(T), std::align_val_t{alignment}, std::nothrow)));
        return m_spData != nullptr;
    }
    [[nodiscard]] T* Data() const { return m_spData.get(); }
    T& operator[](std::int64_t i) const { return m_spData.get()[i]; }

private:
    static constexpr std::size_t alignment = 32;

    struct Free {
        void operator()(T* p) const { ::operator delete (p, std::align_val_t{alignment}); }
    };
    std::unique_ptr<T, Free> m_spData;
};

/// The last source rows that a horizontal pass was made of: `count` neighbours fit at once.
template <class Sample, std::int32_t count>
class CRowRing {
public:
    [[nodiscard]] bool Allocate(std::int64_t nSamples) {
        m_nSamples = nSamples;
        return m_Samples.Allocate(count * nSamples);
    }

    /// The row of that number, absolute. `fill(pRow)` makes it, where it is not there yet.
    template <class Fill>
    const Sample* Row(std::int32_t y, Fill fill) {
        const std::int32_t slot = y % count;
        Sample* pRow = m_Samples.Data() + slot * m_nSamples;
        std::int32_t& held = m_nHeld[static_cast<std::size_t>(slot)];
        if (held != y) fill(pRow);
        held = y;
        return pRow;
    }

private:
    static constexpr std::array<std::int32_t, count> NothingHeld() {
        std::array<std::int32_t, count> held{};
        held.fill(-1);
        return held;
    }

    CWorkArray<Sample> m_Samples;
    std::int64_t m_nSamples = 0;
    std::array<std::int32_t, count> m_nHeld = NothingHeld();
};

/// The ways of scaling pixels of 1, 3 or 4 samples. \return whether there was memory for it; nothing is written else.
template <std::int32_t channels>
[[nodiscard]] bool ScaleNearest(const Job& job);
template <std::int32_t channels>
[[nodiscard]] bool ScaleLinear(const Job& job); ///< of a source with 2 pixels and more either way
template <std::int32_t channels>
[[nodiscard]] bool ScaleCubic(const Job& job); ///< of a source with 4 pixels and more either way
template <std::int32_t channels>
[[nodiscard]] bool ScaleByArea(const Job& job); ///< by factors up to 1

} // namespace vellumcaster::scaling
