#include "engine/vellumcaster_filter.h"
#include "support/fake_graph.h"
#include "support/flat_item.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;

// A stream runs while two threads add, change, reorder and remove items. What is checked is that every frame holds
// only whole items, and, under the thread sanitizer, that no access is unordered.
TEST(StreamAndControl, MayRunAtTheSameTime) {
    constexpr int nFrames = 3000;
    constexpr LONG width = 64;
    CHandPaintedItems painter;
    auto spIn = MakeCounted<CPlainInputPin>();
    auto spOut = MakeCounted<CPlainOutputPin>();
    spIn->m_pfConnected = spOut->m_pfConnected = {format_code::RGB32, width, -1, width};
    std::vector<BYTE> frame(4 * width);
    int nTorn = 0;
    spOut->m_spMemInput = MakeCounted<CWatchingPin>([&](IMediaSample&) {
                              for (std::size_t i = 0; i < frame.size(); i += 4)
                                  nTorn += frame[i] != frame[i + 3];
                              return S_OK;
                          }).Get();
    CCoVellumcaster filter(painter, spIn, spOut);
    COverlayEngine& engine = filter.Engine();

    std::atomic<bool> bRunning = true;
    std::atomic<int> nCallbacks = 0;
    const auto control = [&](BYTE color) {
        const auto spCallback = MakeCounted<CScriptedCallback>([&](OVERLAY_PROPS& props) {
            ++nCallbacks;
            props.nPosX = (props.nPosX + 1) % width;
            return S_OK;
        });
        while (bRunning) {
            Cookie cookie = 0;
            EXPECT_EQ(engine.AddItem(FlatItem(format_code::RGB32, {8, 1}, color), &cookie), S_OK);
            engine.SetItemCallback(cookie, spCallback.Get());
            OVERLAY_PROPS props;
            if (engine.GetItemProps(cookie, &props) == S_OK) {
                props.nPosX = color % width;
                engine.SetItemProps(cookie, &props, 0);
                SysFreeString(props.bsTextString);
            }
            engine.ChangeItemOrder(cookie, -1);
            engine.ResetItemForRun();
            std::this_thread::yield();
            engine.RemoveItem2(cookie);
        }
    };
    std::thread first(control, BYTE{100});
    std::thread second(control, BYTE{200});
    const auto spSample = MakeCounted<CPlainSample>(frame.data(), static_cast<LONG>(frame.size()));
    for (int i = 0; i < nFrames || nCallbacks < nFrames; ++i)
        EXPECT_EQ(filter.Filter_SendSample(0, spSample.Get()), S_OK);
    bRunning = false;
    first.join();
    second.join();
    EXPECT_EQ(nTorn, 0);
}

} // namespace
} // namespace vellumcaster
