#pragma once

#include <vellumcaster/types.h>

#include <memory>

/// Others that scale, for the same sizes and from the same kind of memory.
namespace vellumcaster::bench {

/// One scaling of pixels of `channels` bytes, whose rows follow each other without a gap.
struct ScaleCase {
    const char* pszName;
    std::int32_t channels;
    SIZE from;
    SIZE to;

    [[nodiscard]] std::size_t SourceSize() const { return Bytes(from); }
    [[nodiscard]] std::size_t TargetSize() const { return Bytes(to); }

private:
    [[nodiscard]] std::size_t Bytes(const SIZE& size) const {
        return static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy) *
               static_cast<std::size_t>(channels);
    }
};

#if defined(VELLUM_BENCH_LIBYUV)
/// libyuv's area average. For pixels of four samples it has one by halves only; any other is timed on a plane of as
/// many bytes.
void ScaleByBox(const ScaleCase& scaleCase, const BYTE* pSrc, BYTE* pDst);
#endif

#if defined(VELLUM_BENCH_ZIMG)
/// zimg's bicubic scaling of every channel as a plane of its own, held to the instructions that this build is
/// compiled for.
class CPlanesByZimg {
public:
    /// Planes are filled at random. Ends the program when zimg refuses.
    explicit CPlanesByZimg(const ScaleCase& scaleCase);
    CPlanesByZimg(const CPlanesByZimg&) = delete;
    CPlanesByZimg& operator=(const CPlanesByZimg&) = delete;
    ~CPlanesByZimg();

    void Scale();

private:
    struct State;
    std::unique_ptr<State> m_spState;
};
#endif

} // namespace vellumcaster::bench
