#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "support/guarded_buffer.h"

#include <gtest/gtest.h>

#include <cstring>

namespace vellumcaster {
namespace {

using testing_support::CGuardedBuffer;

PrimStatus Mirror16In(BYTE* p, std::int32_t step, PrimSize size, std::int32_t flip) {
    return px::ippiMirror_16u_C1IR(reinterpret_cast<std::uint16_t*>(p), step, size, flip);
}
PrimStatus Mirror16(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                    std::int32_t flip) {
    return px::ippiMirror_16u_C1R(reinterpret_cast<const std::uint16_t*>(pSrc), srcStep,
                                  reinterpret_cast<std::uint16_t*>(pDst), dstStep, size, flip);
}

struct Member {
    std::int32_t cbElement;
    PrimStatus (*inPlace)(BYTE*, std::int32_t, PrimSize, std::int32_t);
    PrimStatus (*apart)(const BYTE*, std::int32_t, BYTE*, std::int32_t, PrimSize, std::int32_t);
};

constexpr Member members[] = {{3, px::ippiMirror_8u_C3IR, px::ippiMirror_8u_C3R},
                              {4, px::ippiMirror_8u_C4IR, px::ippiMirror_8u_C4R},
                              {2, Mirror16In, Mirror16}};

TEST(Mirror, PutsEveryElementWhereTheFlipSays) {
    constexpr std::int32_t padding = 6;
    for (const Member& member : members)
        for (const PrimSize size : {PrimSize{1, 1}, {2, 1}, {1, 2}, {3, 3}, {4, 2}, {7, 5}, {33, 4}})
            for (const std::int32_t flip : {flipRows, flipColumns, flipBoth}) {
                const std::int32_t step = size.width * member.cbElement + padding;
                const auto at = [&](std::ptrdiff_t x, std::ptrdiff_t y) { return y * step + x * member.cbElement; };
                const auto cb = static_cast<std::size_t>(at(0, size.height));
                CGuardedBuffer source(cb, 0, 1);
                CGuardedBuffer got(cb, 0, 2);
                CGuardedBuffer inPlace = source;
                CGuardedBuffer want = got;
                CGuardedBuffer wantInPlace = source;
                for (std::int32_t y = 0; y < size.height; ++y)
                    for (std::int32_t x = 0; x < size.width; ++x) {
                        const std::int32_t fromX = flip == flipRows ? x : size.width - 1 - x;
                        const std::int32_t fromY = flip == flipColumns ? y : size.height - 1 - y;
                        const BYTE* pFrom = source.Data() + at(fromX, fromY);
                        for (CGuardedBuffer* pWant : {&want, &wantInPlace})
                            std::memcpy(pWant->Data() + at(x, y), pFrom, static_cast<std::size_t>(member.cbElement));
                    }
                ASSERT_EQ(member.apart(source.Data(), step, got.Data(), step, size, flip), prim_status::ok);
                ASSERT_EQ(member.inPlace(inPlace.Data(), step, size, flip), prim_status::ok);
                SCOPED_TRACE(testing::Message() << member.cbElement << " bytes, " << size.width << " x " << size.height
                                                << ", flip " << flip);
                EXPECT_EQ(got.DifferenceFrom(want), std::nullopt);
                EXPECT_EQ(inPlace.DifferenceFrom(wantInPlace), std::nullopt) << "in place";
            }
}

TEST(Mirror, ChecksItsArgumentsInOrder) {
    const struct {
        bool bNull;
        std::int32_t step;
        PrimSize size;
        std::int32_t flip;
        PrimStatus status;
    } rows[] = {
        {true, 0, {0, 0}, 3, prim_status::nullPointer}, {false, 0, {0, 0}, 3, prim_status::badStep},
        {false, -1, {1, 1}, 0, prim_status::badStep},   {false, 4, {0, 1}, 3, prim_status::badSize},
        {false, 4, {1, 0}, 0, prim_status::badSize},    {false, 4, {1, 1}, 3, prim_status::badFlip},
        {false, 4, {1, 1}, -1, prim_status::badFlip},   {false, 4, {1, 1}, flipRows, prim_status::ok},
    };
    for (const Member& member : members)
        for (const auto& row : rows) {
            alignas(4) BYTE source[4] = {1, 2, 3, 4};
            alignas(4) BYTE target[4] = {};
            BYTE* pTarget = row.bNull ? nullptr : target;
            EXPECT_EQ(member.inPlace(row.bNull ? nullptr : source, row.step, row.size, row.flip), row.status);
            EXPECT_EQ(member.apart(source, 4, pTarget, row.step, row.size, row.flip), row.status);
        }
}

} // namespace
} // namespace vellumcaster
