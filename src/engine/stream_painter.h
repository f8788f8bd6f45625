#pragma once

#include "engine/item_painter.h"

#include <atomic>

namespace vellumcaster {

/// Keeps the pixels of items in the formats of a stream. The formats may be set while items are prepared on other
/// threads: an item that is not in the list yet is prepared without the item lock.
class CStreamPainter final : public IItemPainter {
public:
    /// Format codes of what comes in and what goes out; 0 while a side is not connected.
    void SetInputFormat(std::uint32_t dwInput) { m_dwInput = dwInput; }
    void SetOutputFormat(std::uint32_t dwOutput) { m_dwOutput = dwOutput; }

    HRESULT UpdateLiveItem(OverlayItem&, bool) override { return S_FALSE; }
    HRESULT UpdateTextItem(OverlayItem&) override { return S_FALSE; }
    HRESULT UpdateDate(OverlayItem&, bool) override { return S_FALSE; }
    HRESULT UpdateTime(OverlayItem&, bool) override { return S_FALSE; }
    HRESULT UpdateItemColors(OverlayItem& item) override;
    HRESULT UpdateItemAlpha(OverlayItem& item) override;
    HRESULT PrepareImage(OverlayItem& item) override;

private:
    std::atomic<std::uint32_t> m_dwInput = 0;
    std::atomic<std::uint32_t> m_dwOutput = 0;
};

} // namespace vellumcaster
