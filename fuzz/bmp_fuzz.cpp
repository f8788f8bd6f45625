#include "picture_cases.h"

#include "image/bmp_headers.h"
#include "image/format_table.h"
#include "image/normalize_image.h"
#include "image/picture_persist.h"
#include "image/prepare_layer.h"
#include "platform/com/task_memory.h"

#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

using namespace vellumcaster;
using namespace vellumcaster::fuzzing;

namespace {

constexpr DWORD cbLargestPrepared = DWORD{1} << 20;

using CTaskPixels = std::unique_ptr<BYTE, decltype(&CoTaskMemFree)>;

/// A file that is mostly in order, for few bytes would ever make one by themselves.
std::vector<BYTE> MakeFile(FuzzedDataProvider& data) {
    BITMAPINFOHEADER info;
    info.biSize = cbBmpInfoHeader;
    info.biWidth = PickNumber(data, 1, 80);
    info.biHeight = PickNumber(data, -40, 40);
    info.biPlanes = 1;
    info.biBitCount = data.PickValueInArray<WORD>({24, 32, 32, 24, 16, 8});
    info.biCompression = data.ConsumeIntegralInRange(0, 7) == 0
                             ? PickCode(data)
                             : data.PickValueInArray<DWORD>({BI_RGB, BI_RGB, BI_BITFIELDS});
    BITMAPFILEHEADER file{bmpFileType, 0, cbBmpFileHeader + cbBmpInfoHeader};
    file.bfOffBits += data.ConsumeIntegralInRange<DWORD>(0, 20);

    BITMAPINFOHEADER corrected = info;
    const bool bUsable = CPicturePersist::TestAndCorrectBmpHeader(&corrected);
    const DWORD cbPixels = bUsable && corrected.biSizeImage <= cbLargestPrepared ? corrected.biSizeImage : 0;
    file.bfSize = data.ConsumeIntegralInRange(0, 7) == 0 ? data.ConsumeIntegral<DWORD>() : file.bfOffBits + cbPixels;
    const bool bWhole = data.ConsumeIntegralInRange(0, 7) != 0;

    std::vector<BYTE> bytes(cbBmpFileHeader + cbBmpInfoHeader);
    EncodeBmpHeader(file, std::span(bytes).first<cbBmpFileHeader>());
    EncodeBmpHeader(info, std::span(bytes).subspan<cbBmpFileHeader, cbBmpInfoHeader>());
    const auto rest = data.ConsumeRemainingBytes<BYTE>();
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    if (bWhole) bytes.resize(std::size_t{file.bfOffBits} + cbPixels);
    return bytes;
}

/// Loads the bytes as a file. \return whether they are one; null pixels otherwise.
bool Load(const std::vector<BYTE>& bytes, BITMAPINFOHEADER& header, CTaskPixels& spPixels) {
    const int fd = memfd_create("picture", MFD_CLOEXEC);
    if (fd < 0) return false;
    bool bLoaded = false;
    if (write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())) {
        void* pPixels = nullptr;
        const std::string path = "/proc/self/fd/" + std::to_string(fd);
        const HRESULT hr = CPicturePersist::LoadFromFile(path.c_str(), &header, &pPixels);
        spPixels.reset(static_cast<BYTE*>(pPixels));
        Demand(hr == S_OK || hr == E_FAIL);
        bLoaded = hr == S_OK;
        Demand(bLoaded == (pPixels != nullptr) && bLoaded == (header != BITMAPINFOHEADER{}));
    }
    close(fd);
    return bLoaded;
}

/// What is to become of a picture.
struct Wishes {
    SIZE size;
    OVERLAY_PROPS props;
    std::uint32_t code = 0;
};

/// A side of a picture: small, or one that only a check can have an opinion of.
LONG PickSide(FuzzedDataProvider& data) {
    if (data.ConsumeIntegralInRange(0, 7) != 0) return data.ConsumeIntegralInRange<LONG>(0, 80);
    return data.PickValueInArray<LONG>({INT32_MIN, -1, 32768, INT32_MAX});
}

Wishes PickWishes(FuzzedDataProvider& data) {
    Wishes wishes;
    wishes.size = {PickSide(data), PickSide(data)};
    wishes.props.sAlphaValue = data.ConsumeBool() ? std::int16_t{255} : data.ConsumeIntegral<std::int16_t>();
    wishes.props.nColorKeyMin = data.ConsumeBool() ? -1 : data.ConsumeIntegral<LONG>();
    wishes.props.nColorKeyMax = data.ConsumeBool() ? -1 : data.ConsumeIntegral<LONG>();
    wishes.code = PickCode(data);
    return wishes;
}

void Prepare(const CTaskBlob& picture, const SIZE& size, const Wishes& wishes) {
    OverlayLayer layer;
    const HRESULT hr = PrepareImage2(picture, size, wishes.code, wishes.props, layer);
    if (hr != S_OK || !layer.TakesPartInMixing()) return;
    const std::size_t cbPlane = CPictureFormats::GetBufferSize(OverlayFormat(wishes.code, size));
    Demand(layer.planeWeight.Size() == cbPlane && layer.planeColor.Size() >= cbPlane);
}

void NormalizeAndPrepare(const BITMAPINFOHEADER& header, const BYTE* pPixels, SIZE size, const Wishes& wishes) {
    ImageInfoTag info{header.biWidth, header.biHeight, header.biBitCount, header.biCompression, header.biSizeImage};
    CTaskBlob picture;
    if (FAILED(NormalizeImage(&info, pPixels, &size, &picture))) return;
    Demand(size.cx >= 0 && size.cy >= 0 && size.cx % 2 == 0 && size.cy % 2 == 0);
    Demand(picture.Size() >= std::size_t{4} * static_cast<DWORD>(size.cx) * static_cast<DWORD>(size.cy));
    Prepare(picture, size, wishes);
}

} // namespace

/// The bytes as a bitmap file, all the way from the file to the planes of a layer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t cb) {
    AbortAtFaults();
    FuzzedDataProvider data(pData, cb);
    const Wishes wishes = PickWishes(data);
    const bool bAsTheyAre = data.ConsumeBool();
    const std::vector<BYTE> file = bAsTheyAre ? data.ConsumeRemainingBytes<BYTE>() : MakeFile(data);

    BITMAPINFOHEADER header;
    CTaskPixels spPixels(nullptr, CoTaskMemFree);
    if (!Load(file, header, spPixels) || header.biSizeImage > cbLargestPrepared) return 0;
    NormalizeAndPrepare(header, spPixels.get(), {}, wishes);
    NormalizeAndPrepare(header, spPixels.get(), wishes.size, wishes);
    return 0;
}
