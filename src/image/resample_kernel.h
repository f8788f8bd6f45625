#pragma once

#include <vellumcaster/results.h>

#include <memory>

namespace vellumcaster {

/// `nKernel` of `ResampleParams`.
enum ResampleKernelId : std::int32_t {
    kernelBox = 0,
    kernelTriangle = 64,
    kernelBlackman = 65,
    kernelHammingSinc = 66,
    kernelGaussian = 67
};

/// `nAdjust` of `ResampleParams`; any other value leaves the kernel's reach as it is.
enum ResampleAdjust : std::int32_t {
    adjustNarrow = 1,  ///< times 0.66
    adjustWide = 2,    ///< times 1.5
    adjustByValue = 3, ///< times `nAdjustValue` / 256
};

/// What selects a kernel.
struct ResampleParams {
    std::int32_t nKernel = kernelBox;
    std::int32_t nAdjust = 0;
    std::int32_t nAdjustValue = 0;
};

/// How much a source sample counts by its distance from the place of a target sample.
///
///     1 |__        box        1 |\        triangle    0.9 |-_       Gaussian
///       |  |                    | \                       |  -_
///     0 +--+----              0 +--+----                0 +----+---
///          0.5                     1.0                         1.0
class ResampleKernel {
public:
    ResampleKernel(const ResampleKernel&) = delete;
    ResampleKernel& operator=(const ResampleKernel&) = delete;
    virtual ~ResampleKernel() = default;

    /// \param x  distance in source samples, not negative. \return the weight; 0 beyond `dblSupport`.
    [[nodiscard]] virtual double Eval(double x) const = 0;

    const double dblSupport; ///< how far the kernel reaches to each side, in source samples, adjustment included

protected:
    ResampleKernel(double support, const ResampleParams& params);
};

class KernelBox final : public ResampleKernel {
public:
    explicit KernelBox(const ResampleParams& params) : ResampleKernel(0.5, params) {}
    [[nodiscard]] double Eval(double x) const override;
};

class KernelTriangle final : public ResampleKernel {
public:
    explicit KernelTriangle(const ResampleParams& params) : ResampleKernel(1.0, params) {}
    [[nodiscard]] double Eval(double x) const override;
};

/// The falling half of a Blackman window whose peak lies a little beside x = 0.
class KernelBlackman final : public ResampleKernel {
public:
    explicit KernelBlackman(const ResampleParams& params) : ResampleKernel(1.3, params) {}
    [[nodiscard]] double Eval(double x) const override;
};

class KernelHammingSinc final : public ResampleKernel {
public:
    explicit KernelHammingSinc(const ResampleParams& params) : ResampleKernel(1.0, params) {}
    [[nodiscard]] double Eval(double x) const override;
};

class KernelGaussian final : public ResampleKernel {
public:
    explicit KernelGaussian(const ResampleParams& params) : ResampleKernel(1.0, params) {}
    [[nodiscard]] double Eval(double x) const override;

    const double dblSigma = 0.44;
};

/// Keeps the kernel that was selected last, so that a table knows whether it still fits.
class KernelHolder {
public:
    /// \return S_OK for a new kernel; S_FALSE when the one that is held is the same, which stays; E_INVALIDARG for an
    ///         unknown `nKernel`, and the held one stays; E_OUTOFMEMORY, and none is held.
    [[nodiscard]] HRESULT Select(const ResampleParams& params);

    /// As `ResampleKernel::Eval`; 1.0 for every distance when no kernel is held.
    [[nodiscard]] double Eval(double x) const { return m_spKernel ? m_spKernel->Eval(x) : 1.0; }
    /// `dblSupport`; 0 when no kernel is held.
    [[nodiscard]] double Support() const { return m_spKernel ? m_spKernel->dblSupport : 0.0; }

private:
    [[nodiscard]] bool Holds(const ResampleParams& params) const;

    std::unique_ptr<ResampleKernel> m_spKernel;
    ResampleParams m_Params;
};

} // namespace vellumcaster
