#include "host/clip_run.h"

#include "engine/stream_painter.h"
#include "engine/vellumcaster_filter.h"
#include "host/frame_carrier.h"
#include "host/graph/frame_sink.h"
#include "host/graph/frame_source.h"
#include "host/graph/graph_builder.h"
#include "host/graph/graph_report.h"
#include "host/graph/slow_allocator.h"
#include "host/graph/video_type.h"
#include "host/interruption.h"
#include "host/output_file.h"
#include "host/progress_line.h"
#include "host/refusal.h"
#include "host/y4m_reader.h"
#include "image/format_names.h"
#include "image/rounding.h"
#include "platform/com/utf8.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>

namespace vellumcaster {

namespace {

std::string NamesOf(std::span<const std::uint32_t> codes) {
    std::string names;
    for (const std::uint32_t code : codes)
        names += (names.empty() ? "" : ", ") + std::string(CPictureFormats::NameFromFormat(code));
    return names;
}

/// The format of a name that was asked for.
std::uint32_t PixelsByName(const std::string& option, const std::string& name) {
    const std::span<const std::uint32_t> carried = CFrameCarrier::CarriedFormats();
    const std::uint32_t code = CPictureFormats::FormatFromName(FromUtf8(name).c_str());
    if (std::find(carried.begin(), carried.end(), code) != carried.end()) return code;
    throw Refusal(option + name + ": there is no such pixel format; a clip can be mixed in " + NamesOf(carried));
}

/// The part of a stream in one format: from a frame on, until the next one begins.
struct Stretch {
    std::int64_t nFirst = 0;
    std::unique_ptr<CFrameCarrier> spCarrier;
};

std::vector<Stretch> MakeStretches(const StreamShape& shape, const Y4mHeader& header) {
    std::vector<Stretch> stretches;
    const auto add = [&](std::int64_t nFirst, std::uint32_t dwFormat) {
        stretches.push_back({nFirst, std::make_unique<CFrameCarrier>(header, dwFormat, shape.bBottomUp)});
    };
    add(0, shape.pixels ? PixelsByName("--pixels ", *shape.pixels) : CFrameCarrier::OwnFormat(header.layout));
    for (const PixelSwitch& change : shape.switches)
        add(change.nFrame, PixelsByName("--switch " + std::to_string(change.nFrame) + ":", change.pixels));
    const auto byFirst = [](const Stretch& a, const Stretch& b) { return a.nFirst < b.nFirst; };
    std::stable_sort(stretches.begin(), stretches.end(), byFirst);
    return stretches;
}

/// When a frame is shown, in units of 100 ns from the start of the clip.
REFERENCE_TIME TimeOfFrame(std::int64_t nFrame, const FrameRate& rate) {
    constexpr double unitsPerSecond = 1e7;
    return RoundToInt64(unitsPerSecond * static_cast<double>(nFrame) * static_cast<double>(rate.denominator) /
                        static_cast<double>(rate.numerator));
}

/// One run: a clip, its way through a graph of source, filter and sink, and where it goes.
class CClipPass {
public:
    CClipPass(const ClipRun& run, CY4mReader& reader, COutputFile& output)
        : m_Run(run), m_Reader(reader), m_Output(output), m_Stretches(MakeStretches(run.stream, reader.Header())) {
        Connect();
        for (const auto& item : run.items)
            std::visit([this](const auto& kind) { Add(kind); }, item);
    }
    CClipPass(const CClipPass&) = delete;
    CClipPass& operator=(const CClipPass&) = delete;

    void Run() {
        m_Output.Write(m_Reader.HeaderLine() + "\n");
        Check(m_Graph->Run(), "the graph does not run");
        {
            const CSignalsForOthers others;
            m_spSink->WaitForEnd();
        }
        static_cast<void>(m_Graph->Stop());
        if (m_Failure) std::rethrow_exception(m_Failure);
        if (m_Run.bShowGraph) static_cast<void>(std::fputs(DescribeGraph(*m_spFilter).c_str(), stderr));
        Check(m_spSource->Outcome(), "frame " + std::to_string(m_nFrame) + " did not pass the filter");
    }

