#include "support/mixer_control.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;

class FrameMixer : public testing::Test, protected MixerControl {
protected:
    HRESULT SetFormat(DWORD dwFormat, LONG nWidth, LONG nHeight, LONG nStride = 0) const {
        const FrameFormat format{dwFormat, nWidth, nHeight, nStride, 400000};
        return spMixer->SetFormat(&format);
    }

    HRESULT Mix(std::vector<BYTE>& frame) const {
        return spMixer->MixFrame(frame.data(), frame.size(), nullptr, nullptr, nullptr, nullptr);
    }
};

TEST_F(FrameMixer, TakesTheFormatsThatAFrameCanHave) {
    EXPECT_EQ(SetFormat(eRGB24, 5, -3), S_OK);
    EXPECT_EQ(SetFormat(eI420, 6, 4, 8), S_OK);
    EXPECT_EQ(SetFormat(eRGB32, 6, 4, 5), E_INVALIDARG) << "a stride within the row";
    EXPECT_EQ(SetFormat(eRGB32, 6, 4, -6), E_INVALIDARG);
    EXPECT_EQ(SetFormat(eRGB32, 40000, 4), E_INVALIDARG);
    EXPECT_EQ(SetFormat(0x3231564E, 6, 4), VFW_E_TYPE_NOT_ACCEPTED) << "a format that items cannot stand in";
    EXPECT_EQ(spMixer->SetFormat(nullptr), E_POINTER);
}

TEST_F(FrameMixer, GoesFromStoppedToRunningAndBack) {
    std::vector<BYTE> frame(4 * 2 * 2);
    EXPECT_EQ(spMixer->Start(), E_UNEXPECTED) << "no format yet";
    ASSERT_EQ(SetFormat(eRGB32, 2, -2), S_OK);
    EXPECT_EQ(Mix(frame), VFW_E_WRONG_STATE);
    EXPECT_EQ(spMixer->Stop(), S_FALSE);
    EXPECT_EQ(spMixer->Start(), S_OK);
    EXPECT_EQ(spMixer->Start(), S_FALSE);
    EXPECT_EQ(Mix(frame), S_OK);
    EXPECT_EQ(spMixer->MixFrame(nullptr, 16, nullptr, nullptr, nullptr, nullptr), E_POINTER);
    EXPECT_EQ(spMixer->MixFrame(frame.data(), 15, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(SetFormat(eRGB32, 2, -2), VFW_E_NOT_STOPPED);
    EXPECT_EQ(spControl->SetColorSpace(Text(u"YUY2").Get()), VFW_E_NOT_STOPPED);
    EXPECT_EQ(spControl->SetColorSpace(Text(u"RGB565").Get()), VFW_E_NOT_STOPPED);
    EXPECT_EQ(spControl->SetColorSpace(Text(u"any").Get()), S_OK) << "a demand can always be lifted";
    EXPECT_EQ(spControl->UseExtraBuffer2(1), VFW_E_NOT_STOPPED);
    EXPECT_EQ(spMixer->Stop(), S_OK);
}

TEST_F(FrameMixer, MeetsTheDemandedColourSpace) {
    ASSERT_EQ(spControl->SetColorSpace(Text(u"YUY2").Get()), S_OK);
    EXPECT_EQ(SetFormat(eRGB32, 2, 2), VFW_E_TYPE_NOT_ACCEPTED);
    ASSERT_EQ(SetFormat(eYUY2, 2, 2), S_OK);
    EXPECT_EQ(spControl->SetColorSpace(Text(u"RGB32").Get()), VFW_E_TYPE_NOT_ACCEPTED) << "frames are YUY2";
    EXPECT_EQ(spControl->SetColorSpace(nullptr), S_OK);
    EXPECT_EQ(spControl->SetColorSpace(Text(u"YUY2").Get()), S_OK);
}

TEST_F(FrameMixer, HasNoGraphToReconnectIn) {
    EXPECT_EQ(spControl->UseExtraBuffer2(5), S_FALSE);
    EXPECT_EQ(spFirst->UseExtraBuffer(0), VFW_E_NOT_IN_GRAPH);
    BOOL bUse = -1;
    EXPECT_EQ(spControl->IsUseExtraBuffer2(&bUse), S_OK);
    EXPECT_EQ(bUse, 1) << "as before";
    EXPECT_EQ(spFirst->IsUseExtraBuffer(), S_OK);
}

TEST_F(FrameMixer, DrawsItemsInWhateverFormatItsFramesTakeOn) {
    const auto showWhiteAt = [this](LONG nPosX) {
        const LONG cookie = AddPicture(nullptr, 255);
        EXPECT_EQ(spControl->SetItemPos2(cookie, nPosX, 0), S_OK);
        EXPECT_EQ(spControl->ShowItem2(cookie, 1), S_OK);
    };
    showWhiteAt(4);
    ASSERT_EQ(SetFormat(eYV12, 16, 2), S_OK);
    showWhiteAt(12);
    // White is Y 235; over 0 with a weight of 254: (235 * 254 + 255) >> 8 = 234, (255 * 254 + 255) >> 8 = 254.
    const struct {
        DWORD dwFormat;
        std::size_t cbPixel;
        int white;
    } cases[] = {{eI420, 1, 234}, {eYUY2, 2, 234}, {eRGB32, 4, 254}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dwFormat);
        ASSERT_EQ(SetFormat(c.dwFormat, 16, 2), S_OK);
        ASSERT_EQ(spMixer->Start(), S_OK);
        std::vector<BYTE> frame(4 * 16 * 2);
        ASSERT_EQ(Mix(frame), S_OK);
        ASSERT_EQ(spMixer->Stop(), S_OK);
        for (std::size_t x = 0; x < 16; ++x)
            EXPECT_EQ(frame[x * c.cbPixel], x / 4 % 2 == 0 ? 0 : c.white) << x;
    }
}

TEST_F(FrameMixer, TellsCallbacksTheTimesThatTheFrameHas) {
    const auto spCallback = MakeCounted<CScriptedCallback>([](OVERLAY_PROPS&) { return S_FALSE; });
    ASSERT_EQ(spControl->SetItemCallback(AddPicture(), spCallback.Get()), S_OK);
    ASSERT_EQ(SetFormat(eRGB32, 2, 2), S_OK);
    ASSERT_EQ(spMixer->Start(), S_OK);
    std::vector<BYTE> frame(16);
    const LONGLONG times[] = {7, 8, 40, 80};
    for (unsigned given = 0; given < 16; ++given) {
        const auto time = [&](unsigned i) { return given >> i & 1 ? &times[i] : nullptr; };
        const auto isTold = [&](unsigned i, const std::optional<LONGLONG>& told) {
            return told == (time(i) ? std::optional(times[i]) : std::nullopt);
        };
        ASSERT_EQ(spMixer->MixFrame(frame.data(), 16, time(0), time(1), time(2), time(3)), S_OK);
        const ToldTimes& told = spCallback->m_Told;
        EXPECT_TRUE(isTold(0, told.mediaStart) && isTold(1, told.mediaEnd)) << given;
        EXPECT_TRUE(isTold(2, told.start) && isTold(3, told.stop)) << given;
    }
}

} // namespace
} // namespace vellumcaster
