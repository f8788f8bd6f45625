#include "engine/vellumcaster_filter.h"

#include "graph/format_text.h"
#include "graph/sample_copier.h"
#include "graph/sample_snapshot.h"
#include "graph/seh_calls.h"
#include "image/copy_frame.h"
#include "image/format_names.h"
#include "image/format_table.h"
#include "image/guarded_memory.h"
#include "image/plane_layout.h"
#include "image/rounding.h"
#include "platform/kernel/counters.h"
#include "platform/kernel/trace.h"

#include <algorithm>
#include <memory>

namespace vellumcaster {

/// The values of one call.
struct CCoVellumcaster::FramePass {
    FrameBuffer in;
    FrameBuffer out;
    FrameBuffer mix; ///< `in`, `out` or the extra buffer
    std::shared_ptr<CVirtualBlob> spExtra;
    std::size_t cbFrame = 0;
    DWORD tStart = bTracing ? GetTickCount() : 0;
    CComPtr<IMediaSample> spSampleOut;
};

namespace {

/// Data bytes of a frame, with rows as long as the stride says.
LONG FrameDataLength(const PictureFormat& pf) {
    const std::int64_t nPixels = RowCount(pf) * EffectiveStride(pf);
    return SaturateToInt32(nPixels * CPictureFormats::BitsPerPixel(pf.dwFormat) / 8);
}

std::size_t ToSize(LONG cb) { return static_cast<std::size_t>(std::max<LONG>(cb, 0)); }

FrameBuffer BufferOf(IMediaSample& sample, BYTE* pData, const PictureFormat& desc) {
    return {pData, ToSize(SEH_IMediaSample::GetSize(&sample)), desc};
}

bool HoldsItsFrame(const FrameBuffer& frame) { return CPictureFormats::GetBufferSize(frame.desc) <= frame.cb; }

/// What a sample says of its times, as far as it does.
FrameTimes TimesOf(IMediaSample& sample) {
    CSampleT snapshot;
    static_cast<void>(snapshot.Load(&sample, sampleStart | sampleStop | sampleMediaTimes));
    FrameTimes times;
    if (snapshot.Holds(sampleStart)) times.start = snapshot.m_tS;
    if (snapshot.Holds(sampleStop)) times.stop = snapshot.m_tE;
    if (snapshot.Holds(sampleMediaTimes)) {
        times.mediaStart = snapshot.m_llMS;
        times.mediaEnd = snapshot.m_llME;
    }
    return times;
}

/// Copies a frame between two buffers that are both as large as their descriptors say.
void CopyWholeFrame(const FrameBuffer& src, const FrameBuffer& dst) {
    if (HoldsItsFrame(src) && HoldsItsFrame(dst)) CopyFrame(&src.desc, &dst.desc, src.pData, dst.pData);
}

} // namespace

HRESULT CCoVellumcaster::Filter_SendSample(int /*nPinIndex*/, IMediaSample* pSample) {
    if (!pSample) return E_INVALIDARG;
    FramePass pass;
    if (const Dropped dropped = TakeInput(pass, *pSample)) return *dropped;
    if (!m_bSeparated)
        PassInputThrough(pass, *pSample);
    else if (const Dropped dropped = TakeSeparateOutput(pass, *pSample))
        return *dropped;
    MixAndCopy(pass, *pSample);
    return m_spOut->SendSample(pass.spSampleOut.Get());
}

CCoVellumcaster::Dropped CCoVellumcaster::TakeInput(FramePass& pass, IMediaSample& sample) const {
    const PictureFormat desc = m_spIn->Picture();
    LONG cbActual = SEH_IMediaSample::GetActualDataLength(&sample);
    if (cbActual == 0) {
        cbActual = FrameDataLength(desc);
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING !!! CCoVellumcaster::Filter_SendSample - ZERO ACTUAL LENGTH, Set:%s\n",
                          FormatGrouped(cbActual));
        static_cast<void>(SEH_IMediaSample::SetActualDataLength(&sample, cbActual));
    }

    BYTE* pIn = nullptr;
    const HRESULT hr = SEH_IMediaSample::GetPointer(&sample, &pIn);
    if (FAILED(hr) || !pIn) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CCoVellumcaster::Filter_SendSample - pSample->GetPointer() FAILED hr = 0x%08X\n",
                          hr);
        return hr;
    }
    pass.in = BufferOf(sample, pIn, desc);
    pass.out = pass.mix = pass.in;
    pass.cbFrame = ToSize(cbActual);
    return {};
}