    [[nodiscard]] std::int64_t FrameCount() const { return m_nFrame; }

private:
    static void Check(HRESULT hr, const std::string& sentence) {
        if (FAILED(hr)) throw Refusal(sentence);
    }

    [[nodiscard]] CFrameCarrier& Carrier() { return *m_Stretches[m_nStretch].spCarrier; }

    [[nodiscard]] OfferedStream Stream() {
        const auto& rate = m_Reader.Header().rate;
        return {Carrier().StreamFormat(), rate ? TimeOfFrame(1, *rate) : 0};
    }

    void Connect() {
        const FrameMemory memory = m_Run.stream.memory;
        const bool bReadOnly = memory == FrameMemory::ReadOnly || memory == FrameMemory::Slow;
        std::size_t cbFrame = 0; // of the largest, whichever format the stream comes to
        for (const Stretch& stretch : m_Stretches)
            cbFrame = std::max(cbFrame, stretch.spCarrier->StreamFrame().size());

        SourceManners source;
        source.streams = {Stream()};
        source.memory = bReadOnly ? SourceManners::Memory::OwnReadOnly : SourceManners::Memory::Offered;
        source.needs.cbBuffer = static_cast<LONG>(cbFrame);
        source.fill = [this](IMediaSample& sample, const PictureFormat&) {
            return Guard([&] { return FillFrame(sample); });
        };
        SinkManners sink;
        sink.bInsistsOnItsMemory = memory == FrameMemory::Copied;
        sink.needs.cbBuffer = static_cast<LONG>(cbFrame);
        if (memory == FrameMemory::Slow) sink.makeAllocator = MakeSlowAllocator;
        sink.take = [this](IMediaSample& sample, const PictureFormat&) {
            return Guard([&] { return TakeMixedFrame(sample); });
        };
        m_spSource = MakeCounted<CFrameSource>(std::move(source));
        m_spSink = MakeCounted<CFrameSink>(std::move(sink));
        Check(CCoVellumcaster::Make(m_spFilter), "there is no memory for the filter");
        Check(BuildGraph(*m_Graph, *m_spSource, *m_spFilter, *m_spSink), "the clip's frames do not suit the filter");
    }

    void Add(const Picture& picture) { static_cast<void>(AddPicture(m_spFilter->Engine(), picture)); }

    void Add(const Caption& caption) { AddCaption(m_spFilter->Engine(), caption); }

    void Add(const SavedStack& stack) { AddSavedStack(m_spFilter->Engine(), stack); }

    void Add(const Panel& panel) {
        if (m_Stretches.size() > 1) throw Refusal("--switch: a panel is made for one pixel format");
        OverlayItem item = MakeFlatItem(panel, Carrier().StreamFormat().dwFormat);
        Check(m_spFilter->Engine().AddItem(std::move(item), nullptr), "there is no memory for another panel");
    }

    /// Runs a step of the stream. What goes wrong is kept, because no exception passes through a pin.
    template <class Step>
    HRESULT Guard(const Step& step) {
        try {
            return step();
        } catch (...) {
            m_Failure = std::current_exception();
            return E_FAIL;
        }
    }

    HRESULT FillFrame(IMediaSample& sample) {
        const std::size_t nFormer = m_nStretch;
        while (m_nStretch + 1 < m_Stretches.size() && m_Stretches[m_nStretch + 1].nFirst == m_nFrame)
            ++m_nStretch;
        if (!m_Reader.ReadFrame(m_FrameLine, Carrier().ClipFrame())) return S_FALSE;
        if (m_nStretch != nFormer) TellType(sample);
        Carrier().ClipToStream();
        const std::span<std::uint8_t> frame = Carrier().StreamFrame();
        std::memcpy(DataOf(sample, frame.size()), frame.data(), frame.size());
        sample.SetActualDataLength(static_cast<LONG>(frame.size()));
        Stamp(sample);
        return S_OK;
    }

