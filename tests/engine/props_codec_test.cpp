#include "engine/props_codec.h"

#include <gtest/gtest.h>

#include <array>

namespace vellumcaster {
namespace {

TEST(PropsCodec, WritesAndReadsEveryByteWhereItBelongs) {
    OVERLAY_PROPS props;
    props.bShow = 1, props.nCounterStart = 0x01020304, props.nCounterCur = -1;
    props.nPosX = -2, props.nPosY = 0x7FFFFFFF, props.dblXDelta = 1.5, props.dblYDelta = -0.25, props.bNoOffscreen = 2;
    props.lForeColor = static_cast<LONG>(0xFF332211), props.lBackColor = 0x11223344, props.lOutColor = 0x55667788;
    props.sAlphaValue = -3, props.nColorKeyMin = 0x0A0B0C0D, props.nColorKeyMax = static_cast<LONG>(0xF0E0D0C0);
    props.dblOutlineWidth = 2.0;
    OLECHAR text[] = u"secret";
    props.bsTextString = text;
    const std::array<BYTE, cbStoredProps> stored{
        // clang-format off
        0x01, 0, 0, 0, 0x04, 0x03, 0x02, 0x01, 0xFF, 0xFF, 0xFF, 0xFF,                     // bShow, two counters
        0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0, 0, 0, 0,                        // position, gap
        0, 0, 0, 0, 0, 0, 0xF8, 0x3F, 0, 0, 0, 0, 0, 0, 0xD0, 0xBF, 0x02, 0, 0, 0,         // movement, bNoOffscreen
        0x11, 0x22, 0x33, 0xFF, 0x44, 0x33, 0x22, 0x11, 0x88, 0x77, 0x66, 0x55,            // three colours
        0xFD, 0xFF, 0, 0, 0, 0, 0, 0,                                                      // alpha, gap, the string's slot
        0x0D, 0x0C, 0x0B, 0x0A, 0xC0, 0xD0, 0xE0, 0xF0, 0, 0, 0, 0, 0, 0, 0, 0x40,         // two keys, outline
        // clang-format on
    };
    EXPECT_EQ(EncodeProps(props), stored);

    std::array<BYTE, cbStoredProps> read = stored;
    for (const std::size_t gap : {20u, 21u, 22u, 23u, 58u, 59u, 60u, 61u, 62u, 63u})
        read[gap] = 0xAA;
    EXPECT_EQ(DecodeProps(read).bsTextString, nullptr);
    EXPECT_EQ(EncodeProps(DecodeProps(read)), stored) << "what lies in the gaps is passed over";
}

} // namespace
} // namespace vellumcaster
