#include "platform/kernel/x87_state.h"

#include <array>
#include <cstdint>

namespace vellumcaster {

bool IsX87InUse() {
#if defined(__x86_64__) || defined(__i386__)
    // The environment in its 28-byte form; its third word is the tag word, two bits a register, 3 for an empty one.
    std::array<std::uint32_t, 7> environment;
    // The store masks all exceptions, the load puts the former mask back.
    asm volatile("fnstenv %0\n\tfldenv %0" : "+m"(environment));
    return (environment[2] & 0xFFFF) != 0xFFFF;
#else
    return false;
#endif
}

} // namespace vellumcaster
