#include "platform/text/block_cover.h"

#include "platform/text/shape_cache.h"

#include <algorithm>
#include <bit>

namespace vellumcaster {

namespace {

constexpr BYTE white = 255;

/// A picture on its way to the canvas.
struct Piece {
    std::shared_ptr<const ByteImage> spImage;
    const PlacedShape* pPlaced;
    LONG left; ///< of the picture on the canvas
    LONG top;
};

/// The part of a piece that lies on the canvas, in columns and rows of the piece.
struct Part {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

Part PartOn(const Piece& piece, const SIZE& canvas) {
    return {std::max(0, -piece.left), std::max(0, -piece.top), std::min(piece.spImage->width, canvas.cx - piece.left),
            std::min(piece.spImage->height, canvas.cy - piece.top)};
}

/// Calls `work(offset on the canvas, bytes of the piece, how many)` for each row of a piece that lies on the canvas.
template <class Work>
void ForEachRow(const Piece& piece, const SIZE& canvas, Work work) {
    const Part part = PartOn(piece, canvas);
    if (part.left >= part.right) return;
    for (LONG y = part.top; y < part.bottom; ++y) {
        const auto row = static_cast<std::size_t>(piece.top + y) * static_cast<std::size_t>(canvas.cx);
        work(row + static_cast<std::size_t>(piece.left + part.left), piece.spImage->Row(y) + part.left,
             static_cast<std::size_t>(part.right - part.left));
    }
}

/// Two shapes in one block, of which neither fills it: what they cover together cannot be told from their averages.
constexpr bool IsOpen(BYTE a, BYTE b) { return std::min(a, b) != 0 && std::max(a, b) != white; }

/// Blocks in which several shapes meet: their bits are put together here.
class CSharedBlocks {
public:
    CSharedBlocks(LONG nBlock, const SIZE& canvas) : m_nBlock(nBlock), m_Canvas(canvas) {}

    void Add(std::size_t offset) {
        if (m_Slots.empty())
            m_Slots.resize(static_cast<std::size_t>(m_Canvas.cx) * static_cast<std::size_t>(m_Canvas.cy));
        if (m_Slots[offset] != 0) return;
        m_Offsets.push_back(offset);
        m_Slots[offset] = static_cast<std::uint32_t>(m_Offsets.size());
    }

    [[nodiscard]] bool IsEmpty() const { return m_Offsets.empty(); }

    void AddBits(const Piece& piece, LONG nPen) {
        std::shared_ptr<const BitMask> spMask;
        ForEachRow(piece, m_Canvas, [&](std::size_t offset, const BYTE* pAverages, std::size_t count) {
            for (std::size_t i = 0; i < count; ++i) {
                if (m_Slots[offset + i] == 0 || pAverages[i] == 0) continue;
                if (!spMask) spMask = MaskOf(piece, nPen);
                OrBits(*spMask, *piece.pPlaced, offset + i);
            }
        });
    }

    void Average(std::span<BYTE> canvas) const {
        const std::vector<BYTE> averages = AverageOfCounts(m_nBlock);
        for (std::size_t i = 0; i < m_Offsets.size(); ++i) {
            std::size_t count = 0;
            for (LONG y = 0; y < m_nBlock; ++y)
                count +=
                    static_cast<std::size_t>(std::popcount(m_Rows[i * RowsInBlock() + static_cast<std::size_t>(y)]));
            canvas[m_Offsets[i]] = averages[count];
        }
    }

private:
    [[nodiscard]] std::size_t RowsInBlock() const { return static_cast<std::size_t>(m_nBlock); }

    std::shared_ptr<const BitMask> MaskOf(const Piece& piece, LONG nPen) {
        m_Rows.resize(m_Offsets.size() * RowsInBlock());
        const CAutoLock lock(TextLock());
        return CShapeCache::Bits(*piece.pPlaced, nPen);
    }

    void OrBits(const BitMask& mask, const PlacedShape& placed, std::size_t offset) {
        const auto width = static_cast<std::size_t>(m_Canvas.cx);
        const LONG x = static_cast<LONG>(offset % width) * m_nBlock - placed.x - mask.left;
        const LONG top = static_cast<LONG>(offset / width) * m_nBlock - placed.y - mask.top;
        std::uint16_t* pRows = m_Rows.data() + (m_Slots[offset] - 1) * RowsInBlock();
        for (LONG y = std::max(0, -top); y < std::min(m_nBlock, mask.height - top); ++y)
            pRows[y] = static_cast<std::uint16_t>(pRows[y] | mask.Bits(top + y, x, m_nBlock));
    }

