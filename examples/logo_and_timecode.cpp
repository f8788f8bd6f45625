// Puts a logo and a timecode on a frame in memory, and writes the second of two frames as a PPM picture.
//   logo_and_timecode OUTPUT.ppm [LOGO.bmp]

#include <vellumcaster/overlay.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {
constexpr int width = 640, height = 360;

using Frame = std::vector<vellumcaster::BYTE>;

/// A yellow square in a frame of black.
vellumcaster::Item AddOwnLogo(vellumcaster::Overlay& overlay) {
    constexpr int side = 64;
    Frame pixels;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const bool inside = x >= 8 && x < side - 8 && y >= 8 && y < side - 8;
            const auto level = static_cast<vellumcaster::BYTE>(inside ? 230 : 0);
            pixels.insert(pixels.end(), {0, level, level, 255});
        }
    vellumcaster::ImageInfoTag info;
    info.biWidth = side;
    info.biHeight = -side;
    info.biBitCount = 32;
    info.biSizeImage = static_cast<vellumcaster::DWORD>(pixels.size());
    return overlay.AddPicture(info, pixels.data());
}

bool WritePicture(const char* path, const Frame& frame) {
    std::ofstream file(path, std::ios::binary);
    file << "P6\n" << width << ' ' << height << "\n255\n";
    for (std::size_t i = 0; i < frame.size(); i += 4)
        for (std::size_t channel : {2U, 1U, 0U})
            file.put(static_cast<char>(frame[i + channel]));
    return static_cast<bool>(file.flush());
}

} // namespace

int main(int argc, char** argv) try {
    if (argc < 2) throw std::invalid_argument("usage: logo_and_timecode OUTPUT.ppm [LOGO.bmp]");
    vellumcaster::FrameFormat format;
    format.dwFormat = vellumcaster::eRGB32;
    format.nWidth = width;
    format.nHeight = -height;
    format.avgTimePerFrame = 400000;
    vellumcaster::Overlay overlay(format);

    vellumcaster::Item logo = argc > 2 ? overlay.AddPicture(argv[2]) : AddOwnLogo(overlay);
    logo.MoveTo(40, 40);
    logo.Show();

    vellumcaster::TextOptions look;
    look.height = 48;
    look.outlineWidth = 2;
    look.x = 40;
    look.y = 280;
    overlay.AddTimecode(look);

    overlay.Start();
    Frame frame;
    for (int n = 0; n < 2; ++n) {
        frame.assign(std::size_t{width} * height * 4, 96);
        overlay.Mix(frame.data(), frame.size());
    }
    overlay.Stop();
    if (!WritePicture(argv[1], frame)) throw std::runtime_error(std::string(argv[1]) + " cannot be written");
} catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
}
