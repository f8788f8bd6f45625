#include "host/graph/graph_builder.h"
#include "host/graph/video_type.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/video_info.h"

#include "graph/media_type_match.h"
#include "graph/memory_allocator.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <fuzzer/FuzzedDataProvider.h>

using namespace vellumcaster;

namespace {

constexpr PictureFormat first{format_code::I420, 64, 48, 64};
constexpr LONG nLargest = 200; ///< beyond the buffers of the stream, within memory
constexpr int nMostItems = 6;

constexpr std::array formats{format_code::I420,  format_code::YV12,   format_code::YUY2,
                             format_code::UYVY,  format_code::YVYU,   format_code::RGB32,
                             format_code::RGB24, format_code::ARGB32, format_code::RGB565};

void Demand(bool bTrue) {
    if (!bTrue) std::abort();
}

/// A filter that stands still between its neighbours; samples are handed to it by hand.
class CHandDrivenStream {
public:
    CHandDrivenStream(SourceManners::Memory memory, bool bSinkInsists) {
        SourceManners source;
        source.streams = {{first, 400000}};
        source.memory = memory;
        SinkManners sink;
        sink.bInsistsOnItsMemory = bSinkInsists;
        m_spSource = MakeCounted<CFrameSource>(source);
        m_spSink = MakeCounted<CFrameSink>(sink);
        Demand(CCoVellumcaster::Make(m_spFilter) == S_OK);
        Demand(BuildGraph(*m_Graph, *m_spSource, *m_spFilter, *m_spSink) == S_OK);
        m_spAllocator = m_spFilter->m_spIn->AllocIn();
        Start();
    }
    ~CHandDrivenStream() { Stop(); }

    [[nodiscard]] CCoVellumcaster& Filter() { return *m_spFilter; }

    void Start() {
        Demand(m_spSink->Pause() == S_OK && m_spFilter->Pause() == S_OK && m_spAllocator->Commit() == S_OK);
    }
    void Stop() {
        m_spAllocator->Decommit();
        Demand(m_spFilter->Stop() == S_OK && m_spSink->Stop() == S_OK);
    }

    HRESULT Send(AM_MEDIA_TYPE* pmt, LONG cbActual) {
        CComPtr<IMediaSample> spSample;
        Demand(m_spAllocator->GetBuffer(spSample.Put(), nullptr, nullptr, 0) == S_OK);
        if (pmt) spSample->SetMediaType(pmt);
        spSample->SetActualDataLength(cbActual);
        return m_spFilter->m_spIn->Receive(spSample.Get());
    }

