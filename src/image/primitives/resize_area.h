#pragma once

#include "image/primitives/resize_job.h"

#include <algorithm>

/// What the two ways of averaging areas share.
namespace vellumcaster::scaling {

/// A factor that would leave less than one pixel averages all there is.
inline double UsefulFactor(const Axis& axis) { return std::max(axis.factor, 1.0 / axis.region); }

/// How many source pixels an output covers, from 1.
inline double Ratio(const Axis& axis) { return std::min(1 / axis.factor, static_cast<double>(axis.region)); }

inline double Area(const Job& job) { return UsefulFactor(job.columns) * UsefulFactor(job.rows); }

inline BYTE Average(double sum, double area) { return static_cast<BYTE>(std::min(sum * area + 0.5, 255.0)); }

/// Averages blocks of whole pixels in integers. \return whether the ratios are such that the bytes are the same as
/// in single precision; nothing is written else.
template <std::int32_t channels>
[[nodiscard]] bool AverageBlocks(const Job& job);

} // namespace vellumcaster::scaling
