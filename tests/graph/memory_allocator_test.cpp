#include "graph/memory_allocator.h"
#include "platform/kernel/trace.h"
#include "platform/media/graph_results.h"
#include "platform/media/media_type_ids.h"
#include "support/allocation_counter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

class MemoryAllocator : public testing::Test {
protected:
    MemoryAllocator() { EXPECT_EQ(CMemoryAllocator::Make(m_sp), S_OK); }
    ~MemoryAllocator() override { m_sp->Decommit(); }

    HRESULT SetProperties(LONG cBuffers, LONG cbBuffer, LONG cbAlign = 1, LONG cbPrefix = 0) {
        ALLOCATOR_PROPERTIES request{cBuffers, cbBuffer, cbAlign, cbPrefix};
        return m_sp->SetProperties(&request, &m_Actual);
    }

    CComPtr<IMediaSample> GetBuffer(HRESULT hrExpected = S_OK) {
        CComPtr<IMediaSample> sp;
        EXPECT_EQ(m_sp->GetBuffer(sp.Put(), nullptr, nullptr, AM_GBF_NOWAIT), hrExpected);
        return sp;
    }

    static BYTE* DataOf(const CComPtr<IMediaSample>& sp) {
        BYTE* p = nullptr;
        EXPECT_EQ(sp->GetPointer(&p), S_OK);
        return p;
    }

    CComPtr<CMemoryAllocator> m_sp;
    ALLOCATOR_PROPERTIES m_Actual;
};

TEST_F(MemoryAllocator, CorrectsWhatItIsAskedFor) {
    const struct {
        ALLOCATOR_PROPERTIES asked;
        HRESULT hr;
        ALLOCATOR_PROPERTIES actual;
    } cases[] = {
        {{2, 100, 16, 0}, S_OK, {2, 112, 16, 0}},
        {{1, 100, 3, 0}, S_OK, {1, 100, 4, 0}},
        {{1, 100, 5, 0}, S_OK, {1, 104, 8, 0}},
        {{1, 100, 0, 0}, S_OK, {1, 100, 1, 0}},
        {{1, 100, 64, 40}, S_OK, {1, 152, 64, 40}},
        {{1, 10, 64, 60}, S_OK, {1, 68, 64, 60}},
        {{0, 100, 1, 0}, VFW_E_SIZENOTSET, {}},
        {{1, 0, 1, 0}, VFW_E_SIZENOTSET, {}},
        {{1, -5, 1, 0}, VFW_E_SIZENOTSET, {}},
        {{1, 5, 1, -1}, VFW_E_SIZENOTSET, {}},
        {{1, 0x7FFFFFFF, 16, 0}, VFW_E_SIZENOTSET, {}},
        {{1, 5, 0x40000001, 0}, VFW_E_BADALIGN, {}},
        {{1, 5, -3, 0}, VFW_E_BADALIGN, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SetProperties(c.asked.cBuffers, c.asked.cbBuffer, c.asked.cbAlign, c.asked.cbPrefix), c.hr);
        EXPECT_EQ(m_Actual.cBuffers, c.actual.cBuffers);
        EXPECT_EQ(m_Actual.cbBuffer, c.actual.cbBuffer) << c.asked.cbBuffer << ' ' << c.asked.cbAlign;
        EXPECT_EQ(m_Actual.cbAlign, c.actual.cbAlign);
        EXPECT_EQ(m_Actual.cbPrefix, c.actual.cbPrefix);
    }
    EXPECT_EQ(m_sp->SetProperties(nullptr, &m_Actual), E_POINTER);
}

