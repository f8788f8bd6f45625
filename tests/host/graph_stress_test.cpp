#include "support/filter_in_graph.h"

#include "graph/seh_calls.h"
#include "support/unruly.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

namespace vellumcaster {
namespace {

using namespace testing_support;
using Memory = SourceManners::Memory;

class GraphStress : public FilterInGraph {
protected:
    /// Adds, changes and removes an item, as an application does.
    void UseControl() {
        AddBox();
        LONG cookie = 0;
        BSTR bsName = nullptr;
        ITEM_TYPE eType = eText;
        if (m_spFilter->GetItemInfo2(0, &cookie, &bsName, &eType) != S_OK) return;
        SysFreeString(bsName);
        m_spFilter->SetItemAlpha2(cookie, 100);
        m_spFilter->RemoveItem2(cookie);
    }

    /// Goes on until the filter has stopped: an allocator may refuse to be decommitted, and then it has not.
    void StopAtLast() {
        do
            static_cast<void>(m_spGraph->Stop());
        while (!m_spFilter->CBaseFilter::IsStopped());
    }
};

TEST_F(GraphStress, LosesNoFrameUnderControlFromAllSides) {
    m_nFrames = 1 << 30;
    m_Sink.take = [this](IMediaSample&, const PictureFormat&) { return ++m_nTaken, S_OK; };
    ASSERT_EQ(Build(), S_OK);
    std::atomic<bool> bDone = false;
    std::thread application([&] {
        while (!bDone) {
            UseControl();
            CComPtr<IMediaSeeking> spSeeking;
            EXPECT_EQ(
                m_spFilter->m_spOut->QueryInterface(IMediaSeeking::IID, reinterpret_cast<void**>(spSeeking.Put())),
                E_NOINTERFACE);
            EXPECT_EQ(m_spFilter->m_spOut->QueryAccept(nullptr), S_FALSE);
            std::this_thread::yield();
        }
    });
    for (int round = 0; round < 2000; ++round) {
        const int nBefore = m_nTaken;
        ASSERT_EQ(m_spGraph->Run(), S_OK);
        while (m_nTaken < nBefore + 2)
            std::this_thread::yield();
        if (round % 2 == 0) {
            ASSERT_EQ(m_spSource->Flush(), S_OK);
            const int nAfterFlush = m_nTaken;
            while (m_nTaken == nAfterFlush) // the stream goes on
                std::this_thread::yield();
        }
        if (round % 3 == 0) {
            ASSERT_EQ(m_spGraph->Pause(), S_OK);
        }
        ASSERT_EQ(m_spGraph->Stop(), S_OK);
        ASSERT_EQ(m_spSource->AcceptedCount(), m_nTaken) << "what was accepted has come through";
        if (round % 5 == 0) {
            ASSERT_EQ(m_spGraph->ReconnectEx(m_spFilter->m_spIn.Get(), nullptr), S_OK);
        }
        if (round % 7 == 0) {
            ASSERT_EQ(m_spFilter->UseExtraBuffer2(round % 14 == 0 ? 0 : 1), S_OK);
        }
    }
    bDone = true;
    application.join();
}

TEST_F(GraphStress, StopsWhileTheFilterOrTheSourceWaitsForABuffer) {
    std::mutex mutex;
    std::vector<CComPtr<IMediaSample>> kept;
    m_nFrames = 1 << 30;
    m_Sink.take = [&](IMediaSample& sample, const PictureFormat&) {
        const std::lock_guard lock(mutex);
        kept.emplace_back(&sample);
        ++m_nTaken;
        return S_OK;
    };
    for (const Memory memory : {Memory::OwnReadOnly, Memory::Own}) {
        m_spGraph->Clear();
        m_Source.memory = memory;
        ASSERT_EQ(Build(), S_OK);
        for (int round = 0; round < 200; ++round) {
            m_nTaken = 0;
            ASSERT_EQ(m_spGraph->Run(), S_OK);
            while (m_nTaken < m_spFilter->m_spOut->m_Allocator.Properties().cBuffers)
                std::this_thread::yield();
            ASSERT_EQ(m_spGraph->Stop(), S_OK) << "every buffer is kept, and a thread waits for the next one";
            kept.clear();
        }
    }
}

TEST_F(GraphStress, IsDisconnectedWhileADeliveryIsStillUnderWay) {
    std::mutex mutex;
    std::vector<CComPtr<IMediaSample>> kept;
    m_nFrames = 1 << 30;
    m_Source.memory = Memory::OwnReadOnly;
    m_Sink.bOffersMemory = false;
    m_Sink.take = [&](IMediaSample& sample, const PictureFormat&) {
        const std::lock_guard lock(mutex);
        kept.emplace_back(&sample);
        ++m_nTaken;
        return S_OK;
    };
    for (int round = 0; round < 200; ++round) {
        m_nTaken = 0;
        ASSERT_EQ(Build(), S_OK);
        ASSERT_EQ(m_spGraph->Run(), S_OK);
        while (m_nTaken == 0)
            std::this_thread::yield();
        // The source goes on: what it delivers waits for a buffer of the filter's own.
        EXPECT_EQ(m_spSink->Stop(), S_OK);
        EXPECT_EQ(m_spFilter->Stop(), S_OK);
        EXPECT_EQ(m_spFilter->m_spOut->Disconnect(), S_OK);
        {
            const std::lock_guard lock(mutex); // a frame that has its buffer still arrives
            kept.clear();
        }
        EXPECT_EQ(m_spSource->Stop(), S_OK);
        m_spGraph->Clear();
    }
}

TEST_F(GraphStress, OutlivesNeighboursThatKeepToNoContract) {
    ASSERT_EQ(CCoVellumcaster::Make(m_spFilter), S_OK);
    const SourceManners goodSource = m_Source;
    const SinkManners goodSink = m_Sink;
    AddBox();
    int nConnected = 0;
    for (std::uint64_t nRound = 1; nRound <= 3000; ++nRound) {
        const auto whims = std::make_shared<CWhims>(nRound, std::uint64_t{4} << nRound % 6);
        m_Source.answer = m_Sink.answer = [whims](PinCall) { return whims->Answer(); };
        m_Source.makeAllocator =
            m_Sink.makeAllocator = [whims](CComPtr<IMemAllocator>& sp) { return CUnrulyAllocator::Make(whims, sp); };
        m_Source.memory = std::array{Memory::Offered, Memory::Own, Memory::OwnReadOnly}[nRound % 3];
        m_Sink.bInsistsOnItsMemory = nRound % 5 == 0;
        m_Sink.bOffersMemory = nRound % 4 != 0;
        int nFramesLeft = 5;
        m_Source.fill = [&](IMediaSample& sample, const PictureFormat&) {
            static_cast<void>(SEH_IMediaSample::SetActualDataLength(&sample, 96));
            return nFramesLeft-- > 0 ? S_OK : S_FALSE;
        };
        m_Sink.take = nullptr;
        if (BuildAroundFilter() == S_OK && m_spGraph->Run() == S_OK) {
            ++nConnected;
            static_cast<void>(m_spSource->Flush());
            m_spSource->WaitForEnd();
        }
        StopAtLast();
        whims->Calm();
        m_spGraph->Clear();
        ASSERT_EQ((m_spFilter->AddRef(), m_spFilter->Release()), 1u) << "round " << nRound << " keeps a reference";
        if (nRound % 100 != 0) continue;

        SCOPED_TRACE(nRound);
        m_Source = goodSource;
        m_Sink = goodSink;
        m_nFilled = m_nTaken = 0;
        ASSERT_EQ(BuildAroundFilter(), S_OK) << "nothing has spoilt the filter";
        RunToEnd();
        ASSERT_EQ(m_nTaken, m_nFrames);
        ASSERT_FALSE(IsBackground(0, 0));
        m_spGraph->Clear();
    }
    EXPECT_GT(nConnected, 500) << "the rounds reach the stream";
}

} // namespace
} // namespace vellumcaster
