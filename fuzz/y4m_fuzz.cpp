#include "host/refusal.h"
#include "host/y4m_reader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

using namespace vellumcaster;

namespace {

constexpr std::size_t cbLargestFrame = std::size_t{16} << 20;

void ReadWholeClip(const std::string& path) {
    CByteSource source(path);
    CY4mReader reader(source);
    const std::size_t cbFrame = FrameSize(reader.Header());
    if (cbFrame > cbLargestFrame) return;
    std::vector<std::uint8_t> frame(cbFrame);
    std::string line;
    while (reader.ReadFrame(line, frame)) {
    }
}

} // namespace

/// The bytes as a clip, from its header to its last frame.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    const int fd = memfd_create("clip", MFD_CLOEXEC);
    if (fd < 0) return 0;
    if (write(fd, pData, cb) == static_cast<ssize_t>(cb) && lseek(fd, 0, SEEK_SET) == 0) {
        try {
            ReadWholeClip("/proc/self/fd/" + std::to_string(fd));
        } catch (const Refusal&) {
        }
    }
    close(fd);
    return 0;
}
