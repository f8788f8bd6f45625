#pragma once

#include <vellumcaster/results.h>

#include <atomic>
#include <optional>

namespace vellumcaster {

/// What an application demands of the stream apart from its items: the pixel format, and whether frames are buffered on
/// the way out. The demands live as long as their object and are kept in no stream.
///
/// The object that has them says through the three hooks how it stands. Any thread may ask; demands are made by one
/// thread at a time.
class CStreamDemands {
public:
    CStreamDemands() = default;
    CStreamDemands(const CStreamDemands&) = delete;
    CStreamDemands& operator=(const CStreamDemands&) = delete;

    /// As `IVellumcaster2` has them.
    HRESULT SetColorSpace(BSTR bsFourccDesired);
    HRESULT GetColorSpace(BSTR* pbsFourccDesired) const;
    HRESULT UseExtraBuffer2(BOOL bUse);
    HRESULT IsUseExtraBuffer2(BOOL* pbUse) const;

    /// Read without a lock.
    [[nodiscard]] bool UsesExtraBuffer() const { return m_bUseExtraBuffer; }

    /// Whether a stream of this format meets the demand.
    [[nodiscard]] bool Allows(std::uint32_t dwFormat) const { return m_fccDesired == 0 || m_fccDesired == dwFormat; }

protected:
    ~CStreamDemands() = default;

    [[nodiscard]] virtual bool IsStopped() const = 0;
    /// Brings what is connected to a format; where the neighbours take it, it becomes the demand before they connect anew.
    /// \return nothing where nothing is connected; VFW_E_TYPE_NOT_ACCEPTED where a neighbour does not take the format; else
    ///         what the reconnection answers.
    virtual std::optional<HRESULT> ReconnectInFormat(std::uint32_t dwFormat) = 0;
    /// Connects anew with the type that stands.
    virtual HRESULT Reconnect() = 0;
    /// A change of what an application would want to save.
    virtual void MarkUnsaved() = 0;

    std::atomic<std::uint32_t> m_fccDesired = 0; ///< format code; 0: any
    std::atomic<bool> m_bUseExtraBuffer = true;
};

} // namespace vellumcaster
