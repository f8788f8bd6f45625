#include "engine/overlay_item.h"

namespace vellumcaster {

namespace {

/// Copies holders one by one and remembers whether one came out short.
class BlobCopier {
public:
    template <class Blob>
    void Copy(Blob& to, const Blob& from) {
        to = from;
        m_bComplete = m_bComplete && to.Size() == from.Size();
    }

    void Copy(OverlayLayer& to, const OverlayLayer& from) {
        Copy(to.blobAlpha, from.blobAlpha);
        Copy(to.planeAlpha, from.planeAlpha);
        Copy(to.planeColor, from.planeColor);
        Copy(to.planeWeight, from.planeWeight);
    }

    [[nodiscard]] bool IsComplete() const { return m_bComplete; }

private:
    bool m_bComplete = true;
};

} // namespace

HRESULT OverlayItem::CopyFrom(const OverlayItem& other) {
    if (this == &other) return S_OK;
    if (FAILED(bsName.Assign(other.bsName.Get()))) return E_OUTOFMEMORY;
    BlobCopier copier;
    copier.Copy(blobImage, other.blobImage);
    for (const auto layer : mixingOrder)
        copier.Copy(this->*layer, other.*layer);
    if (!copier.IsComplete()) return E_OUTOFMEMORY;

    eType = other.eType;
    logFont = other.logFont;
    nTextFormat = other.nTextFormat;
    sizeItem = other.sizeItem;
    sizeRect = other.sizeRect;
    sizeEllipse = other.sizeEllipse;
    props = other.props;
    spCallback = other.spCallback;
    llClockOffset = other.llClockOffset;
    dblPosX = other.dblPosX;
    dblPosY = other.dblPosY;
    return S_OK;
}

} // namespace vellumcaster
