#pragma once

#include "host/graph/graph_builder.h"
#include "image/plane_layout.h"
#include "support/picture_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <vector>

namespace vellumcaster::testing_support {

/// Every byte of a frame that the source makes.
inline constexpr BYTE nBackground = 40;

/// The filter between a source that makes grey frames and a sink that looks at them.
class FilterInGraph : public testing::Test {
protected:
    FilterInGraph() {
        m_Source.streams = {{{format_code::I420, 16, 4, 16}, 400000}};
        m_Source.fill = [this](IMediaSample& sample, const PictureFormat& pf) { return Fill(sample, pf); };
        m_Sink.take = [this](IMediaSample& sample, const PictureFormat& pf) { return Take(sample, pf); };
    }
    ~FilterInGraph() override { m_spGraph->Clear(); }

    /// A graph around a new filter.
    HRESULT Build() {
        EXPECT_EQ(CCoVellumcaster::Make(m_spFilter), S_OK);
        return BuildAroundFilter();
    }
    HRESULT BuildAroundFilter() {
        m_spSource = MakeCounted<CFrameSource>(m_Source);
        m_spSink = MakeCounted<CFrameSink>(m_Sink);
        return BuildGraph(*m_spGraph, *m_spSource, *m_spFilter, *m_spSink);
    }

    /// A white box of 4 x 2 at the left top corner.
    void AddBox() {
        ImageInfoTag info{4, -2, 32, 0, 32};
        const std::vector<BYTE> white(32, 255);
        LONG cookie = 0;
        ASSERT_EQ(m_spFilter->AddImageFromMemory2(&info, 32, white.data(), nullptr, -1, -1, nullptr, &cookie), S_OK);
        ASSERT_EQ(m_spFilter->ShowItem2(cookie, 1), S_OK);
    }

    void RunToEnd() {
        ASSERT_EQ(m_spGraph->Run(), S_OK);
        m_spSink->WaitForEnd();
        ASSERT_EQ(m_spGraph->Stop(), S_OK);
        EXPECT_EQ(m_spSource->Outcome(), S_OK);
    }

    HRESULT Fill(IMediaSample& sample, const PictureFormat& pf) {
        if (m_nFilled == m_nFrames) return S_FALSE;
        const std::size_t cb = CPictureFormats::GetBufferSize(pf);
        BYTE* pData = nullptr;
        EXPECT_EQ(sample.GetPointer(&pData), S_OK);
        EXPECT_GE(sample.GetSize(), static_cast<LONG>(cb));
        std::fill_n(pData, cb, nBackground);
        sample.SetActualDataLength(static_cast<LONG>(cb));
        REFERENCE_TIME start = REFERENCE_TIME{m_nFilled} * 400000;
        REFERENCE_TIME stop = start + 400000;
        sample.SetTime(&start, &stop);
        m_pFilled = pData;
        ++m_nFilled;
        return S_OK;
    }

    HRESULT Take(IMediaSample& sample, const PictureFormat& pf) {
        BYTE* pData = nullptr;
        EXPECT_EQ(sample.GetPointer(&pData), S_OK);
        REFERENCE_TIME start = -1;
        REFERENCE_TIME stop = -1;
        EXPECT_EQ(sample.GetTime(&start, &stop), S_OK);
        EXPECT_EQ(start, REFERENCE_TIME{m_nTaken} * 400000);
        EXPECT_EQ(sample.GetActualDataLength(), static_cast<LONG>(CPictureFormats::GetBufferSize(pf)));
        m_bSameMemory = pData == m_pFilled;
        m_Last.assign(pData, pData + sample.GetActualDataLength());
        m_LastFormat = pf;
        m_cbAlignment = reinterpret_cast<std::uintptr_t>(pData) & -reinterpret_cast<std::uintptr_t>(pData);
        ++m_nTaken;
        return S_OK;
    }

    /// Whether a pixel of the last frame is as the source made it.
    bool IsBackground(std::size_t x, std::size_t y) {
        CPicturePixels pixels(m_LastFormat);
        for (const std::size_t i : pixels.BytesOf(x, y))
            if (m_Last[i] != nBackground) return false;
        return true;
    }

    SourceManners m_Source;
    SinkManners m_Sink;
    CComPtr<CGraph> m_spGraph = MakeCounted<CGraph>();
    CComPtr<CFrameSource> m_spSource;
    CComPtr<CCoVellumcaster> m_spFilter;
    CComPtr<CFrameSink> m_spSink;
    int m_nFrames = 5;
    std::atomic<int> m_nFilled = 0;
    std::atomic<int> m_nTaken = 0;
    BYTE* m_pFilled = nullptr;
    bool m_bSameMemory = false;
    std::uintptr_t m_cbAlignment = 0;
    std::vector<BYTE> m_Last;
    PictureFormat m_LastFormat;
};

} // namespace vellumcaster::testing_support
