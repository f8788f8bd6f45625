#include "platform/kernel/virtual_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

namespace vellumcaster {
namespace {

TEST(VirtualMemory, GivesWholeZeroedPages) {
    for (const std::size_t cb : {std::size_t{1}, cbPage, cbPage + 1, std::size_t{1000000}}) {
        auto* p = static_cast<BYTE*>(VirtualAlloc(nullptr, cb, MEM_COMMIT, PAGE_EXECUTE_READWRITE));
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % cbPage, 0u);
        const std::size_t cbWhole = RoundUpToPage(cb);
        EXPECT_TRUE(cbWhole >= cb && cbWhole < cb + cbPage && cbWhole % cbPage == 0);
        EXPECT_EQ(std::count(p, p + cbWhole, BYTE{0}), static_cast<std::ptrdiff_t>(cbWhole));
        std::fill(p, p + cbWhole, BYTE{0xFF});
        EXPECT_TRUE(VirtualFree(p, 0, MEM_RELEASE));
    }
}

TEST(VirtualMemory, RefusesWhatItDoesNotDo) {
    int here = 0;
    EXPECT_EQ(VirtualAlloc(&here, 1, MEM_COMMIT, PAGE_EXECUTE_READWRITE), nullptr);
    EXPECT_EQ(VirtualAlloc(nullptr, 0, MEM_COMMIT, PAGE_EXECUTE_READWRITE), nullptr);
    EXPECT_EQ(VirtualAlloc(nullptr, SIZE_MAX, MEM_COMMIT, PAGE_EXECUTE_READWRITE), nullptr);
    EXPECT_FALSE(VirtualFree(nullptr, 0, MEM_RELEASE));
    EXPECT_FALSE(VirtualFree(&here, 4, MEM_RELEASE));
}

} // namespace
} // namespace vellumcaster