    /// Has the output's next sample carry a type.
    void GiveFromDownstream(const AM_MEDIA_TYPE& mt) {
        CComPtr<IMemAllocatorEx> spOutput;
        const CComPtr<IMemAllocator> sp = m_spFilter->m_spOut->m_Allocator.Get();
        Demand(sp->QueryInterface(IMemAllocatorEx::IID, reinterpret_cast<void**>(spOutput.Put())) == S_OK);
        spOutput->SetMediaType(&mt);
    }

private:
    CComPtr<CFrameSource> m_spSource;
    CComPtr<CFrameSink> m_spSink;
    CComPtr<CCoVellumcaster> m_spFilter;
    CComPtr<IMemAllocator> m_spAllocator;
    COwnGraph m_Graph;
};

/// A type that describes a picture, of any size and geometry.
HRESULT MakePictureType(FuzzedDataProvider& data, AM_MEDIA_TYPE& mt) {
    const PictureFormat pf{data.PickValueInArray(formats), data.ConsumeIntegralInRange<LONG>(0, nLargest),
                           data.ConsumeIntegralInRange<LONG>(-nLargest, nLargest),
                           data.ConsumeIntegralInRange<DWORD>(0, nLargest)};
    return MakeVideoType(pf, data.ConsumeIntegral<REFERENCE_TIME>(), mt);
}

/// A type whose block is whatever bytes there are.
HRESULT MakeWildType(FuzzedDataProvider& data, AM_MEDIA_TYPE& mt) {
    const std::uint32_t dwFormat = data.PickValueInArray(formats);
    CMediaTypeHolder sound;
    if (FAILED(MakeVideoType({dwFormat, 16, 16, 16}, 0, *sound.Put()))) return E_FAIL;
    std::vector<BYTE> block = data.ConsumeBytes<BYTE>(data.ConsumeIntegralInRange<std::size_t>(0, 130));
    if (data.ConsumeBool() && block.size() >= sizeof(VIDEOINFOHEADER)) // sides that memory can hold
        for (const std::size_t offset : {52u, 56u})
            block[offset + 1] = block[offset + 2] = block[offset + 3] = 0;
    const GUID kind = data.ConsumeBool() ? FORMAT_VideoInfo : data.ConsumeBool() ? FORMAT_VideoInfo2 : GUID{};
    return MT_Set(mt, data.ConsumeBool() ? MEDIATYPE_Video : GUID{}, sound.Get()->subtype, kind,
                  static_cast<ULONG>(block.size()), block.data());
}

void ChangeType(CHandDrivenStream& stream, FuzzedDataProvider& data) {
    CMediaTypeHolder type;
    if (FAILED(data.ConsumeBool() ? MakePictureType(data, *type.Put()) : MakeWildType(data, *type.Put()))) return;
    LONG width = 0;
    LONG height = 0;
    LONG stride = 0;
    const bool bVast = MT_GetGeometry(type.Get(), &width, &height, &stride) >= 0 &&
                       std::int64_t{stride} * std::abs(std::int64_t{height}) > 1 << 20;
    if (bVast) return;
    if (data.ConsumeIntegralInRange(0, 3) == 0)
        stream.GiveFromDownstream(*type.Get());
    else
        static_cast<void>(stream.Send(type.Get(), data.ConsumeIntegral<LONG>()));
}

void AddPicture(CCoVellumcaster& filter, FuzzedDataProvider& data) {
    LONG nCount = 0;
    if (filter.GetItemCount2(&nCount) != S_OK || nCount >= nMostItems) return;
    const LONG side = data.ConsumeIntegralInRange<LONG>(1, 40);
    ImageInfoTag info{side, -side, 32, 0, static_cast<DWORD>(side * side * 4)};
    const std::vector<BYTE> pixels(info.biSizeImage, data.ConsumeIntegral<BYTE>());
    LONG cookie = 0;
    if (filter.AddImageFromMemory2(&info, info.biSizeImage, pixels.data(), nullptr, -1, -1, nullptr, &cookie) != S_OK)
        return;
    Demand(filter.ShowItem2(cookie, 1) == S_OK);
    Demand(filter.SetItemPos2(cookie, data.ConsumeIntegralInRange<LONG>(-60, 220),
                              data.ConsumeIntegralInRange<LONG>(-60, 220)) == S_OK);
}

MemoryType SaysVideo(BYTE*, LONG) { return MemoryType::Video; }

} // namespace

/// A stream whose type changes as the bytes say, with items on it: nothing is touched that no buffer has.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    FuzzedDataProvider data(pData, cb);
    using Memory = SourceManners::Memory;
    CHandDrivenStream stream(data.PickValueInArray({Memory::Offered, Memory::Own, Memory::OwnReadOnly}),
                             data.ConsumeBool());
    if (data.ConsumeBool()) stream.Filter().m_pfnDetectMemoryType = SaysVideo;
    while (data.remaining_bytes() > 0) {
        switch (data.ConsumeIntegralInRange(0, 6)) {
        case 0: AddPicture(stream.Filter(), data); break;
        case 1: stream.Filter().RemoveAllItems(); break;
        case 2:
            stream.Filter().m_spIn->BeginFlush();
            stream.Filter().m_spIn->EndFlush();
            break;
        case 3:
            stream.Stop();
            stream.Start();
            break;
        case 4: static_cast<void>(stream.Send(nullptr, data.ConsumeIntegral<LONG>())); break;
        default: ChangeType(stream, data); break;
        }
    }
    return 0;
}
