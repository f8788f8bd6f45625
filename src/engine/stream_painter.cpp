#include "engine/stream_painter.h"

#include "engine/item_planes.h"
#include "engine/text_item.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/utf8.h"

namespace vellumcaster {

HRESULT CStreamPainter::UpdateLiveItem(OverlayItem& item, bool bShow) {
    return WithoutExceptions([&] { return vellumcaster::UpdateLiveItem(item, bShow, Stream()); });
}

HRESULT CStreamPainter::UpdateTextItem(OverlayItem& item) {
    return WithoutExceptions(
        [&] { return vellumcaster::UpdateTextItem(item, ToUtf8(item.bsName.View()).c_str(), m_dwInput); });
}

HRESULT CStreamPainter::UpdateDate(OverlayItem& item, bool bForce) {
    return WithoutExceptions([&] { return vellumcaster::UpdateDate(item, bForce, Stream()); });
}

HRESULT CStreamPainter::UpdateTime(OverlayItem& item, bool bForce) {
    return WithoutExceptions([&] { return vellumcaster::UpdateTime(item, bForce, Stream()); });
}

HRESULT CStreamPainter::UpdateItemColors(OverlayItem& item) { return vellumcaster::UpdateItemColors(item, m_dwOutput); }

HRESULT CStreamPainter::UpdateItemAlpha(OverlayItem& item) { return vellumcaster::UpdateItemAlpha(item, m_dwInput); }

HRESULT CStreamPainter::PrepareImage(OverlayItem& item) { return vellumcaster::PrepareImage(item, m_dwInput); }

} // namespace vellumcaster
