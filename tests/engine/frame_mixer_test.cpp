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
    const struct {
        FrameFormat format;
        HRESULT hr;
    } cases[] = {
        {{eRGB32, 6, 4, 0, 0}, S_OK},
        {{eRGB24, 5, -3, 8, 0}, S_OK},
        {{eARGB32, 6, 4, 0, 0}, S_OK},
        {{eI420, 6, 4, 8, 0}, S_OK},
        {{eI420, 6, 3, 0, 0}, E_INVALIDARG},
        {{eYUY2, 5, 4, 0, 0}, E_INVALIDARG},
        {{eRGB32, 6, 4, 5, 0}, E_INVALIDARG},
        {{eRGB32, 6, 4, -6, 0}, E_INVALIDARG},
        {{eRGB32, 0, 4, 0, 0}, E_INVALIDARG},
        {{eRGB32, 40000, 4, 0, 0}, E_INVALIDARG},
        {{0x3231564E, 6, 4, 0, 0}, VFW_E_TYPE_NOT_ACCEPTED},
        {{0, 6, 4, 0, 0}, VFW_E_TYPE_NOT_ACCEPTED},
    };
    for (const auto& c : cases)
        EXPECT_EQ(spMixer->SetFormat(&c.format), c.hr) << c.format.dwFormat << ' ' << c.format.nWidth;
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
    EXPECT_EQ(spFirst->IsUseExtraBuffer(), S_OK) << "as before";
    BOOL bUse = -1;
    EXPECT_EQ(spControl->IsUseExtraBuffer2(&bUse), S_OK);
    EXPECT_EQ(bUse, 1);
}

TEST_F(FrameMixer, DrawsItemsAddedBeforeAndAfterTheFormat) {
    ImageInfoTag info{2, -2, 32, 0, 16};
    const std::vector<BYTE> white(16, 255);
    LONG before = 0;
    LONG after = 0;
    ASSERT_EQ(spControl->AddImageFromMemory2(&info, 16, white.data(), nullptr, -1, -1, nullptr, &before), S_OK);
    ASSERT_EQ(SetFormat(eRGB32, 8, -2), S_OK);
    ASSERT_EQ(spControl->AddImageFromMemory2(&info, 16, white.data(), nullptr, -1, -1, nullptr, &after), S_OK);
    for (const LONG cookie : {before, after})
        ASSERT_EQ(spControl->ShowItem2(cookie, 1), S_OK);
    ASSERT_EQ(spControl->SetItemPos2(after, 4, 0), S_OK);
    ASSERT_EQ(spMixer->Start(), S_OK);
    std::vector<BYTE> frame(4 * 8 * 2);
    ASSERT_EQ(Mix(frame), S_OK);
    for (std::size_t i = 0; i < frame.size(); ++i)
        EXPECT_EQ(frame[i] != 0, i / 8 % 2 == 0) << i;
}

TEST_F(FrameMixer, TellsCallbacksTheTimesThatTheFrameHas) {
    const LONG cookie = AddText();
    auto spCallback = MakeCounted<CScriptedCallback>([](OVERLAY_PROPS&) { return S_FALSE; });
    ASSERT_EQ(spControl->SetItemCallback(cookie, spCallback.Get()), S_OK);
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
