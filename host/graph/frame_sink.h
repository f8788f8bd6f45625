#pragma once

#include "host/graph/neighbour.h"
#include "image/picture_format.h"
#include "platform/media/mem_input_pin.h"

#include <condition_variable>
#include <functional>
#include <mutex>

namespace vellumcaster {

/// How a sink behaves towards what feeds it.
struct SinkManners : Manners {
    std::vector<std::uint32_t> formats; ///< format codes that it takes; none: all that frames can have

    bool bOffersMemory = true;        ///< it has an allocator of its own to offer
    bool bInsistsOnItsMemory = false; ///< it takes no other
    bool bTellsItsNeeds = true;       ///< it says what it needs of buffers
    ALLOCATOR_PROPERTIES needs{1, 1, 1, 0};

    /// Takes a frame, on the thread that delivers it. \return S_OK; S_FALSE: it wants no more; a failure.
    std::function<HRESULT(IMediaSample& sample, const PictureFormat& pf)> take;
};

/// A sink of frames without a clock: it takes each as soon as it comes.
class CFrameSink final : public CNeighbour {
public:
    explicit CFrameSink(SinkManners manners);

    [[nodiscard]] CComPtr<IPin> OwnPin() override;
    [[nodiscard]] SinkManners& Manners() { return m_Manners; }

    /// Waits until the stream has ended, or nothing more can come because the filter was stopped.
    void WaitForEnd();
    [[nodiscard]] bool HasEnded() const { return m_bEnded; }

    /// The allocator that was settled on, and whether its buffers may be written.
    [[nodiscard]] CComPtr<IMemAllocator> Allocator() const;
    [[nodiscard]] bool IsReadOnly() const;

protected:
    HRESULT Start() override;
    HRESULT End() override;

private:
    class CPin;

    ~CFrameSink() override;
    void SetEnded(bool bEnded);

    SinkManners m_Manners;
    CComPtr<CPin> m_spPin;
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::atomic<bool> m_bEnded = false;
};

} // namespace vellumcaster
