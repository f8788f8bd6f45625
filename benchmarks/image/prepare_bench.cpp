#include "image/format_names.h"
#include "image/layer_planes.h"
#include "image/picture_format.h"
#include "image/prepare_layer.h"
#include "support/random_bytes.h"
#include "support/ratio_table.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace vellumcaster::bench {

namespace {

using namespace format_code;

constexpr SIZE size{1920, 1080};

/// A picture and the layer that is made of it.
struct Scene {
    CTaskBlob picture;
    CTaskBlob copy;
    OverlayLayer layer;

    Scene() {
        const std::size_t cb = PictureBytes(size);
        if (FAILED(picture.Resize(cb)) || FAILED(copy.Alloc(cb, true))) std::abort();
        testing_support::FillRandom({picture.Data(), cb}, 1);
    }

    void Prepare(std::uint32_t dwFormat, LONG nColorKeyMin, LONG nColorKeyMax) {
        OVERLAY_PROPS props;
        props.sAlphaValue = 200;
        props.nColorKeyMin = nColorKeyMin;
        props.nColorKeyMax = nColorKeyMax;
        if (PrepareImage2(picture, size, dwFormat, props, layer) != S_OK) std::abort();
    }
};

struct Key {
    const char* pszName;
    LONG min;
    LONG max;
};

constexpr Key keys[] = {
    {"no_key", -1, -1},
    {"top_left", -1, 0},
    {"soft_key", 0, static_cast<LONG>(0xFF404040)},
};

/// What preparing a full picture may take, as a rival.
void PassTwoMilliseconds() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(2);
    while (std::chrono::steady_clock::now() < end) {
    }
}

std::vector<RatioLine> AddPreparations() {
    std::vector<RatioLine> lines;
    const auto spScene = std::make_shared<Scene>();
    for (const std::uint32_t dwFormat : {RGB32, RGB24, YUY2, YVYU, UYVY, YV12, I420})
        for (const Key& key : keys) {
            const std::string row = std::string(CPictureFormats::NameFromFormat(dwFormat)) + "_" + key.pszName;
            AddBenchmark(row, "ours", [=] { spScene->Prepare(dwFormat, key.min, key.max); });
            AddBenchmark(row, "copy", [=] {
                std::memcpy(spScene->copy.Data(), spScene->picture.Data(), spScene->copy.Size());
                benchmark::ClobberMemory();
            });
            AddBenchmark(row, "2ms", PassTwoMilliseconds);
            lines.push_back({row, "ours", "copy", std::nullopt});
            lines.push_back({row, "ours", "2ms", 1.0});
        }
    return lines;
}

} // namespace

} // namespace vellumcaster::bench

int main(int argc, char** argv) {
    using namespace vellumcaster::bench;
    return RunAndPrintTable(argc, argv, AddPreparations());
}
