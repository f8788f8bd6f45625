#include "image/primitives/dispatch.h"

#include "image/primitives/ensure_primitives.h"
#include "image/primitives/prim_status.h"
#include "platform/kernel/message_box.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

struct FakeProcessor {
    std::uint32_t family;
    std::string features; ///< of "mmx sse sse2 sse3 ht 64"; "other" for another vendor, "old" without the last leaf
    int cpuType;
    int variant;

    [[nodiscard]] bool Has(const std::string& feature) const {
        return (" " + features + " ").find(" " + feature + " ") != std::string::npos;
    }

    [[nodiscard]] CpuidSource Cpuid() const {
        return [*this](std::uint32_t leaf) {
            const auto bit = [this](const char* feature, int n) { return Has(feature) ? 1u << n : 0u; };
            CpuidWords words;
            if (leaf == 0) words = {0, 0x756E6547, Has("other") ? 0x444D4163u : 0x6C65746Eu, 0x49656E69};
            if (leaf == 1) {
                words.eax = 0x0F0000F2 | family << 8; // an extended family, which does not count
                words.ebx = Has("ht") ? 2u << 16 : 1u << 16;
                words.ecx = bit("sse3", 0);
                words.edx = bit("mmx", 23) | bit("sse", 25) | bit("sse2", 26) | 1u << 28;
            }
            if (leaf == 0x80000000) words.eax = Has("old") ? 0x80000000 : 0x80000008;
            if (leaf == 0x80000001) words.edx = bit("64", 29);
            return words;
        };
    }
};

const FakeProcessor processors[] = {
    {5, "", 1, 0},
    {5, "mmx", 2, 0},
    {6, "", 3, 0},
    {6, "mmx", 4, 0},
    {6, "mmx sse", 5, 1},
    {6, "mmx sse sse2 sse3 ht 64", 9, 2},
    {7, "sse2", 16, 1},
    {15, "mmx sse", 17, 1},
    {15, "mmx sse sse2", 6, 2},
    {15, "mmx sse sse2 ht 64", 7, 2},
    {15, "sse2 sse3 ht", 8, 3},
    {15, "sse2 sse3 64 old", 8, 3},
    {15, "sse2 sse3 64", 32, 3},
    {15, "sse2 sse3 64 other", 0, 0},
    {4, "mmx sse sse2", 0, 0},
};

TEST(Dispatch, ClassifiesProcessors) {
    for (const FakeProcessor& processor : processors) {
        const CPrimitiveDispatch dispatch({}, processor.Cpuid());
        EXPECT_EQ(dispatch.DetectCpu(), processor.cpuType) << processor.family << " " << processor.features;
        EXPECT_EQ(dispatch.VariantForCpu(), processor.variant);
    }
    EXPECT_EQ(ClassifyCpu(nullptr), 0);
    for (const int unknown : {-1, 10, 15, 18, 31, 33})
        EXPECT_EQ(VariantForCpuType(unknown), variantPx);
}

template <int variant>
void Entry() {}

constexpr std::array<PrimEntry, 4> allVariants{Entry<0>, Entry<1>, Entry<2>, Entry<3>};

/// A table of two primitives; `holes` is the variants that the second one lacks.
struct FakeTable {
    PrimEntry slots[2] = {Entry<0>, Entry<0>};
    PrimitiveRow rows[2] = {{&slots[0], allVariants}, {&slots[1], allVariants}};

    explicit FakeTable(std::initializer_list<std::size_t> holes) {
        for (const std::size_t hole : holes)
            rows[1].variant[hole] = nullptr;
    }
};

