#pragma once

#include "host/graph/neighbour.h"
#include "image/picture_format.h"
#include "platform/kernel/critical_section.h"
#include "platform/media/mem_input_pin.h"

#include <functional>
#include <thread>

namespace vellumcaster {

/// A stream that a source can make.
struct OfferedStream {
    PictureFormat pf;
    REFERENCE_TIME avgTimePerFrame = 0; ///< units of 100 ns; 0: not known
};

/// How a source behaves towards what it feeds.
struct SourceManners : Manners {
    std::vector<OfferedStream> streams; ///< by preference

    enum class Memory {
        Offered,     ///< what downstream offers, else its own
        Own,         ///< its own, and it may be written
        OwnReadOnly, ///< its own, and it may not
    };
    Memory memory = Memory::Offered;
    /// What it needs of its buffers, sizes apart.
    ALLOCATOR_PROPERTIES needs{4, 0, 1, 0};

    /// Fills a sample of the stream: data, length, times. On the source's thread.
    /// \return S_OK; S_FALSE: the stream has ended; a failure ends it too.
    std::function<HRESULT(IMediaSample& sample, const PictureFormat& pf)> fill;
};

/// A source of frames with a thread of its own, which delivers from Pause to Stop as fast as downstream takes them.
class CFrameSource final : public CNeighbour {
public:
    explicit CFrameSource(SourceManners manners);

    [[nodiscard]] CComPtr<IPin> OwnPin() override;
    [[nodiscard]] SourceManners& Manners() { return m_Manners; }

    /// Empties what is on its way and goes on with a new segment, as a seek does: what is being delivered may be lost,
    /// what comes then is not. On the control thread.
    HRESULT Flush();

    /// What the last delivery answered that ended the stream before its end; S_OK where none did. After `Stop` or the
    /// end of the stream.
    [[nodiscard]] HRESULT Outcome() const { return m_hrOutcome; }

    /// Waits until nothing more is delivered.
    void WaitForEnd() const { m_bDelivering.wait(true); }

    /// Frames that were delivered and taken, since the source was made.
    [[nodiscard]] int AcceptedCount() const { return m_nAccepted; }

protected:
    HRESULT Start() override;
    HRESULT End() override;

private:
    class CPin;

    ~CFrameSource() override;
    void Deliver();
    HRESULT DeliverFrame();

    SourceManners m_Manners;
    CComPtr<CPin> m_spPin;
    std::thread m_Thread;
    std::atomic<bool> m_bEnding = false;
    std::atomic<bool> m_bFlushing = false;
    CCriticalSection m_csFrame; ///< held for one frame
    std::atomic<bool> m_bDelivering = false;
    std::atomic<int> m_nAccepted = 0;
    std::atomic<HRESULT> m_hrOutcome = S_OK;
};

} // namespace vellumcaster
