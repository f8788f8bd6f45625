#pragma once

#include "image/blob_holder.h"
#include "image/plane_layout.h"
#include "platform/com/no_exceptions.h"
#include "platform/kernel/critical_section.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace vellumcaster {

/// Room for one frame in ordinary memory, whatever its format: 4 bytes for each pixel of a row's stride or width,
/// whichever is more. Any thread; a frame that is under way keeps the room that it has while a larger one is made.
class CExtraBuffer {
public:
    /// Empty where there was no memory.
    [[nodiscard]] std::shared_ptr<CVirtualBlob> Get() const {
        CAutoLock lock(m_cs);
        return m_sp;
    }

    void SizeFor(const PictureFormat& pf) {
        const std::uint64_t nRowPixels = std::max<std::uint64_t>(EffectiveStride(pf), static_cast<DWORD>(pf.nWidth));
        const std::uint64_t cb = nRowPixels * static_cast<std::uint64_t>(RowCount(pf)) * 4;
        if (Get()->Size() == cb) return;
        std::shared_ptr<CVirtualBlob> sp = m_spNone;
        static_cast<void>(WithoutExceptions([&] {
            sp = std::make_shared<CVirtualBlob>();
            return sp->Resize(cb);
        }));
        CAutoLock lock(m_cs);
        std::swap(m_sp, sp);
    }

private:
    const std::shared_ptr<CVirtualBlob> m_spNone = std::make_shared<CVirtualBlob>();
    mutable CCriticalSection m_cs;
    std::shared_ptr<CVirtualBlob> m_sp = m_spNone;
};

} // namespace vellumcaster