TEST(Dispatch, FallsToTheNextCompleteVariant) {
    const FakeProcessor sse3{15, "sse2 sse3 64", 32, 3};
    const struct {
        std::initializer_list<std::size_t> holes;
        std::size_t bound;
    } cases[] = {{{}, 3}, {{3}, 2}, {{3, 2}, 1}, {{3, 2, 1}, 0}, {{2}, 3}};
    for (const auto& c : cases) {
        FakeTable table(c.holes);
        CPrimitiveDispatch dispatch(table.rows, sse3.Cpuid());
        EXPECT_EQ(dispatch.CurrentVariant(), 0);
        ASSERT_EQ(dispatch.Init(), 1);
        EXPECT_EQ(dispatch.CurrentVariant(), static_cast<int>(c.bound));
        EXPECT_TRUE(table.slots[0] == allVariants[c.bound] && table.slots[1] == allVariants[c.bound]);
    }
}

TEST(Dispatch, LeavesTheRowsBeforeAHoleBound) {
    FakeTable table({1});
    CPrimitiveDispatch dispatch(table.rows, nullptr);
    EXPECT_EQ(dispatch.BindVariant(1), 0);
    EXPECT_TRUE(table.slots[0] == Entry<1> && table.slots[1] == Entry<0>);
    EXPECT_EQ(dispatch.InitVariant(1), 1);
    EXPECT_EQ(dispatch.CurrentVariant(), 0);
}

TEST(Dispatch, ReportsEveryTimeThatNothingCanBeBound) {
    static std::vector<std::string> shown; // a handler knows nothing but its arguments
    static constexpr MessageHandler handler{
        [](std::uint32_t style) { shown.push_back("beep " + std::to_string(style)); },
        [](const char* pszText, const char* pszTitle, std::uint32_t style) {
            shown.push_back(std::string(pszTitle) + "|" + pszText + "|" + std::to_string(style));
        }};
    shown.clear();
    const MessageHandler* pEarlier = SetMessageHandler(&handler);
    FakeTable table({0});
    CPrimitiveDispatch dispatch(table.rows, nullptr);
    CPrimitiveDispatch withoutRows({}, nullptr);
    EXPECT_FALSE(dispatch.Ensure());
    EXPECT_FALSE(dispatch.Ensure());
    EXPECT_EQ(dispatch.InitVariant(4), 0);
    EXPECT_FALSE(withoutRows.Ensure());
    SetMessageHandler(pEarlier);
    const std::string examined =
        "Set IPP library error| No IPP matching to examined CPU was found during the Waterfall procedure|16";
    const std::string named = "Set IPP library error| No IPP matching to CPU was found during the Waterfall|16";
    EXPECT_EQ(shown, (std::vector<std::string>{"beep 16", examined, "beep 16", examined, "beep 16", named, "beep 16",
                                               examined}));
}

TEST(Dispatch, BindsOnceForThreadsThatComeTogether) {
    FakeTable table({});
    std::atomic<int> nQuestions = 0;
    CPrimitiveDispatch dispatch(table.rows, [&](std::uint32_t) {
        ++nQuestions;
        return CpuidWords{};
    });
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { EXPECT_TRUE(dispatch.Ensure() && table.slots[1] == Entry<0>); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nQuestions, 1);
}

TEST(Dispatch, HasPortableCodeForEveryPrimitive) {
    for (const PrimEntry slot : g_PrimSlots)
        EXPECT_NE(slot, nullptr);
    EXPECT_TRUE(Img_EnsurePrimitives());
    EXPECT_EQ(Prim_CurrentVariant(), Prim_VariantForCpu());
    EXPECT_EQ(ippiMirror_8u_C4IR(nullptr, 0, {0, 0}, 3), px::ippiMirror_8u_C4IR(nullptr, 0, {0, 0}, 3));
}

TEST(PrimStatus, BecomesAResultAndAText) {
    EXPECT_EQ(ResultFromStatus(prim_status::wrongRoi), static_cast<HRESULT>(0x8007001D));
    EXPECT_STREQ(Prim_StatusText(-51), "Divisor is equal to zero, function is aborted");
    EXPECT_EQ(Prim_StatusText(-7), nullptr);
}

} // namespace
} // namespace vellumcaster
