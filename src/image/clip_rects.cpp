#include "image/clip_rects.h"

#include "image/rounding.h"

#include <algorithm>

namespace vellumcaster::CPictureFormats {

namespace {

/// One direction of a rectangle. Edges far outside of any picture can come in, so they are kept in 64 bits.
struct Span {
    std::int64_t first = 0;
    std::int64_t end = 0;

    std::int64_t Length() const { return end - first; }
};

struct Box {
    Span x;
    Span y;
};

/// Clips the low ends of both spans at 0. `scale` is the length of `b` by that of `a`.
void ClipLowEnds(Span& a, Span& b, double scale) {
    if (a.first < 0) {
        b.first -= RoundToInt64(static_cast<double>(a.first) * scale);
        a.first = 0;
    }
    if (b.first < 0) {
        a.first -= RoundToInt64(static_cast<double>(b.first) / scale);
        b.first = 0;
    }
}

/// Clips the high ends of both spans at the sizes of their pictures.
void ClipHighEnds(Span& a, Span& b, double scale, std::int64_t sizeA, std::int64_t sizeB) {
    b.end -= RoundToInt64(static_cast<double>(std::max<std::int64_t>(a.end - sizeA, 0)) * scale);
    a.end = std::min(a.end, sizeA);
    a.end -= RoundToInt64(static_cast<double>(std::max<std::int64_t>(b.end - sizeB, 0)) / scale);
    b.end = std::min(b.end, sizeB);
}

bool LiesOutside(const Span& span, std::int64_t size) { return span.end < 0 || span.first >= size; }

bool LiesOutside(const Box& box, const PictureFormat& pf) {
    return LiesOutside(box.x, pf.nWidth) || LiesOutside(box.y, RowCount(pf));
}

/// The box to start from. \return false for a given rectangle without an inside.
bool StartBox(const PictureFormat& pf, const RECT* pGiven, Box& box) {
    if (!pGiven) {
        box = {{0, pf.nWidth}, {0, RowCount(pf)}};
        return true;
    }
    box = {{pGiven->left, pGiven->right}, {pGiven->top, pGiven->bottom}};
    return box.x.first < box.x.end && box.y.first < box.y.end;
}

RECT ToRect(const Box& box) {
    return {SaturateToInt32(box.x.first), SaturateToInt32(box.y.first), SaturateToInt32(box.x.end),
            SaturateToInt32(box.y.end)};
}

} // namespace

HRESULT ClipRects(const PictureFormat* a, const PictureFormat* b, RECT* outA, RECT* outB, bool bAllowScale,
                  const RECT* inA, const RECT* inB) {
    Box boxA;
    Box boxB;
    if (!StartBox(*a, inA, boxA) || !StartBox(*b, inB, boxB)) return E_INVALIDARG;

    double scaleX = 1.0;
    double scaleY = 1.0;
    if (bAllowScale) {
        scaleX = static_cast<double>(boxB.x.Length()) / static_cast<double>(boxA.x.Length());
        scaleY = static_cast<double>(boxB.y.Length()) / static_cast<double>(boxA.y.Length());
    } else if (boxA.x.Length() != boxB.x.Length() || boxA.y.Length() != boxB.y.Length()) {
        return E_NOTIMPL;
    }

    // The order of the edges decides where a rectangle overhangs both pictures.
    ClipLowEnds(boxA.y, boxB.y, scaleY);
    ClipLowEnds(boxA.x, boxB.x, scaleX);
    ClipHighEnds(boxA.x, boxB.x, scaleX, a->nWidth, b->nWidth);
    ClipHighEnds(boxA.y, boxB.y, scaleY, RowCount(*a), RowCount(*b));

    *outA = ToRect(boxA);
    *outB = ToRect(boxB);
    return LiesOutside(boxA, *a) || LiesOutside(boxB, *b) ? S_FALSE : S_OK;
}

} // namespace vellumcaster::CPictureFormats
