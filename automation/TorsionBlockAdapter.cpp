#include <memory>

#include "DispatchObject.h"
#include "Out.h"
#include "ProfileAdapters.h"
#include "Quantities.h"
#include "Variants.h"
#include "profiles/FlexuralShear.h"
#include "profiles/SaintVenantTorsion.h"

namespace tgp::automation {
namespace {

// What a TorsionBlock holds: the solution, once Init has made one.
struct TorsionState {
    std::unique_ptr<SaintVenantTorsion> solution;
    std::unique_ptr<FlexuralShear> shear;
};

class TorsionBlockAdapter final : public DispatchObject<::_TorsionBlock, ::TorsionBlock, TorsionState> {
  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE Init(IDispatch* Section, VARIANT Accuracy, VARIANT Poisson) override {
        return Run([&] {
            std::shared_ptr<tgp::Loop7s> section = NativeOf<tgp::Loop7s>(Section);
            if (!section) {
                section = tgp::Loop7s::Create();
                section->Add(RequiredNative<tgp::Loop7>(Section));
            }
            const double accuracy = IsMissing(Accuracy) ? 1e-6 : ToDouble(Accuracy);
            const double poisson = IsMissing(Poisson) ? FlexuralShear::kDefaultPoisson : ToDouble(Poisson);
            // Accuracy in (0, 1); Poisson's ratio where an isotropic material has it, (-1, 0.5].
            if (!(accuracy > 0 && accuracy < 1) || !(poisson > -1 && poisson <= 0.5))
                throw Error::InvalidProcedureCall();
            auto solution = std::make_unique<SaintVenantTorsion>(*section, accuracy);
            native().shear = std::make_unique<FlexuralShear>(*solution, poisson);
            native().solution = std::move(solution);
        });
    }
    HRESULT STDMETHODCALLTYPE get_TorsionConstant(::_DMomentOfInertia** result) override {
        return Run([&] {
            Check(Wrap(FromMillimetres<tgp::DMomentOfInertia>(Solution().TorsionConstant()), &Out(result)));
        });
    }
    HRESULT STDMETHODCALLTYPE get_WarpingConstant(double* result) override {
        return Run([&] { Out(result) = Solution().WarpingConstant(); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearCentreX(::_DLength** result) override {
        return Run(
            [&] { Check(Wrap(FromMillimetres<tgp::DLength>(Solution().ShearCentre().x), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearCentreY(::_DLength** result) override {
        return Run(
            [&] { Check(Wrap(FromMillimetres<tgp::DLength>(Solution().ShearCentre().y), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_TorsionalModulus(::_DVolume** result) override {
        return Run(
            [&] { Check(Wrap(FromMillimetres<tgp::DVolume>(Solution().TorsionalModulus()), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_MaximumShearStress(double* result) override {
        return Run([&] { Out(result) = Solution().MaximumShearStress(); });
    }
    HRESULT STDMETHODCALLTYPE get_MaximumShearStressAt(VARIANT* result) override {
        return Run([&] {
            const Point3 at = Solution().MaximumShearStressAt();
            SetDoubleArray(&Out(result), {at.x, at.y, at.z});
        });
    }
    HRESULT STDMETHODCALLTYPE get_ErrorEstimate(double* result) override {
        return Run([&] { Out(result) = Solution().ErrorEstimate(); });
    }
    HRESULT STDMETHODCALLTYPE get_Monosymmetry1(::_DLength** result) override {
        return Run([&] {
            Check(
                Wrap(FromMillimetres<tgp::DLength>(Solution().MonosymmetryConstants().major), &Out(result)));
        });
    }
    HRESULT STDMETHODCALLTYPE get_Monosymmetry2(::_DLength** result) override {
        return Run([&] {
            Check(
                Wrap(FromMillimetres<tgp::DLength>(Solution().MonosymmetryConstants().minor), &Out(result)));
        });
    }
    HRESULT STDMETHODCALLTYPE get_Poisson(double* result) override {
        return Run([&] { Out(result) = Shear().Poisson(); });
    }
    HRESULT STDMETHODCALLTYPE get_ElasticShearCentreX(::_DLength** result) override {
        return Run(
            [&] { Check(Wrap(FromMillimetres<tgp::DLength>(Shear().ShearCentre().x), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ElasticShearCentreY(::_DLength** result) override {
        return Run(
            [&] { Check(Wrap(FromMillimetres<tgp::DLength>(Shear().ShearCentre().y), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearAreaX(::_DArea** result) override {
        return Run([&] { Check(Wrap(FromMillimetres<tgp::DArea>(Shear().ShearAreaX()), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearAreaY(::_DArea** result) override {
        return Run([&] { Check(Wrap(FromMillimetres<tgp::DArea>(Shear().ShearAreaY()), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearArea1(::_DArea** result) override {
        return Run([&] { Check(Wrap(FromMillimetres<tgp::DArea>(Shear().ShearArea1()), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearArea2(::_DArea** result) override {
        return Run([&] { Check(Wrap(FromMillimetres<tgp::DArea>(Shear().ShearArea2()), &Out(result))); });
    }

  private:
    // Before Init there is nothing to read: the library's error says so.
    const SaintVenantTorsion& Solution() {
        if (!native().solution)
            ThrowLibraryError("TorsionBlock: no section yet: call Init with a Loop7 or a Loop7s");
        return *native().solution;
    }
    const FlexuralShear& Shear() {
        Solution();
        return *native().shear;
    }
};

}  // namespace

HRESULT CreateTorsionBlock(REFIID iid, void** result) {
    return TorsionBlockAdapter::CreateInstance<TorsionBlockAdapter>(std::make_shared<TorsionState>(), iid,
                                                                    result);
}

}  // namespace tgp::automation
