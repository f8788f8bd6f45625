#include "engine/overlay_engine.h"
#include "engine/stream_painter.h"
#include "image/plane_layout.h"
#include "support/recording_painter.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;

constexpr SIZE sizeFrame{64, 32};
constexpr int nAdders = 4;
constexpr int nAddsEach = 70;
constexpr int nRemovers = 2;
constexpr int nRemovalsEach = 100;
constexpr int nNames = nAdders * nAddsEach;

/// An item as it was read, by its place.
struct Seen {
    Cookie cookie = 0;
    int nName = 0;
};

/// A stack that sixteen threads work on. What they did is kept beside, so that in the end it can be compared.
class CBusyStack {
public:
    CBusyStack() {
        m_Painter.SetInputFormat(format_code::I420);
        m_Painter.SetOutputFormat(format_code::I420);
        m_Painter.SetAvgTimePerFrame(400000);
    }

    void Add(int nName) {
        OVERLAY_PROPS props;
        props.bShow = 1;
        props.lForeColor = -1;
        props.sAlphaValue = 200;
        CBstr bsName;
        ASSERT_EQ(bsName.Assign(NameOf(nName)), S_OK);
        props.bsTextString = bsName.Get();
        std::array<BYTE, std::size_t{8} * 4 * 4> pixels{};
        pixels.fill(static_cast<BYTE>(nName));
        ImageInfoTag info{8, -4, 32, 0, pixels.size()};
        LOGFONT font;
        font.lfHeight = -8;
        std::strcpy(font.lfFaceName, "DejaVu Sans");
        constexpr ITEM_TYPE types[] = {eText, eFrameNumber, eSMPTETimeCode};
        const HRESULT hr = nName % 4 == 3
                               ? m_Engine.AddImageFromMemory2(&info, pixels.size(), pixels.data(), bsName.Get(), 0, 0,
                                                              nullptr, nullptr)
                               : m_Engine.AddOutlinedText(types[nName % 4], &font, 4, &props, nullptr, nullptr);
        EXPECT_EQ(hr, S_OK);
    }

    /// Changes one item in one way. Somebody else may have removed it since it was seen.
    void Change(std::minstd_rand& random) {
        const Seen a = SeeAny(random);
        const Seen b = SeeAny(random);
        const auto n = static_cast<LONG>(random() % 64);
        const auto recolor = [&] {
            OVERLAY_PROPS props;
            if (const HRESULT hr = m_Engine.GetItemProps(a.cookie, &props); FAILED(hr)) return hr;
            props.lForeColor = static_cast<LONG>(0xFF000000u | random());
            const HRESULT hr = m_Engine.SetItemProps(a.cookie, WithoutText(props), 0);
            return hr;
        };
        HRESULT hr = S_OK;
        switch (random() % 7) {
        case 0: hr = recolor(); break;
        case 1: hr = m_Engine.SetItemPos2(a.cookie, n - 8, n / 2); break;
        case 2: hr = m_Engine.SetItemAlpha2(a.cookie, static_cast<std::int16_t>(n)); break;
        case 3: hr = m_Engine.SetItemMovement(a.cookie, n / 8.0, -n / 8.0, 1); break;
        case 4: hr = m_Engine.ShowItem2(a.cookie, n % 4 != 0); break;
        case 5: hr = m_Engine.SwitchItems2(a.cookie, b.cookie); break;
        default: hr = m_Engine.SetItemCounter(a.cookie, n); break;
        }
        EXPECT_TRUE(hr == S_OK || hr == S_FALSE || hr == E_INVALIDARG) << hr;
    }

    void Reorder(std::minstd_rand& random) {
        m_Engine.ChangeItemOrder(SeeAny(random).cookie, random() % 2 == 0 ? 1 : -1);
        if (random() % 32 == 0) m_Engine.ResetItemForRun();
        if (random() % 256 == 0) m_Engine.PrepareItems();
    }

    /// With the item lock held the cookie names what was seen, whoever else reorders.
    void CallBackOrNot(std::minstd_rand& random) {
        const CAutoLock lock(m_Engine.ItemLock());
        const Seen seen = SeeAny(random);
        if (random() % 3 == 0) {
            m_Engine.SetItemCallback(seen.cookie, nullptr);
            return;
        }
        const auto spCallback = MakeCounted<CScriptedCallback>([this, nName = seen.nName](OVERLAY_PROPS& props) {
            if (m_Removed.at(static_cast<std::size_t>(nName))) ++m_nLate;
            ++m_nCallbacks;
            props.nPosX = (props.nPosX + 1) % sizeFrame.cx;
            return props.nPosX % 2 == 0 ? S_OK : S_FALSE;
        });
        m_Engine.SetItemCallback(seen.cookie, spCallback.Get());
    }

    /// \return whether there was an item.
    bool Remove(std::minstd_rand& random) {
        const CAutoLock lock(m_Engine.ItemLock());
        const Seen seen = SeeAny(random);
        if (m_Engine.RemoveItem2(seen.cookie) != S_OK) return false;
        EXPECT_FALSE(m_Removed.at(static_cast<std::size_t>(seen.nName)).exchange(true)) << "removed twice";
        return true;
    }

    void MixFrame() {
        const PictureFormat desc{format_code::I420, sizeFrame.cx, -sizeFrame.cy, sizeFrame.cx};
        m_Frame.resize(CPictureFormats::GetBufferSize(desc));
        EXPECT_EQ(m_Engine.MixFrame({m_Frame.data(), m_Frame.size(), desc}, sizeFrame, {}), S_OK);
    }

