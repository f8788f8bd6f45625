#include "image/mix_block.h"
#include "image/mix_kernel.h"
#include "image/mix_rivals.h"
#include "image/plane_layout.h"
#include "support/random_bytes.h"
#include "support/ratio_table.h"
#include "support/this_build.h"

#include <cstdio>
#include <cstring>
#include <memory>

namespace vellumcaster::bench {

namespace {

constexpr double slowestAgainstLibyuv = 1 / 0.97;
constexpr std::size_t cbShortRun = std::size_t{1} << 20;

struct SceneRow {
    const char* pszSuffix;
    MixCase mixCase;
    std::size_t nFrames;
    std::optional<double> wideGoal;     ///< against the limit, where compiled for AVX2
    std::optional<double> baselineGoal; ///< and elsewhere

    [[nodiscard]] std::optional<double> LimitGoal() const { return bWideBuild ? wideGoal : baselineGoal; }
};

constexpr SceneRow sceneRows[] = {
    {"_pool16", full1080p, 16, 1.20, 1.45},
    {"_cached", full1080p, 1, 1.25, std::nullopt},
    {"", full2160p, 1, 1.10, 1.15},
    {"", tenItems, 1, std::nullopt, std::nullopt},
};

struct GuardRow {
    const char* pszName;
    SIZE size; ///< bytes by rows
    double goal;
};

constexpr GuardRow guardRows[] = {
    {"guard_rows_of_1920", {1920, 120}, 1.02},
    {"guard_rows_of_480", {480, 120}, 1.05},
};

/// What is registered, and the lines that come of it.
class CMixBenchmarks {
public:
    CMixBenchmarks() {
        for (const SceneRow& row : sceneRows)
            AddScene(row);
        AddKernelRow();
        for (const GuardRow& row : guardRows)
            AddGuard(row);
    }

    [[nodiscard]] std::vector<RatioLine> TakeLines() { return std::move(m_Lines); }

private:
    template <class Run>
    void Register(const std::string& row, const char* pszWho, std::size_t cbRun, Run run) {
        auto* pBenchmark = benchmark::RegisterBenchmark((row + '/' + pszWho).c_str(), [=](benchmark::State& state) {
            for ([[maybe_unused]] auto _ : state)
                run();
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(cbRun));
        });
        // The guard's goals are a few percent: where a run is short, the same time goes into many more of them.
        if (cbRun < cbShortRun) pBenchmark->MinTime(0.005)->Repetitions(201);
    }

    void AddScene(const SceneRow& sceneRow) {
        const std::string row = std::string(sceneRow.mixCase.pszName) + sceneRow.pszSuffix;
        const auto spScene = std::make_shared<CMixScene>(sceneRow.mixCase, sceneRow.nFrames);
        std::size_t cb = 0;
        for (const RowBlock& block : spScene->Blocks())
            cb += block.cbRow * block.nRows;
        Register(row, "ours", cb, [=] { spScene->MixItems(spScene->NextFrame()); });
        Register(row, "limit", cb, [=] { MoveItems(*spScene, spScene->NextFrame()); });
        m_Lines.push_back({row, "ours", "limit", sceneRow.LimitGoal()});
#if defined(VELLUM_BENCH_LIBYUV)
        Register(row, "libyuv", cb, [=] { BlendItems(*spScene, spScene->NextFrame()); });
        m_Lines.push_back({row, "ours", "libyuv", slowestAgainstLibyuv});
#endif
    }

    void AddKernelRow() {
        const std::string row = "kernel_row_of_1920";
        const auto rows = MakeRows({1920, 1});
        using RowFunction = void (*)(BYTE*, const BYTE*, const BYTE*, std::size_t);
        const auto add = [&](const char* pszWho, RowFunction pRow) {
            Register(row, pszWho, 1920, [=] { pRow(rows->dst.Data(), rows->src.Data(), rows->w.Data(), 1920); });
        };
        add("ours", MixMemory);
        add("limit", MoveRow);
        m_Lines.push_back({row, "ours", "limit", std::nullopt});
#if defined(VELLUM_BENCH_LIBYUV)
        add("libyuv", BlendRow);
        m_Lines.push_back({row, "ours", "libyuv", slowestAgainstLibyuv});
#endif
    }

    void AddGuard(const GuardRow& guardRow) {
        const auto rows = MakeRows(guardRow.size);
        const SIZE size = guardRow.size;
        const auto cb = static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy);
        Register(guardRow.pszName, "guarded", cb,
                 [=] { MixRows(rows->src.Data(), rows->w.Data(), rows->dst.Data(), &size, 1, size.cx, size.cx); });
        Register(guardRow.pszName, "bare", cb, [=] {
            BYTE* pDst = rows->dst.Data();
            const BYTE* pSrc = rows->src.Data();
            const BYTE* pWeight = rows->w.Data();
            for (LONG y = 0; y < size.cy; ++y, pDst += size.cx, pSrc += size.cx, pWeight += size.cx) {
                const LONG pitch = y + 1 == size.cy ? 0 : size.cx;
                MixRow(pDst, pSrc, pWeight, static_cast<std::size_t>(size.cx), pitch, pitch);
            }
        });
        m_Lines.push_back({guardRow.pszName, "guarded", "bare", guardRow.goal});
    }

    struct Rows {
        CVirtualBlob dst;
        CVirtualBlob src;
        CVirtualBlob w;
    };

    static std::shared_ptr<Rows> MakeRows(const SIZE& size) {
        auto rows = std::make_shared<Rows>();
        std::uint64_t seed = 1;
        for (CVirtualBlob* pBlob : {&rows->dst, &rows->src, &rows->w}) {
            if (pBlob->Alloc(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy)) != S_OK)
                std::abort();
            testing_support::FillRandom({pBlob->Data(), pBlob->Size()}, seed++);
        }
        return rows;
    }

    std::vector<RatioLine> m_Lines;
};

#if defined(VELLUM_BENCH_LIBYUV)
/// A race between two that do different things would tell nothing.
bool GivesTheSameBytes(const MixCase& mixCase) {
    CMixScene ours(mixCase, 1);
    CMixScene theirs(mixCase, 1);
    BYTE* pOurs = ours.NextFrame();
    BYTE* pTheirs = theirs.NextFrame();
    ours.MixItems(pOurs);
    BlendItems(theirs, pTheirs);
    const bool bSame = std::memcmp(pOurs, pTheirs, CPictureFormats::GetBufferSize(mixCase.frame)) == 0;
    std::printf("%s: %s\n", mixCase.pszName, bSame ? "same bytes as libyuv" : "DIFFERS from libyuv");
    return bSame;
}
#endif

} // namespace

} // namespace vellumcaster::bench

int main(int argc, char** argv) {
    using namespace vellumcaster;
#if defined(VELLUM_BENCH_LIBYUV)
    bench::HoldLibyuvToThisBuild(true); // its blending knows nothing below
    for (const bench::MixCase& mixCase : bench::mixCases)
        if (!bench::GivesTheSameBytes(mixCase)) return 1;
#else
    std::puts("libyuv is not installed: no race against it");
#endif
    bench::CMixBenchmarks benchmarks;
    return bench::RunAndPrintTable(argc, argv, benchmarks.TakeLines());
}
