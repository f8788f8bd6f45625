#pragma once

#include "image/picture_format.h"

#include <memory>
#include <vector>

namespace vellumcaster::bench {

#if defined(VELLUM_BENCH_LIBYUV)
/// libyuv's nearest conversion of 32-bit pixels into a format.
void ConvertByLibyuv(std::uint32_t dwTarget, const BYTE* pSrc, BYTE* pDst, const SIZE& size);
#endif

#if defined(VELLUM_BENCH_ZIMG)
/// zimg's conversion of RGB into YUV by the same matrix. It reads planes, which are filled once and not timed.
class CZimgConversion {
public:
    /// \param bHalfRows  into 4:2:0, else 4:2:2.
    CZimgConversion(const SIZE& size, bool bHalfRows);
    ~CZimgConversion();
    CZimgConversion(const CZimgConversion&) = delete;
    CZimgConversion& operator=(const CZimgConversion&) = delete;

    void Run();

private:
    struct Graph;
    std::unique_ptr<Graph> m_spGraph;
};
#endif

} // namespace vellumcaster::bench
