#pragma once

#include "engine/item_painter.h"
#include "engine/live_text.h"

#include <atomic>

namespace vellumcaster {

/// Keeps the pixels of items in the formats of a stream. What is known of the stream may be set while items are prepared
/// on other threads: an item that is not in the list yet is prepared without the item lock.
class CStreamPainter final : public IItemPainter {
public:
    /// Format codes of what comes in and what goes out; 0 while a side is not connected.
    void SetInputFormat(std::uint32_t dwInput) { m_dwInput = dwInput; }
    void SetOutputFormat(std::uint32_t dwOutput) { m_dwOutput = dwOutput; }
    /// Duration of a frame in units of 100 ns, by which timecodes count; 0 while it is not known.
    void SetAvgTimePerFrame(REFERENCE_TIME avgTimePerFrame) { m_avgTimePerFrame = avgTimePerFrame; }

    [[nodiscard]] std::uint32_t InputFormat() const { return m_dwInput; }

    HRESULT UpdateLiveItem(OverlayItem& item, bool bShow) override;
    HRESULT UpdateTextItem(OverlayItem& item) override;
    HRESULT UpdateDate(OverlayItem& item, bool bForce) override;
    HRESULT UpdateTime(OverlayItem& item, bool bForce) override;
    HRESULT UpdateItemColors(OverlayItem& item) override;
    HRESULT UpdateItemAlpha(OverlayItem& item) override;
    HRESULT PrepareImage(OverlayItem& item) override;

private:
    [[nodiscard]] LiveStream Stream() const { return {m_dwInput, m_avgTimePerFrame}; }

    std::atomic<std::uint32_t> m_dwInput = 0;
    std::atomic<std::uint32_t> m_dwOutput = 0;
    std::atomic<REFERENCE_TIME> m_avgTimePerFrame = 0;
};

} // namespace vellumcaster
