#pragma once

#include "image/blob_holder.h"
#include "image/resample_kernel.h"

namespace vellumcaster {

/// Both tables hold, for every target sample, the source samples that it is made of and their weights in whole
/// numbers. A tap that the kernel puts beyond the last source sample falls on the last one, so that `Apply` never
/// reads outside of what it was built for.
///
/// A table is built anew only when a size or the kernel changes. It is used by one thread at a time; `Apply` alone
/// may run on several.

/// Scales rows in their length, with 4 or 8 taps a column; a kernel that reaches further is cut off.
class HorizontalTable {
public:
    /// \param srcWidth, dstWidth  samples, from 1.
    /// \return S_OK; E_INVALIDARG for a size below 1 or an unknown kernel; E_OUTOFMEMORY.
    [[nodiscard]] HRESULT Build(std::int32_t srcWidth, std::int32_t dstWidth, const ResampleParams& params);

    /// Scales `rows` rows of bytes; does nothing when the table was not built. The buffers do not overlap.
    void Apply(const BYTE* pIn, BYTE* pOut, std::int32_t rows, std::ptrdiff_t inPitch, std::ptrdiff_t outPitch) const;

private:
    [[nodiscard]] std::size_t WeightBytes() const { return m_bFourTaps ? 4 : 8; }
    [[nodiscard]] std::int32_t ReadTaps() const;

    KernelHolder m_Kernel;
    std::int32_t m_nSrcWidth = 0;
    std::int32_t m_nDstWidth = 0;
    bool m_bReady = false;
    bool m_bFourTaps = false;
    CHeapBlob m_First;   ///< one uint32 a target column: the first source column
    CHeapBlob m_Weights; ///< `WeightBytes` a target column, each weight times 128
};

/// Scales columns in their length, with as many taps as the kernel has.
class VerticalTable {
public:
    /// \param srcHeight, dstHeight  rows, from 1.
    /// \return S_OK; E_INVALIDARG for a size below 1 or an unknown kernel; E_OUTOFMEMORY; E_FAIL when the weights of a
    ///         row are all too small to be told from 0, which takes several hundred source rows for one.
    [[nodiscard]] HRESULT Build(std::int32_t srcHeight, std::int32_t dstHeight, const ResampleParams& params);

    /// Makes the target rows, each of `cbRow` bytes; does nothing when the table was not built. The buffers do not
    /// overlap.
    void Apply(const BYTE* pIn, BYTE* pOut, std::size_t cbRow, std::ptrdiff_t inPitch, std::ptrdiff_t outPitch) const;

private:
    KernelHolder m_Kernel;
    std::int32_t m_nSrcHeight = 0;
    std::int32_t m_nDstHeight = 0;
    bool m_bReady = false;
    /// One entry a target row, walked from the first: uint32 first source row, uint32 count, and so many weights of
    /// 64 bits, each times 256 in four equal lanes.
    CHeapBlob m_Entries;
};

} // namespace vellumcaster
