#include "support/kernel_check.h"

#include <gtest/gtest.h>

namespace vellumcaster::testing_support {
namespace {

// The kernel of these tests: rounded mean of one input and the stream.
BYTE Mean(BYTE a, BYTE b) { return static_cast<BYTE>((a + b + 1) / 2); }

void MeanOf(BYTE* pInOut, Inputs inputs, std::size_t cb) {
    for (std::size_t i = 0; i < cb; ++i)
        pInOut[i] = Mean(pInOut[i], inputs[0][i]);
}

std::optional<std::string> Check(RowKernel kernel) { return CKernelCheck(MeanOf, std::move(kernel), 1).FirstFailure(); }

TEST(KernelCheck, LetsAnExactKernelPass) { EXPECT_EQ(Check(MeanOf), std::nullopt); }

TEST(KernelCheck, RefusesEveryBrokenKernel) {
    const struct {
        const char* pszName;
        RowKernel kernel;
        const char* pszTold;
    } cases[] = {
        {"rounds down",
         [](BYTE* p, Inputs in, std::size_t cb) {
             for (std::size_t i = 0; i < cb; ++i)
                 p[i] = static_cast<BYTE>((p[i] + in[0][i]) / 2);
         },
         ": got "},
        {"rounds down in the ninth byte alone",
         [](BYTE* p, Inputs in, std::size_t cb) {
             const int sum = cb == 9 ? p[8] + in[0][8] : 0;
             MeanOf(p, in, cb);
             if (cb == 9) p[8] = static_cast<BYTE>(sum / 2);
         },
         "9 bytes at"},
        {"leaves the last byte out", [](BYTE* p, Inputs in, std::size_t cb) { MeanOf(p, in, cb - (cb > 0)); },
         "byte 126"},
        {"writes one byte too far",
         [](BYTE* p, Inputs in, std::size_t cb) {
             MeanOf(p, in, cb);
             ++p[cb];
         },
         "(behind the last)"},
        {"writes one byte before",
         [](BYTE* p, Inputs in, std::size_t cb) {
             MeanOf(p, in, cb);
             ++p[-1];
         },
         "byte -1 (before the first)"},
        {"reads one byte too far",
         [](BYTE* p, Inputs in, std::size_t cb) {
             MeanOf(p, in, cb);
             [[maybe_unused]] const BYTE beyond = *const_cast<const volatile BYTE*>(in[0] + cb);
         },
         "touches memory behind"},
        {"changes its input",
         [](BYTE* p, Inputs in, std::size_t cb) {
             MeanOf(p, in, cb);
             if (cb > 0) ++const_cast<BYTE*>(in[0])[0];
         },
         "input, byte 0"},
        {"wants the stream aligned",
         [](BYTE* p, Inputs in, std::size_t cb) {
             if (reinterpret_cast<std::uintptr_t>(p) % 2 == 0) MeanOf(p, in, cb);
         },
         "at offset 1:"},
    };
    for (const auto& c : cases) {
        const std::optional<std::string> told = Check(c.kernel);
        ASSERT_TRUE(told) << c.pszName;
        EXPECT_NE(told->find(c.pszTold), std::string::npos) << c.pszName << ": " << *told;
    }
}

} // namespace
} // namespace vellumcaster::testing_support
