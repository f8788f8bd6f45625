#include "host/clip_run.h"

#include "engine/stream_painter.h"
#include "engine/vellumcaster_filter.h"
#include "graph/plain/plain_sample.h"
#include "host/frame_carrier.h"
#include "host/output_file.h"
#include "host/progress_line.h"
#include "host/refusal.h"
#include "host/y4m_reader.h"
#include "image/format_names.h"
#include "image/rounding.h"
#include "platform/com/utf8.h"

#include <algorithm>
#include <exception>
#include <functional>
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

/// The pin at the end of the filter. What goes wrong behind it is kept, because no exception passes through a pin.
class CFrameSink final : public CUnknownImpl<IMemInputPin> {
public:
    explicit CFrameSink(std::function<void()> onFrame) : m_onFrame(std::move(onFrame)) {}

    HRESULT GetAllocator(IMemAllocator**) override { return E_NOTIMPL; }
    HRESULT NotifyAllocator(IMemAllocator*, BOOL) override { return E_NOTIMPL; }
    HRESULT GetAllocatorRequirements(ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    HRESULT Receive(IMediaSample*) override {
        try {
            m_onFrame();
            return S_OK;
        } catch (...) {
            m_Failure = std::current_exception();
            return E_FAIL;
        }
    }
    HRESULT ReceiveMultiple(IMediaSample**, LONG, LONG*) override { return E_NOTIMPL; }
    HRESULT ReceiveCanBlock() override { return S_FALSE; }

    void RethrowFailure() const {
        if (m_Failure) std::rethrow_exception(m_Failure);
    }

private:
    std::function<void()> m_onFrame;
    std::exception_ptr m_Failure;
};

/// When a frame is shown, in units of 100 ns from the start of the clip.
REFERENCE_TIME TimeOfFrame(std::int64_t nFrame, const FrameRate& rate) {
    constexpr double unitsPerSecond = 1e7;
    return RoundToInt64(unitsPerSecond * static_cast<double>(nFrame) * static_cast<double>(rate.denominator) /
                        static_cast<double>(rate.numerator));
}

/// One run: a clip, its way through the filter, and where it goes.
class CClipPass {
public:
    CClipPass(const ClipRun& run, CY4mReader& reader, COutputFile& output)
        : m_Run(run),
          m_Reader(reader),
          m_Output(output),
          m_Carrier(reader.Header(), ChoosePixels(run.pixels, reader.Header().layout)) {
        m_spIn->m_pfConnected = m_spOut->m_pfConnected = m_Carrier.StreamFormat();
        m_spOut->m_spMemInput = m_spSink.Get();
        m_Painter.SetInputFormat(m_Carrier.StreamFormat().dwFormat);
        m_Painter.SetOutputFormat(m_Carrier.StreamFormat().dwFormat);
        if (const auto& rate = reader.Header().rate) m_Painter.SetAvgTimePerFrame(TimeOfFrame(1, *rate));
        for (const auto& item : run.items)
            std::visit([this](const auto& kind) { Add(kind); }, item);
        m_Filter.Engine().ResetItemForRun();
    }

    void Run() {
        m_Output.Write(m_Reader.HeaderLine() + "\n");
        CProgressLine progress;
        const std::span<std::uint8_t> frame = m_Carrier.StreamFrame();
        const auto spSample = MakeCounted<CPlainSample>(frame.data(), static_cast<LONG>(frame.size()));
        while (m_Reader.ReadFrame(m_FrameLine, m_Carrier.ClipFrame())) {
            m_Carrier.ClipToStream();
            Stamp(*spSample);
            const HRESULT hr = m_Filter.Filter_SendSample(0, spSample.Get());
            m_spSink->RethrowFailure();
            if (FAILED(hr)) throw Refusal("frame " + std::to_string(m_nFrame) + " did not pass the filter");
            progress.Show(++m_nFrame);
        }
    }

    [[nodiscard]] std::int64_t FrameCount() const { return m_nFrame; }

private:
    void Add(const Picture& picture) { static_cast<void>(AddPicture(m_Filter.Engine(), picture)); }

    void Add(const Caption& caption) { AddCaption(m_Filter.Engine(), caption); }

    void Add(const SavedStack& stack) { AddSavedStack(m_Filter.Engine(), stack); }

    void Add(const Panel& panel) {
        OverlayItem item = MakeFlatItem(panel, m_Carrier.StreamFormat().dwFormat);
        if (FAILED(m_Filter.Engine().AddItem(std::move(item), nullptr)))
            throw Refusal("there is no memory for another panel");
    }

    void Stamp(IMediaSample& sample) const {
        if (!m_Reader.Header().rate) return;
        REFERENCE_TIME start = TimeOfFrame(m_nFrame, *m_Reader.Header().rate);
        REFERENCE_TIME stop = TimeOfFrame(m_nFrame + 1, *m_Reader.Header().rate);
        sample.SetTime(&start, &stop);
    }

    void TakeMixedFrame() {
        m_Carrier.StreamToClip();
        m_FrameLine += '\n';
        m_Output.Write(m_FrameLine);
        m_Output.Write(m_Carrier.ClipFrame());
        for (const Snapshot& snapshot : m_Run.snapshots)
            if (snapshot.nFrame == m_nFrame) WriteSnapshot(snapshot.path, m_Reader.Header(), m_Carrier.ClipFrame());
    }

    const ClipRun& m_Run;
    CY4mReader& m_Reader;
    COutputFile& m_Output;
    CFrameCarrier m_Carrier;
    std::int64_t m_nFrame = 0;
    std::string m_FrameLine;
    CStreamPainter m_Painter;
    CComPtr<CPlainInputPin> m_spIn = MakeCounted<CPlainInputPin>();
    CComPtr<CPlainOutputPin> m_spOut = MakeCounted<CPlainOutputPin>();
    CComPtr<CFrameSink> m_spSink = MakeCounted<CFrameSink>([this] { TakeMixedFrame(); });
    CCoVellumcaster m_Filter{m_Painter, m_spIn, m_spOut};
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
