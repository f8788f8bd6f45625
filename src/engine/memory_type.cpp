#include "engine/memory_type.h"

#include "platform/kernel/counters.h"
#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"

#include <algorithm>
#include <cstring>

namespace vellumcaster {

namespace {

constexpr LONG cbMeasured = 102400;
constexpr std::int64_t unitsPerSecond = 10'000'000;

/// What a step takes, in units of 100 ns.
template <class Step>
std::int64_t Measure(const Step& step) {
    const LONGLONG before = QueryPerformanceCounter();
    step();
    return (QueryPerformanceCounter() - before) * unitsPerSecond / QueryPerformanceFrequency();
}

[[maybe_unused]] const char* LabelOf(MemoryType type) {
    switch (type) {
    case MemoryType::Video: return "VIDEO";
    case MemoryType::System: return "SYSTEM";
    default: return "SHOULD BE REPEATED";
    }
}

} // namespace

MemoryType ClassifyMemory(const MemoryTimes& times) {
    constexpr std::int64_t tSlowRead = 100'000;
    if (times.tRead > 2 * times.tWrite) return MemoryType::Video;
    return times.tRead < tSlowRead ? MemoryType::System : MemoryType::Unknown;
}

MemoryType DetectMemoryType(BYTE* pBuffer, LONG cbBuffer) {
    if (cbBuffer <= 0) return MemoryType::Unknown;
    const auto nWords = static_cast<std::size_t>(std::min(cbBuffer, cbMeasured)) / sizeof(DWORD);
    if (nWords == 0) return MemoryType::System; // nothing that could be read slowly
    volatile auto* pWords = reinterpret_cast<volatile DWORD*>(pBuffer);
    MemoryTimes times;
    const FaultCode fault = CallGuarded([&] {
        times.tRead = Measure([&] {
            for (std::size_t i = 0; i < nWords; ++i)
                static_cast<void>(pWords[i]);
        });
        times.tWrite = Measure([&] {
            for (std::size_t i = 0; i < nWords; ++i)
                pWords[i] = 0;
        });
    });
    if (fault != faultNone) return MemoryType::Unknown;
    const MemoryType type = ClassifyMemory(times);
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                      "[MEMORY DETECT] Write: %i.%04i ms  Read: %i.%04i ms : %s\n",
                      static_cast<LONG>(times.tWrite / 10000), static_cast<LONG>(times.tWrite % 10000),
                      static_cast<LONG>(times.tRead / 10000), static_cast<LONG>(times.tRead % 10000), LabelOf(type));
    return type;
}

} // namespace vellumcaster