    LONG m_nBlock;
    SIZE m_Canvas;
    std::vector<std::uint32_t> m_Slots; ///< of each block of the canvas: 1 and its place in the lists; 0: not shared
    std::vector<std::size_t> m_Offsets;
    std::vector<std::uint16_t> m_Rows; ///< `m_nBlock` for each
};

std::vector<Piece> AveragedPieces(const PlacedText& text, LONG nPen, LONG nBlock) {
    std::vector<Piece> pieces;
    pieces.reserve(text.shapes.size());
    const CAutoLock lock(TextLock());
    for (const PlacedShape& placed : text.shapes) {
        const LONG left = FloorDivide(placed.x, nBlock);
        const LONG top = FloorDivide(placed.y, nBlock);
        auto sp = CShapeCache::Blocks(placed, nPen, nBlock, placed.x - left * nBlock, placed.y - top * nBlock);
        pieces.push_back({sp, &placed, left + sp->left, top + sp->top});
    }
    return pieces;
}

std::vector<Piece> SmoothPieces(const PlacedText& text) {
    std::vector<Piece> pieces;
    pieces.reserve(text.shapes.size());
    const CAutoLock lock(TextLock());
    for (const PlacedShape& placed : text.shapes) {
        auto sp = CShapeCache::Smooth(placed);
        pieces.push_back({sp, &placed, placed.x + sp->left, placed.y + sp->top});
    }
    return pieces;
}

std::shared_ptr<const ByteImage> PaintAlone(const PlacedShape& placed, LONG nPen) {
    const CAutoLock lock(TextLock());
    return std::make_shared<ByteImage>(PaintShape(*placed.pFace, placed.shape, {nPen, false}));
}

/// \return whether the row has a block that two shapes share.
bool HasOpen(const BYTE* pCanvas, const BYTE* pAverages, std::size_t count) {
    BYTE open = 0;
    for (std::size_t i = 0; i < count; ++i)
        open = static_cast<BYTE>(open | static_cast<BYTE>(IsOpen(pCanvas[i], pAverages[i])));
    return open != 0;
}

} // namespace

void CoverBlocks(const PlacedText& text, LONG nPen, LONG nBlock, const ByteCanvas& canvas) {
    const std::vector<Piece> pieces = AveragedPieces(text, nPen, nBlock);
    CSharedBlocks shared(nBlock, canvas.size);
    for (const Piece& piece : pieces)
        ForEachRow(piece, canvas.size, [&](std::size_t offset, const BYTE* pAverages, std::size_t count) {
            BYTE* p = canvas.bytes.data() + offset;
            if (HasOpen(p, pAverages, count))
                for (std::size_t i = 0; i < count; ++i)
                    if (IsOpen(p[i], pAverages[i])) shared.Add(offset + i);
            for (std::size_t i = 0; i < count; ++i)
                p[i] = std::max(p[i], pAverages[i]);
        });
    if (shared.IsEmpty()) return;
    for (const Piece& piece : pieces)
        shared.AddBits(piece, nPen);
    shared.Average(canvas.bytes);
}

void CoverInOneBit(const PlacedText& text, LONG nPen, const ByteCanvas& canvas) {
    for (const PlacedShape& placed : text.shapes) {
        const auto sp = PaintAlone(placed, nPen);
        const Piece piece{sp, &placed, placed.x + sp->left, placed.y + sp->top};
        ForEachRow(piece, canvas.size, [&](std::size_t offset, const BYTE* pBits, std::size_t count) {
            BYTE* p = canvas.bytes.data() + offset;
            for (std::size_t i = 0; i < count; ++i)
                p[i] |= pBits[i];
        });
    }
}

void CoverSmoothly(const PlacedText& text, const ByteCanvas& canvas) {
    for (const Piece& piece : SmoothPieces(text))
        ForEachRow(piece, canvas.size, [&](std::size_t offset, const BYTE* pCoverage, std::size_t count) {
            BYTE* p = canvas.bytes.data() + offset;
            for (std::size_t i = 0; i < count; ++i)
                p[i] = static_cast<BYTE>(pCoverage[i] + (p[i] * (white - pCoverage[i]) + white / 2) / white);
        });
}

} // namespace vellumcaster
