#pragma once

#include "image/picture_format.h"

#include <array>
#include <span>

namespace vellumcaster::testing_support {

/// Every format that a picture can be processed in.
inline constexpr std::uint32_t processedFormats[] = {
    format_code::ARGB32, format_code::RGB32, format_code::RGB24, format_code::RGB565, format_code::RGB555,
    format_code::YUY2,   format_code::YVYU,  format_code::UYVY,  format_code::YV12,   format_code::I420};

/// Reads a picture pixel by pixel as its format is defined, and knows nothing of blocks, slots or clipping. It
/// stands beside the layout code so that the two can be held against each other.
class CPicturePixels {
public:
    explicit CPicturePixels(const PictureFormat& pf) : m_Pf(pf), m_nRows(static_cast<std::size_t>(RowCount(pf))) {
        const std::size_t stride = EffectiveStride(pf);
        m_cbPitch = IsPlanar() ? stride : (stride * BytesPerPixel() + 3) / 4 * 4;
    }

    [[nodiscard]] bool IsRgb() const { return !IsPlanar() && !IsPackedYuv(); }
    [[nodiscard]] bool Contains(std::int64_t x, std::int64_t y) const {
        return x >= 0 && y >= 0 && x < m_Pf.nWidth && y < std::int64_t(m_nRows);
    }

    [[nodiscard]] std::size_t Size() const { return IsPlanar() ? m_nRows * m_cbPitch * 3 / 2 : m_nRows * m_cbPitch; }

    /// The bytes that belong to a pixel and to no other, counted from the start of the picture. In 4:2:0 the first
    /// of four pixels takes the chroma.
    [[nodiscard]] std::span<const std::size_t> BytesOf(std::size_t x, std::size_t y) {
        const std::size_t row = IsRgb() && m_Pf.nHeight > 0 ? m_nRows - 1 - y : y;
        if (!IsPlanar()) {
            for (std::size_t i = 0; i < BytesPerPixel(); ++i)
                m_Bytes[i] = row * m_cbPitch + x * BytesPerPixel() + i;
            return {m_Bytes.data(), BytesPerPixel()};
        }
        const std::size_t cbLuma = m_nRows * m_cbPitch;
        m_Bytes[0] = row * m_cbPitch + x;
        m_Bytes[1] = cbLuma + y / 2 * (m_cbPitch / 2) + x / 2;
        m_Bytes[2] = m_Bytes[1] + cbLuma / 4;
        return {m_Bytes.data(), x % 2 == 0 && y % 2 == 0 ? 3u : 1u};
    }

private:
    [[nodiscard]] bool IsPlanar() const {
        return m_Pf.dwFormat == format_code::YV12 || m_Pf.dwFormat == format_code::I420;
    }
    [[nodiscard]] bool IsPackedYuv() const {
        return m_Pf.dwFormat == format_code::YUY2 || m_Pf.dwFormat == format_code::YVYU ||
               m_Pf.dwFormat == format_code::UYVY;
    }
    [[nodiscard]] std::size_t BytesPerPixel() const {
        switch (m_Pf.dwFormat) {
        case format_code::ARGB32:
        case format_code::RGB32: return 4;
        case format_code::RGB24: return 3;
        default: return 2;
        }
    }

    PictureFormat m_Pf;
    std::size_t m_nRows;
    std::size_t m_cbPitch;
    std::array<std::size_t, 4> m_Bytes{};
};

} // namespace vellumcaster::testing_support
