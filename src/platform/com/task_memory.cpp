#include "platform/com/task_memory.h"

#include <cstdlib>

namespace vellumcaster {

void* CoTaskMemAlloc(std::size_t cb) { return std::malloc(cb); }

void CoTaskMemFree(void* pv) { std::free(pv); }

} // namespace vellumcaster
