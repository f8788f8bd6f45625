#include "host/graph/graph_builder.h"
#include "image/blob_holder.h"
#include "image/plane_layout.h"
#include "support/ratio_table.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace vellumcaster::bench {

namespace {

constexpr PictureFormat frameFormat{format_code::I420, 1920, 1080, 1920};

void Check(HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    std::fprintf(stderr, "a call answered 0x%08X\n", static_cast<unsigned>(hr));
    std::exit(1);
}

/// The filter in a graph whose source stands still: samples are handed to the filter's pin by hand.
class CStandingGraph {
public:
    CStandingGraph(SourceManners::Memory memory, MemoryType outputMemory, int nItems) {
        SourceManners source;
        source.streams = {{frameFormat, 400000}};
        source.memory = memory;
        m_spSource = MakeCounted<CFrameSource>(source);
        SinkManners sink;
        // A source that can be written has its own memory, and the sink has too: the two stay apart.
        sink.bInsistsOnItsMemory = memory == SourceManners::Memory::Own;
        m_spSink = MakeCounted<CFrameSink>(sink);
        Check(CCoVellumcaster::Make(m_spFilter));
        Check(BuildGraph(*m_spGraph, *m_spSource, *m_spFilter, *m_spSink));
        m_spFilter->m_nMemoryType = outputMemory;
        for (int i = 0; i < nItems; ++i)
            AddItem(i);
        Check(m_spSink->Pause());
        Check(m_spFilter->Pause());
        m_spAllocator = m_spFilter->m_spIn->AllocIn();
        Check(m_spAllocator->Commit());
    }
    ~CStandingGraph() {
        m_spAllocator->Decommit();
        m_spGraph->Clear();
    }

    /// One frame, from the free buffer to the end of the delivery.
    void SendFrame() {
        CComPtr<IMediaSample> spSample;
        Check(m_spAllocator->GetBuffer(spSample.Put(), nullptr, nullptr, 0));
        spSample->SetActualDataLength(spSample->GetSize());
        Check(m_spFilter->m_spIn->Receive(spSample.Get()));
    }

    void GetAndRelease() {
        CComPtr<IMediaSample> spSample;
        Check(m_spAllocator->GetBuffer(spSample.Put(), nullptr, nullptr, 0));
    }

private:
    void AddItem(int n) {
        ImageInfoTag info{480, -120, 32, 0, 480 * 120 * 4};
        const std::vector<BYTE> pixels(info.biSizeImage, 200);
        LONG cookie = 0;
        Check(
            m_spFilter->AddImageFromMemory2(&info, info.biSizeImage, pixels.data(), nullptr, -1, -1, nullptr, &cookie));
        Check(m_spFilter->SetItemPos2(cookie, n % 4 * 480, n / 4 * 300));
        Check(m_spFilter->ShowItem2(cookie, 1));
    }

    CComPtr<CGraph> m_spGraph = MakeCounted<CGraph>();
    CComPtr<CFrameSource> m_spSource;
    CComPtr<CFrameSink> m_spSink;
    CComPtr<CCoVellumcaster> m_spFilter;
    CComPtr<IMemAllocator> m_spAllocator;
};

/// What a frame costs that is copied and nothing else.
class CPlainCopy {
public:
    CPlainCopy() {
        for (CVirtualBlob* pFrame : {&m_From, &m_To})
            Check(pFrame->Alloc(CPictureFormats::GetBufferSize(frameFormat), true, 1));
    }

    void Copy() {
        std::memcpy(m_To.Data(), m_From.Data(), m_From.Size());
        benchmark::ClobberMemory();
    }

private:
    CVirtualBlob m_From; // the same kind of memory as the filter's
    CVirtualBlob m_To;
};

struct Way {
    const char* pszName;
    SourceManners::Memory memory;
    MemoryType outputMemory;
    double goal; ///< by a plain copy
};

std::vector<RatioLine> AddGraphs() {
    using Memory = SourceManners::Memory;
    constexpr Way ways[] = {
        {"separated_writable", Memory::Own, MemoryType::Unknown, 1.1},
        {"separated_read_only", Memory::OwnReadOnly, MemoryType::System, 1.1},
        {"separated_read_only_video", Memory::OwnReadOnly, MemoryType::Video, 2.2},
    };
    std::vector<RatioLine> lines;
    for (const Way& way : ways) {
        const auto spGraph = std::make_shared<CStandingGraph>(way.memory, way.outputMemory, 0);
        const auto spCopy = std::make_shared<CPlainCopy>();
        AddBenchmark(way.pszName, "filter", [=] { spGraph->SendFrame(); });
        AddBenchmark(way.pszName, "copy", [=] { spCopy->Copy(); });
        lines.push_back({way.pszName, "filter", "copy", way.goal});
    }

    const auto spPass = std::make_shared<CStandingGraph>(Memory::Offered, MemoryType::Unknown, 0);
    AddBenchmark("through_pass", "filter", [=] { spPass->SendFrame(); });
    AddMeasured("through_pass", "3_us", [] { return 3e-6; });
    lines.push_back({"through_pass", "filter", "3_us", 1.0});
    AddBenchmark("sample", "get_and_release", [=] { spPass->GetAndRelease(); });
    AddMeasured("sample", "half_us", [] { return 0.5e-6; });
    lines.push_back({"sample", "get_and_release", "half_us", 1.0});

    const auto spTen = std::make_shared<CStandingGraph>(Memory::Offered, MemoryType::Unknown, 10);
    const auto spCopy = std::make_shared<CPlainCopy>();
    AddBenchmark("ten_items_of_480x120", "filter", [=] { spTen->SendFrame(); });
    AddBenchmark("ten_items_of_480x120", "copy", [=] { spCopy->Copy(); });
    lines.push_back({"ten_items_of_480x120", "filter", "copy", std::nullopt});
    return lines;
}

} // namespace

} // namespace vellumcaster::bench

int main(int argc, char** argv) {
    using namespace vellumcaster::bench;
    std::puts("copy  a frame of 1920x1080 in I420, copied and nothing else");
    return RunAndPrintTable(argc, argv, AddGraphs());
}
