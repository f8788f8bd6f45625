#include "image/resample_kernel.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>
#include <numbers>

namespace vellumcaster {

namespace {

using std::numbers::pi;

double Adjusted(double support, const ResampleParams& params) {
    switch (params.nAdjust) {
    case adjustNarrow: return support * 0.66;
    case adjustWide: return support * 1.5;
    case adjustByValue: return support * params.nAdjustValue / 256.0;
    default: return support;
    }
}

double Sinc(double x) { return x == 0.0 ? 1.0 : std::sin(pi * x) / (pi * x); }

template <class Kernel>
std::unique_ptr<ResampleKernel> Make(const ResampleParams& params) {
    return std::unique_ptr<ResampleKernel>(new (std::nothrow) Kernel(params));
}

constexpr struct {
    std::int32_t nKernel;
    std::unique_ptr<ResampleKernel> (*pfnMake)(const ResampleParams& params);
} kernels[] = {
    {kernelBox, Make<KernelBox>},           {kernelTriangle, Make<KernelTriangle>},
    {kernelBlackman, Make<KernelBlackman>}, {kernelHammingSinc, Make<KernelHammingSinc>},
    {kernelGaussian, Make<KernelGaussian>},
};

} // namespace

ResampleKernel::ResampleKernel(double support, const ResampleParams& params) : dblSupport(Adjusted(support, params)) {}

double KernelBox::Eval(double x) const { return x <= dblSupport ? 1.0 : 0.0; }

double KernelTriangle::Eval(double x) const { return x < dblSupport ? dblSupport - x : 0.0; }

double KernelBlackman::Eval(double x) const {
    if (x > dblSupport) return 0.0;
    const double n = 2 * dblSupport * 10 + 1;
    const double a = (10 * x + dblSupport) / (n - 1);
    return 0.42 + 0.5 * std::cos(2 * pi * a) + 0.08 * std::cos(4 * pi * a);
}

double KernelHammingSinc::Eval(double x) const {
    return x <= dblSupport ? (0.54 + 0.46 * std::cos(2 * pi * x)) * Sinc(x) : 0.0;
}

double KernelGaussian::Eval(double x) const {
    if (x > dblSupport) return 0.0;
    return std::exp(-x * x / (2 * dblSigma * dblSigma)) / (std::sqrt(2 * pi) * dblSigma);
}

bool KernelHolder::Holds(const ResampleParams& params) const {
    return m_spKernel && m_Params.nKernel == params.nKernel && m_Params.nAdjust == params.nAdjust &&
           (params.nAdjust != adjustByValue || m_Params.nAdjustValue == params.nAdjustValue);
}

HRESULT KernelHolder::Select(const ResampleParams& params) {
    if (Holds(params)) return S_FALSE;
    const auto* row = std::find_if(std::begin(kernels), std::end(kernels),
                                   [&](const auto& kernel) { return kernel.nKernel == params.nKernel; });
    if (row == std::end(kernels)) return E_INVALIDARG;
    m_spKernel = row->pfnMake(params);
    m_Params = params;
    return m_spKernel ? S_OK : E_OUTOFMEMORY;
}

} // namespace vellumcaster
