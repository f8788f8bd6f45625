// A stack is saved, loaded again, and changed from another thread while frames flow.
//   saved_stack STACK

#include <vellumcaster/overlay.h>

#include <cstdio>
#include <exception>
#include <future>
#include <stdexcept>
#include <vector>

namespace {
constexpr int width = 640, height = 360, frames = 500, changes = 500;

vellumcaster::FrameFormat Format() {
    vellumcaster::FrameFormat format;
    format.dwFormat = vellumcaster::eI420;
    format.nWidth = width;
    format.nHeight = height;
    format.avgTimePerFrame = 400000;
    return format;
}

void SaveStack(const char* path) {
    vellumcaster::Overlay overlay(Format());
    vellumcaster::TextOptions look;
    look.outlineWidth = 2;
    look.x = 40;
    look.y = 40;
    overlay.AddTimecode(look);
    look.y = 300;
    overlay.AddText(u"Live", look).SetMovement(4, 0, false);
    overlay.Save(path);
}

/// What another part of an application does to the stack meanwhile.
void Change(vellumcaster::Overlay overlay) {
    vellumcaster::TextOptions look;
    look.x = 400;
    for (int n = 0; n < changes; ++n) {
        vellumcaster::Item note = overlay.AddText(u"Note", look);
        note.MoveTo(400, n % height);
        note.SetAlpha(static_cast<std::int16_t>(n % 256));
        note.Remove();
    }
}
} // namespace

int main(int argc, char** argv) try {
    if (argc != 2) throw std::invalid_argument("usage: saved_stack STACK");
    SaveStack(argv[1]);

    vellumcaster::Overlay overlay(Format());
    overlay.Load(argv[1]);
    const std::vector<vellumcaster::Item> items = overlay.Items();

    overlay.Start();
    std::future<void> other = std::async(std::launch::async, Change, overlay);
    std::vector<vellumcaster::BYTE> frame(std::size_t{width} * height * 3 / 2);
    for (int n = 0; n < frames; ++n) {
        frame.assign(frame.size(), 96);
        overlay.Mix(frame.data(), frame.size());
    }
    other.get();
    overlay.Stop();

    std::printf("%zu items were loaded, %d are left\n", items.size(), static_cast<int>(overlay.Count()));
    const vellumcaster::OVERLAY_PROPS moved = items.back().Props();
    std::printf("the last one went from 40 to %d\n", static_cast<int>(moved.nPosX));
} catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
}