    [[nodiscard]] std::multiset<int> NamesInTheList() {
        std::multiset<int> names;
        for (LONG i = 0; i < Count(); ++i)
            names.insert(See(i).nName);
        return names;
    }
    [[nodiscard]] std::multiset<int> NamesThatWereNotRemoved() const {
        std::multiset<int> names;
        for (int nName = 0; nName < nNames; ++nName)
            if (!m_Removed[static_cast<std::size_t>(nName)]) names.insert(nName);
        return names;
    }
    [[nodiscard]] int Callbacks() const { return m_nCallbacks; }
    [[nodiscard]] int CallbacksAfterRemoval() const { return m_nLate; }

private:
    static std::u16string NameOf(int nName) {
        const std::string name = std::to_string(nName);
        return {name.begin(), name.end()};
    }
    static const OVERLAY_PROPS* WithoutText(OVERLAY_PROPS& props) {
        SysFreeString(props.bsTextString);
        props.bsTextString = nullptr;
        return &props;
    }

    [[nodiscard]] LONG Count() {
        LONG nCount = 0;
        EXPECT_EQ(m_Engine.GetItemCount2(&nCount), S_OK);
        return nCount;
    }
    Seen See(LONG index) {
        Seen seen{std::numeric_limits<Cookie>::min(), 0};
        BSTR bsName = nullptr;
        ITEM_TYPE eType = eText;
        if (m_Engine.GetItemInfo2(index, &seen.cookie, &bsName, &eType) == S_OK)
            for (const char16_t c : CBstr::View(bsName))
                seen.nName = 10 * seen.nName + (c - u'0');
        SysFreeString(bsName);
        return seen;
    }
    Seen SeeAny(std::minstd_rand& random) {
        const LONG nCount = Count();
        return See(nCount == 0 ? 0 : static_cast<LONG>(random() % static_cast<unsigned>(nCount)));
    }

    CStreamPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
    std::vector<BYTE> m_Frame;
    std::array<std::atomic<bool>, nNames> m_Removed{};
    std::atomic<int> m_nCallbacks = 0;
    std::atomic<int> m_nLate = 0;
};

// What is checked is that no item gets lost or removed twice, that a removed item is not called back and, under the
// thread sanitizer, that no access is unordered.
TEST(StreamAndControl, MayRunAtTheSameTime) {
    CBusyStack stack;
    std::atomic<int> nBusy = nAdders + nRemovers;
    std::vector<std::thread> threads;
    const auto start = [&](int nCount, const std::function<void(int nThread, std::minstd_rand&)>& work) {
        for (int i = 0; i < nCount; ++i)
            threads.emplace_back([work, i, nSeed = threads.size() + 1] {
                std::minstd_rand random(static_cast<unsigned>(nSeed));
                work(i, random);
            });
    };
    const auto meanwhile = [&](void (CBusyStack::*operation)(std::minstd_rand&)) {
        return [&stack, &nBusy, operation](int, std::minstd_rand& random) {
            while (nBusy != 0)
                (stack.*operation)(random);
        };
    };
    start(nAdders, [&](int nThread, std::minstd_rand&) {
        for (int i = 0; i < nAddsEach; ++i)
            stack.Add(nThread * nAddsEach + i);
        --nBusy;
    });
    start(nRemovers, [&](int, std::minstd_rand& random) {
        for (int nRemoved = 0; nRemoved < nRemovalsEach;)
            nRemoved += stack.Remove(random) ? 1 : 0;
        --nBusy;
    });
    start(6, meanwhile(&CBusyStack::Change));
    start(2, meanwhile(&CBusyStack::Reorder));
    start(2, meanwhile(&CBusyStack::CallBackOrNot));
    while (nBusy != 0)
        stack.MixFrame();
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(stack.NamesInTheList(), stack.NamesThatWereNotRemoved());
    EXPECT_EQ(stack.NamesInTheList().size(), std::size_t{nNames - nRemovers * nRemovalsEach});
    EXPECT_GT(stack.Callbacks(), 0);
    EXPECT_EQ(stack.CallbacksAfterRemoval(), 0);
}

TEST(StreamAndControl, AnItemIsDrawnBeforeItsAddAsksForTheList) {
    CRecordingPainter painter;
    COverlayEngine engine(painter);
    const auto addText = [&] {
        OVERLAY_PROPS props;
        CBstr bsText;
        EXPECT_EQ(bsText.Assign(std::u16string_view(u"text")), S_OK);
        props.bsTextString = bsText.Get();
        EXPECT_EQ(engine.AddOutlinedText(eText, nullptr, 4, &props, nullptr, nullptr), S_OK);
    };
    const auto addImage = [&] {
        constexpr BYTE pixels[16] = {};
        ImageInfoTag info{2, -2, 32, 0, sizeof pixels};
        EXPECT_EQ(engine.AddImageFromMemory2(&info, sizeof pixels, pixels, nullptr, 0, 0, nullptr, nullptr), S_OK);
    };
    const auto journalAtTheLock = [&](const std::function<void()>& add) {
        CCriticalSection& cs = engine.ItemLock();
        cs.Enter();
        std::thread adding(add);
        while (cs.Waiting() == 0)
            std::this_thread::yield();
        std::string journal = painter.TakeJournal();
        cs.Leave();
        adding.join();
        return journal;
    };
    EXPECT_EQ(journalAtTheLock(addText), "text");
    EXPECT_EQ(journalAtTheLock(addImage), "prepare");
    EXPECT_EQ(painter.TakeJournal(), "") << "nothing more with the list in hand";
}

} // namespace
} // namespace vellumcaster