CCoVellumcaster::Dropped CCoVellumcaster::TakeSeparateOutput(FramePass& pass, IMediaSample& sample) {
    IMediaSample* pNew = nullptr;
    // A wait for a buffer may outlast the connection.
    const CComPtr<IMemAllocator> spAllocator = m_spOut->m_Allocator.Get();
    HRESULT hr = SEH_IMemAllocator::GetBuffer(spAllocator.Get(), &pNew, nullptr, nullptr, 0);
    if (SUCCEEDED(hr)) pass.spSampleOut.Attach(pNew);
    if (SUCCEEDED(hr) && !pass.spSampleOut) hr = E_UNEXPECTED;
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CCoVellumcaster::Filter_SendSample - SEH_IMemAllocator::GetBuffer() "
                          "FAILED hr = 0x%08X\n",
                          hr);
        return hr;
    }
    IMediaSample& sampleOut = *pass.spSampleOut;
    static_cast<void>(ReadOutputType(&sampleOut));
    const LONG cbActual = SEH_IMediaSample::GetActualDataLength(&sampleOut);
    pass.cbFrame = ToSize(cbActual != 0 ? cbActual : SEH_IMediaSample::GetSize(&sampleOut));

    static_cast<void>(CSampleCopier::Copy(&sampleOut, &sample, sampleAllButPayload));
    // A type that came with the incoming sample is told by this one now, and the pin keeps to what is told downstream.
    static_cast<void>(ReadOutputType(&sampleOut));

    BYTE* pOut = nullptr;
    hr = SEH_IMediaSample::GetPointer(&sampleOut, &pOut);
    if (FAILED(hr) || !pOut) {
        VELLUM_TRACE_LINE(
            TraceCategory::General, TraceLevel::Error,
            "###Err### CCoVellumcaster::Filter_SendSample - spSampleOut->GetPointer() FAILED hr = 0x%08X\n", hr);
        return hr;
    }
    pass.out = BufferOf(sampleOut, pOut, m_spOut->Picture());
    if (m_spIn->IsReadOnly()) LeaveReadOnlyInput(pass);
    static_cast<void>(SEH_IMediaSample::SetActualDataLength(&sampleOut, FrameDataLength(pass.out.desc)));
    return {};
}

void CCoVellumcaster::LeaveReadOnlyInput(FramePass& pass) {
    if (m_nMemoryType == MemoryType::Unknown)
        m_nMemoryType = m_pfnDetectMemoryType(
            pass.out.pData, SaturateToInt32(static_cast<std::int64_t>(std::min(pass.cbFrame, pass.out.cb))));

    pass.spExtra = m_spOut->m_Extra.Get();
    const bool bAwayFromOutput = m_nMemoryType != MemoryType::System && !pass.spExtra->IsEmpty();
    pass.mix = bAwayFromOutput ? FrameBuffer{pass.spExtra->Data(), pass.spExtra->Size(), pass.out.desc} : pass.out;
    CopyWholeFrame(pass.in, pass.mix);
}

void CCoVellumcaster::PassInputThrough(FramePass& pass, IMediaSample& sample) {
    pass.spSampleOut = &sample;
    ReadOutputType(&sample);
    m_nMemoryType = MemoryType::System;
}

HRESULT CCoVellumcaster::ReadOutputType(IMediaSample* pSample) {
    CAutoLock lock(m_csFilter);
    return m_spOut->SetMediaTypeFromSample(pSample);
}

void CCoVellumcaster::MixAndCopy(const FramePass& pass, IMediaSample& sample) {
    const PictureFormat& desc = pass.mix.desc;
    const SIZE sizeStream{pass.in.desc.nWidth, SaturateToInt32(RowCount(pass.in.desc))};
    const FrameTimes times = TimesOf(sample);
    m_Painter.SetAvgTimePerFrame(m_spIn->AvgTimePerFrame());

    CAutoLock lock(m_Engine.ItemLock());
    // A type may have come with a sample of either side: no plane is read in another format than it was made in.
    if (m_Painter.InputFormat() != desc.dwFormat) FollowStream(desc.dwFormat);
    // On a frame that its buffer does not hold nothing is drawn, but its time goes by.
    if (FAILED(m_Engine.MixFrame(pass.mix, sizeStream, times))) m_Engine.SkipFrame(sizeStream, times);
    const bool bMixedInInput = pass.mix.pData == pass.in.pData;
    if (pass.out.pData != pass.mix.pData) {
        if (bMixedInInput)
            CopyWholeFrame(pass.in, pass.out);
        else
            static_cast<void>(
                SEH_CopyMemory(pass.out.pData, pass.mix.pData, std::min({pass.cbFrame, pass.mix.cb, pass.out.cb})));
    }
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "[MIX FRAME PERF] %dx%d %s - %d ms.\n", desc.nWidth,
                      desc.nHeight, CPictureFormats::NameFromFormat(desc.dwFormat), GetTickCount() - pass.tStart);
}

} // namespace vellumcaster
