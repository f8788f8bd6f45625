#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// What kind of memory the output's buffers are in.
enum class MemoryType : LONG {
    Unknown = -1,
    System = 0,
    Video = 1, ///< too slow to mix in
};

/// What reading and writing the same memory took, in units of 100 ns.
struct MemoryTimes {
    std::int64_t tRead = 0;
    std::int64_t tWrite = 0;
};

/// Video memory is read at less than half the speed at which it is written; ordinary memory is read within 10 ms.
[[nodiscard]] MemoryType ClassifyMemory(const MemoryTimes& times);

/// Finds out the kind of a buffer's memory by reading and writing its start, at most 100 KB, whose content is lost.
/// \param cbBuffer  bytes; 0 and below leave the kind unknown, and so does memory that cannot be reached.
[[nodiscard]] MemoryType DetectMemoryType(BYTE* pBuffer, LONG cbBuffer);

} // namespace vellumcaster
