#pragma once

#include <vellumcaster/types.h>

#include <cstddef>

namespace vellumcaster {

/// Copies `cb` bytes inside a fault guard.
/// \return false when memory could not be reached; part of the destination may have been written.
[[nodiscard]] bool SEH_CopyMemory(void* pDst, const void* pSrc, std::size_t cb);

/// Rows of bytes in memory; a negative pitch runs upward.
struct RowPair {
    BYTE* pDst;
    const BYTE* pSrc;
    std::ptrdiff_t dstPitch; ///< bytes
    std::ptrdiff_t srcPitch; ///< bytes
};

/// Copies `nRows` rows of `cbRow` bytes, each by `SEH_CopyMemory`.
/// \return false when a row could not be copied; the rows behind it are left.
[[nodiscard]] bool CopyRows(const RowPair& rows, std::ptrdiff_t nRows, std::size_t cbRow);

} // namespace vellumcaster
