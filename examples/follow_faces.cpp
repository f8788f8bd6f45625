// A callback moves an item after a face whose places stand in a text file, a line for each frame: frame x y w h. It says
// where the item's panel came to lie on each of those frames.
//   follow_faces TRACK.txt

#include <vellumcaster/overlay.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {
struct Box {
    int x, y, w, h;
};

std::map<int, Box> ReadTrack(const char* path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error(std::string(path) + " cannot be read");
    std::map<int, Box> track;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        std::istringstream words(line);
        int frame = 0;
        Box box{};
        std::string rest;
        if (!(words >> frame >> box.x >> box.y >> box.w >> box.h) || words >> rest || frame < 0)
            throw std::runtime_error(std::string(path) + ":" + std::to_string(number) +
                                     ": a line is \"frame x y w h\", all whole numbers");
        track[frame] = box;
    }
    if (track.empty()) throw std::runtime_error(std::string(path) + " holds no line");
    return track;
}
} // namespace

int main(int argc, char** argv) try {
    if (argc != 2) throw std::invalid_argument("usage: follow_faces TRACK.txt");
    const std::map<int, Box> track = ReadTrack(argv[1]);
    constexpr int width = 640, height = 360;
    vellumcaster::FrameFormat format;
    format.dwFormat = vellumcaster::eI420;
    format.nWidth = width;
    format.nHeight = height;
    vellumcaster::Overlay overlay(format);

    vellumcaster::TextOptions look;
    look.panel = {255, 255, 255, 255};
    vellumcaster::Item label = overlay.AddText("Ada", look);
    int frame = 0;
    label.SetCallback([&](vellumcaster::ItemFrame& item) {
        const auto box = track.find(frame);
        item.props.bShow = box != track.end();
        if (item.props.bShow) {
            item.props.nPosX = box->second.x;
            item.props.nPosY = box->second.y + box->second.h; // below the chin
        }
        return true;
    });

    overlay.Start();
    for (; frame <= track.rbegin()->first; ++frame) {
        std::vector<vellumcaster::BYTE> picture(std::size_t{width} * height * 3 / 2, 128);
        overlay.Mix(picture.data(), picture.size());
        const auto lit = std::find_if(picture.begin(), picture.end(), [](auto level) { return level > 200; });
        const auto place = static_cast<int>(lit - picture.begin());
        if (place < width * height) std::printf("frame %d: label at %d, %d\n", frame, place % width, place / width);
    }
    overlay.Stop();
} catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
}
