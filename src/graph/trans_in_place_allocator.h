#pragma once

#include "graph/allocator_needs.h"
#include "platform/com/shared_com_ptr.h"

namespace vellumcaster {

/// What a filter that wants one allocator on both sides finds upstream.
struct UpstreamAllocator {
    CComPtr<IMemAllocator> sp; ///< null: there is none
    bool bReadOnly = false;    ///< its buffers may not be written
};

/// Chooses and keeps the allocator of an output pin. Where upstream's can be written and suits downstream, it is that
/// one, and the same samples pass through the filter; else downstream's, else one of its own.
///
/// Called on the graph's control thread.
class CTransInPlaceAllocator {
public:
    /// Where the allocator came from.
    enum class Mode {
        None = 0,
        Upstream = 1, ///< passes through
        Own = 2,
        Downstream = 3,
    };

    /// \param pszPin  the pin's name in lines of diagnosis; a literal.
    explicit CTransInPlaceAllocator(const char* pszPin) : m_pszPin(pszPin) {}
    CTransInPlaceAllocator(const CTransInPlaceAllocator&) = delete;
    CTransInPlaceAllocator& operator=(const CTransInPlaceAllocator&) = delete;

    /// For a new connection.
    /// \return S_OK; E_FAIL, or the last failure, when downstream takes none.
    HRESULT AllocatorAgree(IMemInputPin* pMemInput, const UpstreamAllocator& upstream);

    /// Takes upstream's new allocator in place of its former one.
    /// \return S_OK; E_POINTER for null; E_FAIL, or the failure, when downstream does not take it, and there is then no
    ///         allocator.
    HRESULT ReagreeUpstreamAllocator(IMemInputPin* pMemInput, IMemAllocator* pAllocator, bool bReadOnly);

    /// Commits or decommits, unless that was the last thing done.
    /// \return S_OK; VFW_E_NO_ALLOCATOR; E_FAIL, or the allocator's failure, and nothing has changed.
    HRESULT Commit(bool bCommit);

    /// Decommits the allocator and forgets it.
    void Reset();

    /// Any thread; a delivery may outlast the connection.
    [[nodiscard]] CComPtr<IMemAllocator> Get() const { return m_sp.Get(); }
    [[nodiscard]] Mode GetMode() const { return m_Mode; }
    [[nodiscard]] const ALLOCATOR_PROPERTIES& Properties() const { return m_Props; }

private:
    void Adopt(CComPtr<IMemAllocator> sp, Mode mode);
    void ReadProperties(IMemAllocator& allocator);

    const char* m_pszPin;
    Mode m_Mode = Mode::None;
    ALLOCATOR_PROPERTIES m_Props;
    CSharedComPtr<IMemAllocator> m_sp;
    bool m_bCommitted = false;
};

} // namespace vellumcaster