    HRESULT TakeMixedFrame(IMediaSample& sample) {
        const std::span<std::uint8_t> frame = Carrier().StreamFrame();
        std::memcpy(frame.data(), DataOf(sample, frame.size()), frame.size());
        Carrier().StreamToClip();
        m_FrameLine += '\n';
        m_Output.Write(m_FrameLine);
        m_Output.Write(Carrier().ClipFrame());
        for (const Snapshot& snapshot : m_Run.snapshots)
            if (snapshot.nFrame == m_nFrame) WriteSnapshot(snapshot.path, m_Reader.Header(), Carrier().ClipFrame());
        m_Progress.Show(++m_nFrame);
        return S_OK;
    }

    /// The stream's new type travels with the first sample in it.
    void TellType(IMediaSample& sample) {
        const OfferedStream stream = Stream();
        CMediaTypeHolder type;
        HRESULT hr = MakeVideoType(stream.pf, stream.avgTimePerFrame, *type.Put());
        if (SUCCEEDED(hr)) hr = sample.SetMediaType(type.Get());
        Check(hr, "there is no memory for a media type");
    }

    static BYTE* DataOf(IMediaSample& sample, std::size_t cb) {
        BYTE* pData = nullptr;
        Check(sample.GetPointer(&pData), "a sample has no memory");
        if (static_cast<std::size_t>(sample.GetSize()) < cb) throw Refusal("a sample is too small for a frame");
        return pData;
    }

    void Stamp(IMediaSample& sample) const {
        if (!m_Reader.Header().rate) return;
        REFERENCE_TIME start = TimeOfFrame(m_nFrame, *m_Reader.Header().rate);
        REFERENCE_TIME stop = TimeOfFrame(m_nFrame + 1, *m_Reader.Header().rate);
        sample.SetTime(&start, &stop);
    }

    const ClipRun& m_Run;
    CY4mReader& m_Reader;
    COutputFile& m_Output;
    const std::vector<Stretch> m_Stretches;
    std::size_t m_nStretch = 0;
    CProgressLine m_Progress;
    std::int64_t m_nFrame = 0;
    std::string m_FrameLine;
    std::exception_ptr m_Failure;
    CComPtr<CFrameSource> m_spSource;
    CComPtr<CFrameSink> m_spSink;
    CComPtr<CCoVellumcaster> m_spFilter;
    COwnGraph m_Graph; // the last member: no thread of the source outlives what is above
};

} // namespace

void SaveRunStack(const ClipRun& run, const std::string& path) {
    struct Adder {
        COverlayEngine& engine;

        void operator()(const Picture& picture) const { static_cast<void>(AddPicture(engine, picture)); }
        void operator()(const Caption& caption) const { AddCaption(engine, caption); }
        void operator()(const SavedStack& stack) const { AddSavedStack(engine, stack); }
        void operator()(const Panel&) const {
            throw Refusal("--save-stack: a panel is neither a picture nor a text, and cannot be kept");
        }
    };
    CStreamPainter painter;
    COverlayEngine engine(painter);
    for (const auto& item : run.items)
        std::visit(Adder{engine}, item);
    SaveStack(engine, path);
}

void RunClip(const ClipRun& run) {
    CByteSource source(run.input);
    CY4mReader reader(source);
    COutputFile output(run.output);
    if (output.IsSameFileAs(source.Descriptor())) throw Refusal("the output would overwrite the input " + run.input);

    CClipPass pass(run, reader, output);
    pass.Run();
    output.Commit();
    for (const Snapshot& snapshot : run.snapshots)
        if (snapshot.nFrame >= pass.FrameCount())
            throw Refusal("there is no frame " + std::to_string(snapshot.nFrame) + " for " + snapshot.path +
                          ": the clip has " + std::to_string(pass.FrameCount()));
}

} // namespace vellumcaster