TEST_F(MemoryAllocator, AnswersByItsState) {
    ALLOCATOR_PROPERTIES props;
    LONG nFree = -1;
    const auto answers = [&] {
        CComPtr<IMediaSample> sp;
        const HRESULT hrGet = m_sp->GetBuffer(sp.Put(), nullptr, nullptr, AM_GBF_NOWAIT);
        return std::vector<HRESULT>{m_sp->GetProperties(&props), m_sp->GetFreeCount(&nFree), hrGet,
                                    SetProperties(2, 100)};
    };
    using Answers = std::vector<HRESULT>;
    EXPECT_EQ(m_sp->Commit(), E_FAIL);
    EXPECT_EQ(m_sp->Decommit(), E_FAIL);
    EXPECT_EQ(answers(), (Answers{VFW_E_BUFFER_NOTSET, VFW_E_BUFFER_NOTSET, VFW_E_BUFFER_NOTSET, S_OK}));
    EXPECT_EQ(m_sp->Decommit(), S_OK);
    EXPECT_EQ(answers(), (Answers{S_OK, VFW_E_NOT_COMMITTED, VFW_E_NOT_COMMITTED, S_OK})) << "set";
    EXPECT_EQ(m_sp->Commit(), S_OK);
    EXPECT_EQ(m_sp->Commit(), S_OK);
    EXPECT_EQ(answers(), (Answers{S_OK, S_OK, S_OK, VFW_E_ALREADY_COMMITTED})) << "all free";
    CComPtr<IMediaSample> spFirst = GetBuffer();
    EXPECT_EQ(answers(), (Answers{S_OK, S_OK, S_OK, VFW_E_ALREADY_COMMITTED})) << "some out";
    CComPtr<IMediaSample> spSecond = GetBuffer();
    EXPECT_EQ(answers(), (Answers{S_OK, S_OK, VFW_E_TIMEOUT, VFW_E_ALREADY_COMMITTED})) << "none free";
    EXPECT_EQ(nFree, 0);
    EXPECT_EQ(m_sp->Decommit(), S_OK);
    EXPECT_EQ(m_sp->Decommit(), S_OK);
    EXPECT_EQ(answers(), (Answers{S_OK, VFW_E_NOT_COMMITTED, VFW_E_NOT_COMMITTED, VFW_E_BUFFERS_OUTSTANDING}))
        << "pending";
    EXPECT_EQ(m_sp->Commit(), S_OK) << "the decommit is undone";
    GetBuffer(VFW_E_TIMEOUT);
    spFirst.Reset();
    EXPECT_EQ(answers(), (Answers{S_OK, S_OK, S_OK, VFW_E_ALREADY_COMMITTED}));
    EXPECT_EQ(m_sp->Decommit(), S_OK);
    spSecond.Reset();
    EXPECT_EQ(answers(), (Answers{S_OK, VFW_E_NOT_COMMITTED, VFW_E_NOT_COMMITTED, S_OK})) << "the last is home";
}

TEST_F(MemoryAllocator, CutsOneBlockIntoAlignedBuffersWithPrefixes) {
    ASSERT_EQ(SetProperties(3, 100, 256, 256), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    std::vector<CComPtr<IMediaSample>> samples;
    for (int i = 0; i < 3; ++i)
        samples.push_back(GetBuffer());
    for (std::size_t i = 0; i < 3; ++i) {
        BYTE* p = DataOf(samples[i]);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % 256, 0u);
        std::fill(p - 256, p + m_Actual.cbBuffer, static_cast<BYTE>(i));
        if (i == 0) continue;
        EXPECT_EQ(DataOf(samples[i - 1]) - p, 256 + m_Actual.cbBuffer) << "the highest goes out first";
    }
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(DataOf(samples[i])[-256], i);
    BYTE* const last = DataOf(samples[1]);
    samples[0].Reset();
    samples[1].Reset();
    EXPECT_EQ(DataOf(GetBuffer()), last) << "the last to come home is the first to go";
}

TEST_F(MemoryAllocator, HasAlignmentsAboveThePage) {
    ASSERT_EQ(SetProperties(2, 10, 1 << 20), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    const CComPtr<IMediaSample> sp = GetBuffer();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(DataOf(sp)) % (1 << 20), 0u);
    DataOf(sp)[m_Actual.cbBuffer - 1] = 1;
}

