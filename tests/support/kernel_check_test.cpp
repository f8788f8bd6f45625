#include "support/kernel_check.h"

#include <gtest/gtest.h>

namespace vellumcaster::testing_support {
namespace {

// The kernel of these tests: rounded mean of one input and the stream.
void MeanOf(BYTE* pInOut, Inputs inputs, std::size_t cb) {
    for (std::size_t i = 0; i < cb; ++i)
        pInOut[i] = static_cast<BYTE>((pInOut[i] + inputs[0][i] + 1) / 2);
}

TEST(KernelCheck, LetsAnExactKernelPass) { EXPECT_EQ(CKernelCheck(MeanOf, MeanOf, 1).FirstFailure(), std::nullopt); }

TEST(KernelCheck, RefusesEveryBrokenKernel) {
    using After = void (*)(BYTE * p, const BYTE* pIn, std::size_t cb);
    const std::pair<After, const char*> spoils[] = {
        {[](BYTE* p, const BYTE*, std::size_t cb) {
             if (cb == 9) ++p[8];
         },
         "9 bytes at"},
        {[](BYTE* p, const BYTE*, std::size_t cb) {
             if (cb > 9) ++p[cb - 1];
         },
         "byte 126"},
        {[](BYTE* p, const BYTE*, std::size_t cb) { ++p[cb]; }, "(behind the last)"},
        {[](BYTE* p, const BYTE*, std::size_t) { ++p[-1]; }, "byte -1 (before the first)"},
        {[](BYTE*, const BYTE* pIn, std::size_t cb) { static_cast<void>(*const_cast<const volatile BYTE*>(pIn + cb)); },
         "touches memory behind"},
        {[](BYTE*, const BYTE* pIn, std::size_t cb) {
             if (cb > 9) ++const_cast<BYTE*>(pIn)[0];
         },
         "input, byte 0"},
        {[](BYTE* p, const BYTE*, std::size_t) { *p ^= static_cast<BYTE>(reinterpret_cast<std::uintptr_t>(p) % 2); },
         "at offset 1:"},
    };
    for (const auto& [spoil, pszTold] : spoils) {
        const RowKernel kernel = [after = spoil](BYTE* p, Inputs in, std::size_t cb) {
            MeanOf(p, in, cb);
            after(p, in[0], cb);
        };
        const std::string told = CKernelCheck(MeanOf, kernel, 1).FirstFailure().value_or("nothing");
        EXPECT_NE(told.find(pszTold), std::string::npos) << pszTold << ": " << told;
    }
}

} // namespace
} // namespace vellumcaster::testing_support
