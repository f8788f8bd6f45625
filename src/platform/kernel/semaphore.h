#pragma once

#include <semaphore.h>

namespace vellumcaster {

/// A counter that threads wait on to be above 0. Any thread may use it.
class CSemaphore {
public:
    CSemaphore() : m_bMade(sem_init(&m_Semaphore, 0, 0) == 0) {}
    CSemaphore(const CSemaphore&) = delete;
    CSemaphore& operator=(const CSemaphore&) = delete;
    ~CSemaphore() {
        if (m_bMade) sem_destroy(&m_Semaphore);
    }

    /// Whether the system had one to give; without, nothing else may be called.
    [[nodiscard]] bool IsMade() const { return m_bMade; }

    /// Lets `n` waits end.
    void Release(int n) {
        while (n-- > 0)
            sem_post(&m_Semaphore);
    }

    /// Waits without limit.
    void Wait() {
        while (sem_wait(&m_Semaphore) != 0) {
            // A signal's handler ran; the wait goes on.
        }
    }

private:
    sem_t m_Semaphore{};
    bool m_bMade;
};

} // namespace vellumcaster
