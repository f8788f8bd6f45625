#pragma once

#include <vellumcaster/types.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

struct IBaseFilter;

enum QualityMessageType : std::int32_t {
    Famine = 0, ///< frames come too slowly
    Flood = 1,  ///< frames come too fast
};

/// What a renderer says of the pace at which frames reach it.
struct Quality {
    QualityMessageType Type = Famine;
    LONG Proportion = 0;     ///< thousandths of the present rate that could be taken
    REFERENCE_TIME Late = 0; ///< how late the last frame was, units of 100 ns
    REFERENCE_TIME TimeStamp = 0;
};

/// Takes such messages; they travel upstream.
struct IQualityControl : IUnknown {
    static constexpr GUID IID{0x56A868A5, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    /// \param pSelf  the filter that sends.
    virtual HRESULT Notify(IBaseFilter* pSelf, Quality q) = 0;
    /// Where messages are to go instead; not counted.
    virtual HRESULT SetSink(IQualityControl* pQualityControl) = 0;

protected:
    ~IQualityControl() = default;
};

} // namespace vellumcaster
