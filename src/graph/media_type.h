#pragma once

#include "platform/media/media_type.h"

#include <vellumcaster/results.h>

#include <memory>
#include <utility>

namespace vellumcaster {

/// A format block that says it is larger than this is taken for a lie: nothing is allocated for it.
inline constexpr std::size_t cbLargestFormat = std::size_t{1} << 24;

// The life of a media type. A value record belongs to the object that holds it; a heap record is a block of task
// memory that may be handed over an interface. Both own their format block and one reference on `pUnk`.

/// Makes a record of the two ids, without a format. What it owned before is not freed.
void MT_Init(AM_MEDIA_TYPE& mt, const GUID& major, const GUID& subtype);

/// Frees the format block and releases `pUnk`. The other fields stay, `cbFormat` included.
void MT_Free(AM_MEDIA_TYPE& mt);

/// `MT_Free`, and a record of no type afterwards.
void MT_Clear(AM_MEDIA_TYPE& mt);

/// Makes a record with a format block of `cb` bytes. \param pSource  what it is filled with; null: zeros.
/// \return E_OUTOFMEMORY; E_UNEXPECTED where `pSource` cannot be read. Both leave the record untouched.
[[nodiscard]] HRESULT MT_Set(AM_MEDIA_TYPE& mt, const GUID& major, const GUID& subtype, const GUID& format,
                             std::size_t cb, const void* pSource);

/// Copies the format block; null for an empty one.
/// \param ppb  receives a block of task memory that the caller frees.
/// \return E_INVALIDARG for no record; E_POINTER for a null `ppb`; E_UNEXPECTED for a record with a size and no
///         block, a block and no size, or a block that is shorter than its size; E_OUTOFMEMORY.
[[nodiscard]] HRESULT MT_CloneFormat(const AM_MEDIA_TYPE* pmt, BYTE** ppb);

/// Makes `dst` a copy of `*pSrc`, which may be the same record; null clears it.
/// \return as `MT_CloneFormat`; a failure leaves `dst` unchanged.
[[nodiscard]] HRESULT MT_Assign(AM_MEDIA_TYPE& dst, const AM_MEDIA_TYPE* pSrc);

/// `MT_Assign` to a record that owns nothing yet, whatever stands in it. \return E_INVALIDARG for no record.
[[nodiscard]] HRESULT MT_Copy(AM_MEDIA_TYPE* pDst, const AM_MEDIA_TYPE* pSrc);

/// A heap record that is a copy, for `MT_Delete`.
/// \return null for null, when memory is short, and for what `MT_CloneFormat` refuses.
[[nodiscard]] AM_MEDIA_TYPE* MT_Clone(const AM_MEDIA_TYPE* pSrc);

/// Ends a heap record; null is allowed.
void MT_Delete(AM_MEDIA_TYPE* pmt);

struct CMediaTypeDeleter {
    void operator()(AM_MEDIA_TYPE* pmt) const { MT_Delete(pmt); }
};
/// Owns a heap record, or none.
using CMediaTypePtr = std::unique_ptr<AM_MEDIA_TYPE, CMediaTypeDeleter>;

/// Owns a value record.
class CMediaTypeHolder {
public:
    CMediaTypeHolder() = default;
    CMediaTypeHolder(const CMediaTypeHolder&) = delete;
    CMediaTypeHolder& operator=(const CMediaTypeHolder&) = delete;
    ~CMediaTypeHolder() { MT_Free(m_mt); }

    /// `MT_Assign`.
    [[nodiscard]] HRESULT Assign(const AM_MEDIA_TYPE* pmt) { return MT_Assign(m_mt, pmt); }
    [[nodiscard]] const AM_MEDIA_TYPE* Get() const { return &m_mt; }
    [[nodiscard]] AM_MEDIA_TYPE* Get() { return &m_mt; }
    /// Where a call may put a record that it copies; what was owned is freed.
    [[nodiscard]] AM_MEDIA_TYPE* Put() {
        MT_Clear(m_mt);
        return &m_mt;
    }
    void Clear() { MT_Clear(m_mt); }
    void Swap(CMediaTypeHolder& other) { std::swap(m_mt, other.m_mt); }

private:
    AM_MEDIA_TYPE m_mt;
};

} // namespace vellumcaster
