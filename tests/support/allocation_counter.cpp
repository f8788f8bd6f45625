#include "support/allocation_counter.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <limits>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VELLUM_SANITIZER_OWNS_MALLOC 1
#else
#define VELLUM_SANITIZER_OWNS_MALLOC 0
#endif

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

thread_local std::size_t t_nAllocations = 0;
thread_local std::size_t t_nUntilFailure = never;
thread_local bool t_bFailed = false;

/// Counts one allocation. \return whether it is to fail.
[[maybe_unused]] bool CountOne() {
    ++t_nAllocations;
    if (t_nUntilFailure == never || t_nUntilFailure-- > 0) return false;
    t_nUntilFailure = never;
    t_bFailed = true;
    errno = ENOMEM;
    return true;
}

} // namespace

#if VELLUM_SANITIZER_OWNS_MALLOC

// Of the sanitizers' run-time library, whose header is not everywhere where the library is.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));

namespace {

[[maybe_unused]] const int g_bHooked = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t) { ++t_nAllocations; }, [](const volatile void*) {});

} // namespace

#else

// The program's own definitions stand before those of the C library, which keeps the real ones under these names.
extern "C" {
void* __libc_malloc(std::size_t cb);
void* __libc_calloc(std::size_t n, std::size_t cb);
void* __libc_realloc(void* p, std::size_t cb);
void* __libc_memalign(std::size_t cbAlign, std::size_t cb);

void* malloc(std::size_t cb) { return CountOne() ? nullptr : __libc_malloc(cb); }
void* calloc(std::size_t n, std::size_t cb) { return CountOne() ? nullptr : __libc_calloc(n, cb); }
void* realloc(void* p, std::size_t cb) { return CountOne() ? nullptr : __libc_realloc(p, cb); }
void* aligned_alloc(std::size_t cbAlign, std::size_t cb) { return CountOne() ? nullptr : __libc_memalign(cbAlign, cb); }
}

#endif

namespace vellumcaster::testing_support {

CAllocationCounter::CAllocationCounter() : m_nBefore(t_nAllocations) {}

std::size_t CAllocationCounter::Count() const { return t_nAllocations - m_nBefore; }

CFailingAllocation::CFailingAllocation(std::size_t nth) {
    t_bFailed = false;
    t_nUntilFailure = nth;
}

CFailingAllocation::~CFailingAllocation() { t_nUntilFailure = never; }

bool CFailingAllocation::HasFailed() const { return t_bFailed; }

bool CFailingAllocation::IsAvailable() { return !VELLUM_SANITIZER_OWNS_MALLOC; }

} // namespace vellumcaster::testing_support
