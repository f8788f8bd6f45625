#include "support/mixer_control.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;

constexpr FrameFormat frameFormat{eI420, 64, 32, 0, 400000};
constexpr std::size_t nAdders = 4;
constexpr std::size_t nAddsEach = 70;
constexpr std::size_t nRemovers = 2;
constexpr std::size_t nRemovalsEach = 100;
constexpr std::size_t nNames = nAdders * nAddsEach;

/// A stack that sixteen threads work on. What they did is kept beside, so that in the end it can be compared.
class CBusyStack : private MixerControl {
public:
    CBusyStack() {
        EXPECT_EQ(spMixer->SetFormat(&frameFormat), S_OK);
        EXPECT_EQ(spMixer->Start(), S_OK);
    }

    void Add(std::size_t nName) {
        const CBstr name = Text(NameOf(nName));
        constexpr ITEM_TYPE types[] = {eText, eFrameNumber, eSMPTETimeCode, eImage};
        if (types[nName % 4] != eImage)
            AddText(types[nName % 4], name.View());
        else
            AddPicture(name.Get());
    }

    /// Changes one item in one way. Somebody else may have removed it since it was seen.
    void Change(std::minstd_rand& random) {
        const LONG a = AnyItem(random).cookie;
        const LONG b = AnyItem(random).cookie;
        const auto n = static_cast<LONG>(random() % 64);
        OVERLAY_PROPS recolored;
        if (spControl->GetItemProps(a, &recolored) == S_OK) TakeName(recolored.bsTextString);
        recolored.lForeColor = static_cast<LONG>(0xFF000000u | random());
        HRESULT hr = S_OK;
        switch (random() % 7) {
        case 0: hr = spControl->SetItemProps(a, &recolored, 0); break;
        case 1: hr = spControl->SetItemPos2(a, n - 8, n / 2); break;
        case 2: hr = spControl->SetItemAlpha2(a, static_cast<std::int16_t>(n)); break;
        case 3: hr = spControl->SetItemMovement(a, n / 8.0, -n / 8.0, 1); break;
        case 4: hr = spControl->ShowItem2(a, n % 4 != 0); break;
        case 5: hr = spControl->SwitchItems2(a, b); break;
        default: hr = spControl->SetItemCounter(a, n); break;
        }
        EXPECT_TRUE(hr == S_OK || hr == S_FALSE || hr == E_INVALIDARG) << hr;
    }

    void Reorder(std::minstd_rand& random) {
        spControl->ChangeItemOrder(AnyItem(random).cookie, random() % 2 == 0 ? 1 : -1);
        if (random() % 32 == 0) Engine().ResetItemForRun();
        if (random() % 256 == 0) Engine().PrepareItems();
    }

    /// With the item lock held the cookie names what was seen, whoever else reorders.
    void CallBackOrNot(std::minstd_rand& random) {
        const CAutoLock lock(Engine().ItemLock());
        const ListedItem item = AnyItem(random);
        if (item.name.empty() || random() % 3 == 0) {
            spControl->SetItemCallback(item.cookie, nullptr);
            return;
        }
        const auto spCallback = MakeCounted<CScriptedCallback>([this, nName = NumberOf(item)](OVERLAY_PROPS& props) {
            if (m_Removed.at(nName)) ++m_nLate;
            m_bCalledBack = true;
            props.nPosX = (props.nPosX + 1) % frameFormat.nWidth;
            return props.nPosX % 2 == 0 ? S_OK : S_FALSE;
        });
        spControl->SetItemCallback(item.cookie, spCallback.Get());
    }

    /// \return whether there was an item.
    bool Remove(std::minstd_rand& random) {
        const CAutoLock lock(Engine().ItemLock());
        const ListedItem item = AnyItem(random);
        if (spControl->RemoveItem2(item.cookie) != S_OK) return false;
        EXPECT_FALSE(m_Removed.at(NumberOf(item)).exchange(true)) << "removed twice";
        return true;
    }

    void MixFrame() {
        std::array<BYTE, std::size_t{64} * 32 * 3 / 2> frame{};
        EXPECT_EQ(spMixer->MixFrame(frame.data(), frame.size(), nullptr, nullptr, nullptr, nullptr), S_OK);
    }

    [[nodiscard]] bool HasCalledBack() const { return m_bCalledBack; }

    void ExpectAllToBeAccountedFor() const {
        EXPECT_EQ(m_nLate, 0) << "callbacks after a removal";
        const std::vector<std::u16string> names = Names();
        EXPECT_EQ(names.size(), nNames - nRemovers * nRemovalsEach);
        for (std::size_t nName = 0; nName < nNames; ++nName)
            EXPECT_EQ(std::count(names.begin(), names.end(), NameOf(nName)), m_Removed[nName] ? 0 : 1) << nName;
    }

private:
    [[nodiscard]] COverlayEngine& Engine() const { return static_cast<CCoFrameMixer*>(spMixer.Get())->Engine(); }

    static std::u16string NameOf(std::size_t nName) {
        const std::string digits = std::to_string(nName);
        return {digits.begin(), digits.end()};
    }
    static std::size_t NumberOf(const ListedItem& item) {
        return std::stoul(std::string(item.name.begin(), item.name.end()));
    }

    /// Nothing, if the place has become empty meanwhile.
    [[nodiscard]] ListedItem AnyItem(std::minstd_rand& random) const {
        const LONG nCount = Count();
        return ItemAt(nCount == 0 ? 0 : static_cast<LONG>(random() % static_cast<unsigned>(nCount)))
            .value_or(ListedItem());
    }

    std::array<std::atomic<bool>, nNames> m_Removed{};
    std::atomic<bool> m_bCalledBack = false;
    std::atomic<int> m_nLate = 0;
};

// What is checked is that no item gets lost or removed twice, that a removed item is not called back and, under the
// thread sanitizer, that no access is unordered.
TEST(StreamAndControl, MayRunAtTheSameTime) {
    CBusyStack stack;
    std::atomic<std::size_t> nBusy = nAdders + nRemovers;
    std::atomic<bool> bOver = false;
    std::vector<std::jthread> threads;
    const auto start = [&](std::size_t nCount,
                           const std::function<void(std::size_t nThread, std::minstd_rand&)>& work) {
        for (std::size_t i = 0; i < nCount; ++i)
            threads.emplace_back([work, i, nSeed = threads.size() + 1] {
                std::minstd_rand random(static_cast<unsigned>(nSeed));
                work(i, random);
            });
    };
    const auto meanwhile = [&](void (CBusyStack::*operation)(std::minstd_rand&)) {
        return [&stack, &bOver, operation](std::size_t, std::minstd_rand& random) {
            while (!bOver)
                (stack.*operation)(random);
        };
    };
    start(nAdders, [&](std::size_t nThread, std::minstd_rand&) {
        for (std::size_t i = 0; i < nAddsEach; ++i)
            stack.Add(nThread * nAddsEach + i);
        --nBusy;
    });
    start(nRemovers, [&](std::size_t, std::minstd_rand& random) {
        for (std::size_t nRemoved = 0; nRemoved < nRemovalsEach;)
            nRemoved += stack.Remove(random) ? 1 : 0;
        --nBusy;
    });
    start(6, meanwhile(&CBusyStack::Change));
    start(2, meanwhile(&CBusyStack::Reorder));
    start(2, meanwhile(&CBusyStack::CallBackOrNot));
    while (nBusy != 0 || !stack.HasCalledBack())
        stack.MixFrame();
    bOver = true;
    threads.clear(); // each is waited for
    stack.ExpectAllToBeAccountedFor();
}

} // namespace
} // namespace vellumcaster
