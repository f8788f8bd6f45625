#include "host/graph/slow_allocator.h"
#include "support/copy_counter.h"
#include "support/filter_in_graph.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

using namespace testing_support;
using Memory = SourceManners::Memory;

/// In frames: formats of media types are copied by the same operations.
constexpr double leeway = 0.001;

/// Frames large enough for their memory to be measured.
class FrameCopies : public FilterInGraph {
protected:
    static constexpr PictureFormat pf{format_code::I420, 640, 480, 640};

    FrameCopies() {
        m_Source.streams = {{pf, 400000}};
        m_Sink.take = [this](IMediaSample& sample, const PictureFormat&) { return Take(sample, pf); };
    }

    /// Copied bytes of a stream, in frames.
    double CopiesPerFrame() {
        const std::uint64_t cbBefore = CopiedBytes();
        RunToEnd();
        const auto cbFrames = static_cast<double>(CPictureFormats::GetBufferSize(pf)) * m_nTaken;
        return static_cast<double>(CopiedBytes() - cbBefore) / cbFrames;
    }
};

TEST_F(FrameCopies, AreAsManyAsTheMemoryOnBothSidesAsksFor) {
    const struct {
        const char* pszName;
        Memory source;
        bool bSinkInsists;
        MemoryType (*measure)(BYTE*, LONG);
        double copies;
    } ways[] = {
        {"through-pass", Memory::Own, false, nullptr, 0},
        {"separated, writable", Memory::Own, true, nullptr, 1},
        {"separated, read-only", Memory::OwnReadOnly, false, [](BYTE*, LONG) { return MemoryType::System; }, 1},
        {"separated, read-only, video", Memory::OwnReadOnly, false, [](BYTE*, LONG) { return MemoryType::Video; }, 2},
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.pszName);
        m_spGraph->Clear();
        m_nFilled = m_nTaken = 0;
        m_Source.memory = way.source;
        m_Sink.bInsistsOnItsMemory = way.bSinkInsists;
        ASSERT_EQ(Build(), S_OK);
        if (way.measure) m_spFilter->m_pfnDetectMemoryType = way.measure;
        AddBox();
        EXPECT_NEAR(CopiesPerFrame(), way.copies, leeway);
        EXPECT_EQ(m_nTaken, m_nFrames);
        EXPECT_FALSE(IsBackground(0, 0));
        EXPECT_TRUE(IsBackground(4, 0));
    }
}

TEST_F(FrameCopies, AreTwoIntoMemoryThatIsSlowToRead) {
    CComPtr<IMemAllocator> spSlow;
    ASSERT_EQ(MakeSlowAllocator(spSlow), S_OK);
    ALLOCATOR_PROPERTIES props{1, 1 << 16, 1, 0};
    ASSERT_EQ(spSlow->SetProperties(&props, &props), S_OK);
    const HRESULT hr = spSlow->Commit();
    spSlow->Decommit();
    if (hr == E_NOTIMPL) GTEST_SKIP() << "no program serves its own pages here";
    ASSERT_EQ(hr, S_OK);

    m_Source.memory = Memory::OwnReadOnly;
    m_Sink.makeAllocator = MakeSlowAllocator;
    m_Sink.needs.cBuffers = 2;
    ASSERT_EQ(Build(), S_OK);
    ASSERT_EQ(m_spFilter->m_spOut->m_Allocator.GetMode(), CTransInPlaceAllocator::Mode::Downstream);
    AddBox();
    EXPECT_NEAR(CopiesPerFrame(), 2, leeway);
    EXPECT_EQ(m_spFilter->m_nMemoryType, MemoryType::Video) << "measured, not told";
    EXPECT_FALSE(IsBackground(0, 0));
    EXPECT_TRUE(IsBackground(4, 0));

    m_nFilled = m_nTaken = 0;
    EXPECT_NEAR(CopiesPerFrame(), 2, leeway) << "the measure stands as long as the connection does";
}

} // namespace
} // namespace vellumcaster
