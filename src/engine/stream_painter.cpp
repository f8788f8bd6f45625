#include "engine/stream_painter.h"

#include "engine/item_planes.h"

namespace vellumcaster {

HRESULT CStreamPainter::UpdateItemColors(OverlayItem& item) { return vellumcaster::UpdateItemColors(item, m_dwOutput); }

HRESULT CStreamPainter::UpdateItemAlpha(OverlayItem& item) { return vellumcaster::UpdateItemAlpha(item, m_dwInput); }

HRESULT CStreamPainter::PrepareImage(OverlayItem& item) { return vellumcaster::PrepareImage(item, m_dwInput); }

} // namespace vellumcaster
