#pragma once

#include "graph/allocator_buffers.h"
#include "graph/media_sample.h"
#include "graph/raw_block_pool.h"
#include "platform/com/unknown_impl.h"
#include "platform/kernel/semaphore.h"
#include "platform/media/mem_allocator_callback.h"

namespace vellumcaster {

/// The other road for a media type: an allocator that puts it on the next sample that it hands out.
struct IMemAllocatorEx : IUnknown {
    static constexpr GUID IID{0x9039B6A1, 0x2744, 0x48D0, {0xA7, 0xED, 0x7A, 0x33, 0x44, 0xEF, 0x9F, 0x9A}};

    /// \param pmt  copied; null for none. \return S_OK; as `MT_Assign`.
    virtual HRESULT SetMediaType(const AM_MEDIA_TYPE* pmt) = 0;

protected:
    ~IMemAllocatorEx() = default;
};

/// The filter's allocator: one block of memory cut into equal buffers, and a pool of blocks that samples are built in.
/// Between `Commit` and `Decommit` nothing is allocated. Any thread; a wait for a buffer holds no lock.
///
///     Initialised --SetProperties--> Set --Commit--> AllFree <--> SomeOut <--> NoneFree
///                                     ^                |             |            |
///                                     +---Decommit-----+         Decommit     Decommit
///                                     |                              v            |
///                                     +--last buffer comes home-- Pending <-------+
///
/// From `Commit` until the last buffer is home after `Decommit` it holds a reference on itself.
class CMemoryAllocator final : public CUnknownImpl<IMemAllocatorCallbackTemp, IMemAllocatorEx> {
public:
    CMemoryAllocator() : m_State(m_Semaphore.IsMade() ? State::Initialised : State::None) {}

    /// A new allocator. \return E_OUTOFMEMORY.
    static HRESULT Make(CComPtr<CMemoryAllocator>& sp);

    ULONG Release() override;

    HRESULT SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) override;
    HRESULT GetProperties(ALLOCATOR_PROPERTIES* pProps) override;
    HRESULT Commit() override;
    HRESULT Decommit() override;
    HRESULT GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME* pStartTime, REFERENCE_TIME* pEndTime,
                      DWORD dwFlags) override;
    HRESULT ReleaseBuffer(IMediaSample* pBuffer) override;
    HRESULT SetNotify(IMemAllocatorNotifyCallbackTemp* pNotify) override;
    HRESULT GetFreeCount(LONG* plBuffersFree) override;
    HRESULT SetMediaType(const AM_MEDIA_TYPE* pmt) override;

    [[nodiscard]] virtual const char* DisplayName() const { return "CMemoryAllocator"; }

private:
    friend class CMediaSample;

    enum class State {
        None = 0,        ///< there is no semaphore to wait on
        Initialised = 1, ///< no properties yet
        Set = 2,         ///< properties, not committed
        AllFree = 3,     ///< committed
        SomeOut = 4,
        NoneFree = 5, ///< threads may wait
        Pending = 6,  ///< decommitted with buffers still out
    };

    /// Sends the buffer and the block of a sample home whose last reference has gone.
    void EndSample(CMediaSample* pSample);
    /// \return S_FALSE: no buffer is free.
    HRESULT MakeSample(IMediaSample** ppSample);
    HRESULT MakeMemory();
    /// A buffer is home again.
    HRESULT TakeBack();
    void WakeWaiters();

    CSemaphore m_Semaphore;
    State m_State;
    ALLOCATOR_PROPERTIES m_Props{0, 0, 1, 0};
    CComPtr<IMemAllocatorNotifyCallbackTemp> m_spNotify;
    CAllocatorBuffers m_Buffers;
    CRawBlockPool<CMediaSample> m_Pool;
    int m_cWaiters = 0;             ///< threads that wait, or will
    CMediaTypeHolder m_PendingType; ///< for the next sample
    CCriticalSection m_cs;          ///< guards all of the above
};

} // namespace vellumcaster
