#include "host/clip_run.h"

#include "engine/stream_painter.h"
#include "engine/vellumcaster_filter.h"
#include "host/frame_carrier.h"
#include "host/graph/frame_sink.h"
#include "host/graph/frame_source.h"
#include "host/graph/graph_builder.h"
#include "host/graph/graph_report.h"
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
#include <utility>

namespace vellumcaster {

namespace {

std::string NamesOf(std::span<const std::uint32_t> codes) {
    std::string names;
    for (const std::uint32_t code : codes)
        names += (names.empty() ? "" : ", ") + std::string(CPictureFormats::NameFromFormat(code));
    return names;
}

/// The format to mix in, by the name that was asked for.
std::uint32_t ChoosePixels(const std::optional<std::string>& wanted, ChromaLayout layout) {
    if (!wanted) return CFrameCarrier::OwnFormat(layout);
    const std::span<const std::uint32_t> carried = CFrameCarrier::CarriedFormats();
    const std::uint32_t code = CPictureFormats::FormatFromName(FromUtf8(*wanted).c_str());
    if (std::find(carried.begin(), carried.end(), code) != carried.end()) return code;
    throw Refusal("--pixels " + *wanted + ": there is no such pixel format; a clip can be mixed in " +
                  NamesOf(carried));
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
        : m_Run(run),
          m_Reader(reader),
          m_Output(output),
          m_Carrier(reader.Header(), ChoosePixels(run.pixels, reader.Header().layout)) {
        Connect();
        for (const auto& item : run.items)
            std::visit([this](const auto& kind) { Add(kind); }, item);
    }
    CClipPass(const CClipPass&) = delete;
    CClipPass& operator=(const CClipPass&) = delete;
    ~CClipPass() { m_spGraph->Clear(); }

    void Run() {
        m_Output.Write(m_Reader.HeaderLine() + "\n");
        Check(m_spGraph->Run(), "the graph does not run");
        {
            const CSignalsForOthers others;
            m_spSink->WaitForEnd();
        }
        static_cast<void>(m_spGraph->Stop());
        if (m_Failure) std::rethrow_exception(m_Failure);
        if (m_Run.bShowGraph) static_cast<void>(std::fputs(DescribeGraph(*m_spFilter).c_str(), stderr));
        Check(m_spSource->Outcome(), "frame " + std::to_string(m_nFrame) + " did not pass the filter");
    }

    [[nodiscard]] std::int64_t FrameCount() const { return m_nFrame; }

private:
    static void Check(HRESULT hr, const std::string& sentence) {
        if (FAILED(hr)) throw Refusal(sentence);
    }

    void Connect() {
        const REFERENCE_TIME avgTimePerFrame = m_Reader.Header().rate ? TimeOfFrame(1, *m_Reader.Header().rate) : 0;
        SourceManners source;
        source.streams = {{m_Carrier.StreamFormat(), avgTimePerFrame}};
        source.fill = [this](IMediaSample& sample, const PictureFormat&) {
            return Guard([&] { return FillFrame(sample); });
        };
        SinkManners sink;
        sink.take = [this](IMediaSample& sample, const PictureFormat&) {
            return Guard([&] { return TakeMixedFrame(sample); });
        };
        m_spSource = MakeCounted<CFrameSource>(std::move(source));
        m_spSink = MakeCounted<CFrameSink>(std::move(sink));
        Check(CCoVellumcaster::Make(m_spFilter), "there is no memory for the filter");
        Check(BuildGraph(*m_spGraph, *m_spSource, *m_spFilter, *m_spSink), "the clip's frames do not suit the filter");
    }

    void Add(const Picture& picture) { static_cast<void>(AddPicture(m_spFilter->Engine(), picture)); }

    void Add(const Caption& caption) { AddCaption(m_spFilter->Engine(), caption); }

    void Add(const SavedStack& stack) { AddSavedStack(m_spFilter->Engine(), stack); }

    void Add(const Panel& panel) {
        OverlayItem item = MakeFlatItem(panel, m_Carrier.StreamFormat().dwFormat);
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
        if (!m_Reader.ReadFrame(m_FrameLine, m_Carrier.ClipFrame())) return S_FALSE;
        m_Carrier.ClipToStream();
        const std::span<std::uint8_t> frame = m_Carrier.StreamFrame();
        std::memcpy(DataOf(sample, frame.size()), frame.data(), frame.size());
        sample.SetActualDataLength(static_cast<LONG>(frame.size()));
        Stamp(sample);
        return S_OK;
    }

    HRESULT TakeMixedFrame(IMediaSample& sample) {
        const std::span<std::uint8_t> frame = m_Carrier.StreamFrame();
        std::memcpy(frame.data(), DataOf(sample, frame.size()), frame.size());
        m_Carrier.StreamToClip();
        m_FrameLine += '\n';
        m_Output.Write(m_FrameLine);
        m_Output.Write(m_Carrier.ClipFrame());
        for (const Snapshot& snapshot : m_Run.snapshots)
            if (snapshot.nFrame == m_nFrame) WriteSnapshot(snapshot.path, m_Reader.Header(), m_Carrier.ClipFrame());
        m_Progress.Show(++m_nFrame);
        return S_OK;
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
    CFrameCarrier m_Carrier;
    CProgressLine m_Progress;
    std::int64_t m_nFrame = 0;
    std::string m_FrameLine;
    std::exception_ptr m_Failure;
    CComPtr<CGraph> m_spGraph = MakeCounted<CGraph>();
    CComPtr<CFrameSource> m_spSource;
    CComPtr<CFrameSink> m_spSink;
    CComPtr<CCoVellumcaster> m_spFilter;
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
