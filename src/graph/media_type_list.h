#pragma once

#include "graph/media_type.h"
#include "platform/media/pin.h"

#include <memory>
#include <span>

namespace vellumcaster {

/// Owns a list of media types, such as the ones that a pin offers. No lock; the owner guards it.
class CMediaTypeList {
public:
    CMediaTypeList() = default;
    CMediaTypeList(const CMediaTypeList&) = delete;
    CMediaTypeList& operator=(const CMediaTypeList&) = delete;
    ~CMediaTypeList() { Clear(); }

    /// Takes the record over and frees its shell. \param spmt  not null.
    /// \return E_OUTOFMEMORY: the list is as before, and the record is gone.
    [[nodiscard]] HRESULT Add(CMediaTypePtr spmt);

    /// Moves all types of another list behind the own ones. \param source  not this list.
    /// \return E_OUTOFMEMORY: both lists are as before.
    [[nodiscard]] HRESULT Append(CMediaTypeList& source);

    /// Makes the list the types that a peer's enumerator walks over, from its start.
    /// \return E_INVALIDARG for null; E_FAIL when the walk gave a null type; E_OUTOFMEMORY; E_UNEXPECTED when the
    ///         enumerator faulted; else with what the walk ended, if that was not its end. Where it is not S_OK, the
    ///         list is empty.
    [[nodiscard]] HRESULT LoadFromEnum(IEnumMediaTypes* pEnum);

    /// Puts the types that a peer's pin offers behind the own ones. A walk that falls out of step with the pin starts
    /// over, sixteen times at most.
    /// \param pPin  not null.
    /// \return S_OK; S_FALSE when there are none; else a failure as `LoadFromEnum` has it, or the pin's own; E_FAIL
    ///         for any other success. Where it is not S_OK, the list is as before.
    [[nodiscard]] HRESULT LoadFromPin(IPin* pPin);

    /// Frees all types and keeps the array.
    void Clear();

    [[nodiscard]] std::span<const AM_MEDIA_TYPE> Types() const { return {m_Types.get(), m_nCount}; }
    /// Types that the array has room for.
    [[nodiscard]] std::size_t Capacity() const { return m_nCapacity; }

private:
    HRESULT AddNextOf(IEnumMediaTypes* pEnum);
    HRESULT Grow(std::size_t nCapacity);

    std::unique_ptr<AM_MEDIA_TYPE[]> m_Types;
    std::size_t m_nCount = 0;
    std::size_t m_nCapacity = 0;
};

} // namespace vellumcaster
