#include "host/graph/slow_allocator.h"

#include "graph/memory_allocator.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/unknown_impl.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <linux/userfaultfd.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#ifndef UFFD_USER_MODE_ONLY
#define UFFD_USER_MODE_ONLY 1 // of kernels younger than the headers
#endif

namespace vellumcaster {

namespace {

constexpr std::chrono::microseconds timeOfPage(200);

class CDescriptor {
public:
    explicit CDescriptor(int fd) : m_fd(fd) {}
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    ~CDescriptor() {
        if (m_fd >= 0) close(m_fd);
    }
    [[nodiscard]] int Get() const { return m_fd; }

private:
    int m_fd;
};

/// Whole pages of memory.
struct Pages {
    std::uintptr_t first = 0;
    std::size_t cb = 0;
};

/// Pages that are empty until they are touched, and come slowly. What was in them is lost. The memory outlives this.
class CSlowPages {
public:
    [[nodiscard]] static std::unique_ptr<CSlowPages> Serve(const Pages& pages) {
        std::unique_ptr<CSlowPages> sp(new CSlowPages);
        return sp->Begin(pages) ? std::move(sp) : nullptr;
    }
    CSlowPages(const CSlowPages&) = delete;
    CSlowPages& operator=(const CSlowPages&) = delete;
    ~CSlowPages() {
        if (!m_Thread.joinable()) return;
        static_cast<void>(eventfd_write(m_End.Get(), 1));
        m_Thread.join();
    }

private:
    CSlowPages() = default;

    bool Begin(const Pages& pages) {
        uffdio_api api{};
        api.api = UFFD_API;
        uffdio_register range{};
        range.range = {pages.first, pages.cb};
        range.mode = UFFDIO_REGISTER_MODE_MISSING;
        // Where one of the descriptors could not be had, these fail.
        if (m_End.Get() < 0 || ioctl(m_Faults.Get(), UFFDIO_API, &api) != 0) return false;
        auto* const pFirst = reinterpret_cast<void*>(pages.first); // NOLINT(performance-no-int-to-ptr)
        if (madvise(pFirst, pages.cb, MADV_DONTNEED) != 0) return false;
        if (ioctl(m_Faults.Get(), UFFDIO_REGISTER, &range) != 0) return false;
        m_Thread = std::thread([this] { BringPages(); });
        return true;
    }

    void BringPages() {
        std::array<pollfd, 2> waits{{{m_Faults.Get(), POLLIN, 0}, {m_End.Get(), POLLIN, 0}}};
        const auto cbPage = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
        const std::vector<std::uint8_t> empty(cbPage);
        while (poll(waits.data(), waits.size(), -1) >= 0 && waits[1].revents == 0) {
            uffd_msg message{};
            if (read(m_Faults.Get(), &message, sizeof message) != sizeof message) continue;
            std::this_thread::sleep_for(timeOfPage);
            uffdio_copy page{};
            page.dst = message.arg.pagefault.address & ~(cbPage - 1);
            page.src = reinterpret_cast<std::uintptr_t>(empty.data());
            page.len = cbPage;
            static_cast<void>(ioctl(m_Faults.Get(), UFFDIO_COPY, &page));
        }
    }

    const CDescriptor m_Faults{
        static_cast<int>(syscall(SYS_userfaultfd, O_CLOEXEC | O_NONBLOCK | UFFD_USER_MODE_ONLY))};
    const CDescriptor m_End{eventfd(0, EFD_CLOEXEC)};
    std::thread m_Thread;
};

/// The filter's own kind of allocator, with its memory made slow.
class CSlowAllocator final : public CUnknownImpl<IMemAllocator> {
public:
    explicit CSlowAllocator(CComPtr<CMemoryAllocator> sp) : m_sp(std::move(sp)) {}

    HRESULT SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) override {
        return m_sp->SetProperties(pRequest, pActual);
    }
    HRESULT GetProperties(ALLOCATOR_PROPERTIES* pProps) override { return m_sp->GetProperties(pProps); }
    HRESULT Commit() override {
        const HRESULT hr = m_sp->Commit();
        return hr == S_OK ? WithoutExceptions([this] { return MakeSlow(); }) : hr;
    }
    HRESULT Decommit() override { return m_sp->Decommit(); }
    HRESULT GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME* pStart, REFERENCE_TIME* pEnd, DWORD dwFlags) override {
        return m_sp->GetBuffer(ppBuffer, pStart, pEnd, dwFlags);
    }
    HRESULT ReleaseBuffer(IMediaSample* pBuffer) override { return m_sp->ReleaseBuffer(pBuffer); }

private:
    HRESULT MakeSlow() {
        m_spPages.reset(); // of an earlier commit, and perhaps of the same pages
        m_spPages = CSlowPages::Serve(PagesOfAllBuffers());
        return m_spPages ? S_OK : E_NOTIMPL;
    }

    /// The whole pages that the buffers lie in, from the first to the last of them.
    Pages PagesOfAllBuffers() {
        std::vector<CComPtr<IMediaSample>> samples;
        std::uintptr_t from = UINTPTR_MAX;
        std::uintptr_t to = 0;
        for (;;) {
            CComPtr<IMediaSample> spSample;
            BYTE* pData = nullptr;
            if (m_sp->GetBuffer(spSample.Put(), nullptr, nullptr, AM_GBF_NOWAIT) != S_OK) break;
            if (spSample->GetPointer(&pData) != S_OK) break;
            from = std::min(from, reinterpret_cast<std::uintptr_t>(pData));
            to = std::max(to, reinterpret_cast<std::uintptr_t>(pData) + static_cast<std::size_t>(spSample->GetSize()));
            samples.push_back(std::move(spSample));
        }
        const auto cbPage = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
        const std::uintptr_t first = (from + cbPage - 1) / cbPage * cbPage;
        const std::uintptr_t end = to / cbPage * cbPage;
        return {first, end > first ? end - first : 0};
    }

    CComPtr<CMemoryAllocator> m_sp;
    std::unique_ptr<CSlowPages> m_spPages;
};

} // namespace

HRESULT MakeSlowAllocator(CComPtr<IMemAllocator>& sp) {
    return WithoutExceptions([&] {
        CComPtr<CMemoryAllocator> spMemory;
        const HRESULT hr = CMemoryAllocator::Make(spMemory);
        if (hr == S_OK) sp = MakeCounted<CSlowAllocator>(std::move(spMemory)).Get();
        return hr;
    });
}

} // namespace vellumcaster
