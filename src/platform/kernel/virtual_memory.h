#pragma once

#include <vellumcaster/types.h>

#include <cstddef>

namespace vellumcaster {

inline constexpr std::size_t cbPage = 4096;

inline constexpr DWORD MEM_COMMIT = 0x1000;
inline constexpr DWORD MEM_RELEASE = 0x8000;
inline constexpr DWORD PAGE_READWRITE = 0x04;
inline constexpr DWORD PAGE_EXECUTE_READWRITE = 0x40;

/// A zero-filled block that starts on a page boundary and takes whole pages.
///
/// Only fresh blocks are made: `pAddress` is null, `flType` MEM_COMMIT, `flProtect` PAGE_READWRITE or
/// PAGE_EXECUTE_READWRITE. The block can be read and written; nothing here ever runs from it, so the right to execute is not given.
/// \return null for any other request, for 0 bytes, and when there is no memory.
[[nodiscard]] void* VirtualAlloc(void* pAddress, std::size_t cb, DWORD flType, DWORD flProtect);

/// Frees a whole block of `VirtualAlloc`; `cb` is 0 and `flType` MEM_RELEASE. Null is refused.
/// \return whether the block was freed.
bool VirtualFree(void* pAddress, std::size_t cb, DWORD flType);

/// `cb` up to the next multiple of the page size.
constexpr std::size_t RoundUpToPage(std::size_t cb) { return (cb + cbPage - 1) & ~(cbPage - 1); }

} // namespace vellumcaster
