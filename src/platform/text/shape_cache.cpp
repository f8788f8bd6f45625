#include "platform/text/shape_cache.h"

#include "platform/text/recently_used.h"

namespace vellumcaster::CShapeCache {

namespace {

struct Key {
    TextShape shape;
    LONG nPen = 0;
    LONG nBlock = 0; ///< of an average; 1: the smoothed fill; 0: bits
    LONG x = 0;
    LONG y = 0;

    friend bool operator==(const Key&, const Key&) = default;
};

struct KeyHash {
    std::size_t operator()(const Key& key) const {
        std::uint64_t hash = key.shape.face;
        for (const std::uint64_t part :
             {std::uint64_t{key.shape.glyph}, std::uint64_t{key.shape.quarters},
              static_cast<std::uint64_t>(key.shape.barWidth), static_cast<std::uint64_t>(key.shape.barHeight),
              static_cast<std::uint64_t>(key.nPen), static_cast<std::uint64_t>(key.nBlock),
              static_cast<std::uint64_t>(key.x), static_cast<std::uint64_t>(key.y)})
            hash = (hash ^ part) * 0x9E3779B97F4A7C15 + (hash >> 29);
        return static_cast<std::size_t>(hash ^ hash >> 32);
    }
};

using CBits = CRecentlyUsed<Key, const BitMask, KeyHash>;
using CBytes = CRecentlyUsed<Key, const ByteImage, KeyHash>;

CBits& KeptBits() {
    static CBits& kept = *new CBits(std::size_t{32} << 20);
    return kept;
}

CBytes& KeptBytes() {
    static CBytes& kept = *new CBytes(std::size_t{16} << 20);
    return kept;
}

std::size_t CostOf(const BitMask& mask) { return sizeof(Key) + sizeof mask + mask.words.size() * 8; }
std::size_t CostOf(const ByteImage& image) { return sizeof(Key) + sizeof image + image.bytes.size(); }

/// What is kept under a key, or is made for it now.
template <class Picture, class Make>
std::shared_ptr<const Picture> FindOrMake(CRecentlyUsed<Key, const Picture, KeyHash>& kept, const Key& key, Make make) {
    std::shared_ptr<const Picture> sp = kept.Find(key);
    if (sp) return sp;
    sp = std::make_shared<const Picture>(make());
    kept.Insert(key, sp, CostOf(*sp));
    return sp;
}

} // namespace

std::shared_ptr<const ByteImage> Smooth(const PlacedShape& placed) {
    return FindOrMake(KeptBytes(), Key{placed.shape, 0, 1}, [&] {
        return PaintShape(*placed.pFace, placed.shape, {0, true});
    });
}

std::shared_ptr<const BitMask> Bits(const PlacedShape& placed, LONG nPen) {
    return FindOrMake(KeptBits(), Key{placed.shape, nPen}, [&] {
        return PackBits(PaintShape(*placed.pFace, placed.shape, {nPen, false}));
    });
}

std::shared_ptr<const ByteImage> Blocks(const PlacedShape& placed, LONG nPen, LONG nBlock, LONG x, LONG y) {
    return FindOrMake(KeptBytes(), Key{placed.shape, nPen, nBlock, x, y},
                      [&] { return AverageBlocks(*Bits(placed, nPen), nBlock, x, y); });
}

void Clear() {
    const CAutoLock lock(TextLock());
    KeptBits().Clear();
    KeptBytes().Clear();
}

std::size_t Size() {
    const CAutoLock lock(TextLock());
    return KeptBits().Cost() + KeptBytes().Cost();
}

} // namespace vellumcaster::CShapeCache
