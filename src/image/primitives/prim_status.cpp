#include "image/primitives/prim_status.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vellumcaster {

namespace {

constexpr std::array<std::pair<PrimStatus, const char*>, 10> statusTexts{{
    {prim_status::wrongRoi, "Wrong ROI that has no intersection with the source or destination ROI. No operation"},
    {prim_status::badSize, "Wrong value of data size"},
    {prim_status::nullPointer, "Null pointer error"},
    {prim_status::noMemory, "Not enough memory allocated for the operation"},
    {prim_status::badStep, "Step value is less than or equal to zero"},
    {prim_status::badFlip, "Invalid flip mode"},
    {prim_status::badInterpolation, "Invalid interpolation mode"},
    {prim_status::badFactor, "Resize factor(s) is less than or equal to zero"},
    {prim_status::badStride, "Stride value is less than the row length"},
    {prim_status::badDivisor, "Divisor is equal to zero, function is aborted"},
}};

} // namespace

const char* Prim_StatusText(PrimStatus status) {
    const auto found = std::find_if(statusTexts.begin(), statusTexts.end(),
                                    [status](const auto& entry) { return entry.first == status; });
    return found != statusTexts.end() ? found->second : nullptr;
}

} // namespace vellumcaster
