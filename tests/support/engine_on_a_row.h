#pragma once

#include "engine/overlay_engine.h"
#include "support/flat_item.h"
#include "support/mixer_control.h"
#include "support/recording_painter.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace vellumcaster::testing_support {

/// An engine whose painter keeps a journal, and frames of 8 x 1 in RGB32 to mix into.
class EngineOnARow : public testing::Test {
protected:
    using Row = std::array<int, 8>;

    Cookie Add(OverlayItem item) {
        Cookie cookie = -1;
        EXPECT_EQ(m_Engine.AddItem(std::move(item), &cookie), S_OK);
        return cookie;
    }

    OVERLAY_PROPS PropsOf(Cookie cookie) {
        OVERLAY_PROPS props;
        EXPECT_EQ(m_Engine.GetItemProps(cookie, &props), S_OK);
        TakeName(props.bsTextString);
        return props;
    }

    /// The first byte of each pixel after one frame.
    Row Mix(const FrameTimes& times = {}) {
        std::array<BYTE, 32> frame{};
        EXPECT_EQ(m_Engine.MixFrame({frame.data(), 32, {format_code::RGB32, 8, -1, 0}}, {8, 1}, times), S_OK);
        Row pixels{};
        for (std::size_t i = 0; i < 8; ++i)
            pixels[i] = frame[4 * i];
        return pixels;
    }

    CRecordingPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
};

} // namespace vellumcaster::testing_support