TEST_F(MemoryAllocator, LetsWaitersGoOn) {
    ASSERT_EQ(SetProperties(1, 10), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    CComPtr<IMediaSample> spOut = GetBuffer();
    std::atomic<int> nServed = 0;
    std::atomic<int> nRefused = 0;
    std::vector<std::thread> waiters;
    for (int i = 0; i < 4; ++i)
        waiters.emplace_back([&] {
            for (;;) {
                CComPtr<IMediaSample> sp;
                const HRESULT hr = m_sp->GetBuffer(sp.Put(), nullptr, nullptr, 0);
                if (hr == S_OK) {
                    ++nServed;
                    continue;
                }
                EXPECT_EQ(hr, VFW_E_NOT_COMMITTED);
                ++nRefused;
                return;
            }
        });
    spOut.Reset();
    while (nServed < 2000)
        std::this_thread::yield();
    m_sp->Decommit();
    for (std::thread& waiter : waiters)
        waiter.join();
    EXPECT_EQ(nRefused, 4);
}

TEST_F(MemoryAllocator, TellsItsWatcherOfEachBufferThatComesHome) {
    class CWatcher final : public CUnknownImpl<IMemAllocatorNotifyCallbackTemp> {
    public:
        HRESULT NotifyRelease() override {
            ++nReleased;
            // A watcher may take the buffer at once, or end it all.
            CComPtr<IMediaSample> sp;
            if (nReleased == 1) static_cast<void>(pAllocator->GetBuffer(sp.Put(), nullptr, nullptr, 0));
            if (nReleased == 3) static_cast<void>(pAllocator->Decommit());
            return E_FAIL;
        }
        CMemoryAllocator* pAllocator = nullptr;
        int nReleased = 0;
    };
    const auto spWatcher = MakeCounted<CWatcher>();
    spWatcher->pAllocator = m_sp.Get();
    ASSERT_EQ(m_sp->SetNotify(spWatcher.Get()), S_OK);
    ASSERT_EQ(SetProperties(2, 10), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    GetBuffer().Reset();
    EXPECT_EQ(spWatcher->nReleased, 2);
    GetBuffer().Reset();
    EXPECT_EQ(spWatcher->nReleased, 3);
    GetBuffer(VFW_E_NOT_COMMITTED);
    ASSERT_EQ(m_sp->SetNotify(nullptr), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    GetBuffer().Reset();
    EXPECT_EQ(spWatcher->nReleased, 3);
}

TEST_F(MemoryAllocator, PutsAPendingTypeOnTheNextSample) {
    ASSERT_EQ(SetProperties(2, 10), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    AM_MEDIA_TYPE mt;
    MT_Init(mt, MEDIATYPE_Video, GUID{});
    CComPtr<IMemAllocatorEx> spEx;
    ASSERT_EQ(m_sp->QueryInterface(IMemAllocatorEx::IID, reinterpret_cast<void**>(spEx.Put())), S_OK);
    ASSERT_EQ(spEx->SetMediaType(&mt), S_OK);
    const CComPtr<IMediaSample> spFirst = GetBuffer();
    const CComPtr<IMediaSample> spSecond = GetBuffer();
    AM_MEDIA_TYPE* pmt = nullptr;
    EXPECT_EQ(spSecond->GetMediaType(&pmt), S_FALSE);
    ASSERT_EQ(spFirst->GetMediaType(&pmt), S_OK);
    EXPECT_EQ(pmt->majortype, MEDIATYPE_Video);
    MT_Delete(pmt);
}

TEST_F(MemoryAllocator, LivesUntilItsLastSampleIsHome) {
    ASSERT_EQ(SetProperties(1, 10), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    CComPtr<IMediaSample> sp = GetBuffer();
    CComPtr<CMemoryAllocator> spGone;
    std::swap(spGone, m_sp);
    ASSERT_EQ(CMemoryAllocator::Make(m_sp), S_OK); // for the end of the test
    spGone->Decommit();
    spGone.Reset();
    DataOf(sp)[9] = 1;
    sp.Reset(); // frees the allocator; a leak or a use after it shows under the address sanitizer
}

TEST_F(MemoryAllocator, AllocatesNothingBetweenCommitAndDecommit) {
    if (bTracing) GTEST_SKIP() << "a line of diagnosis is put together in memory";
    ASSERT_EQ(SetProperties(3, 100), S_OK);
    ASSERT_EQ(m_sp->Commit(), S_OK);
    const testing_support::CAllocationCounter counter;
    for (int i = 0; i < 10; ++i) {
        const CComPtr<IMediaSample> spFirst = GetBuffer();
        const CComPtr<IMediaSample> spSecond = GetBuffer();
    }
    EXPECT_EQ(counter.Count(), 0u);
}

} // namespace
} // namespace vellumcaster
