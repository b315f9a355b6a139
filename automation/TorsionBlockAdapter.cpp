#include <memory>

#include "DispatchObject.h"
#include "Out.h"
#include "ProfileAdapters.h"
#include "Quantities.h"
#include "Variants.h"
#include "profiles/SaintVenantTorsion.h"

namespace tgp::automation {
namespace {

// What a TorsionBlock holds: the solution, once Init has made one.
struct TorsionState {
    std::unique_ptr<SaintVenantTorsion> solution;
};

template <class Q>
std::shared_ptr<Q> InMillimetres(double value) {
    auto quantity = std::make_shared<Q>();
    quantity->Millimetres(value);
    return quantity;
}

class TorsionBlockAdapter final : public DispatchObject<::_TorsionBlock, ::TorsionBlock, TorsionState> {
  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE Init(IDispatch* Section, VARIANT Accuracy) override {
        return Run([&] {
            std::shared_ptr<tgp::Loop7s> section = NativeOf<tgp::Loop7s>(Section);
            if (!section) {
                section = tgp::Loop7s::Create();
                section->Add(RequiredNative<tgp::Loop7>(Section));
            }
            const double accuracy = IsMissing(Accuracy) ? 1e-6 : ToDouble(Accuracy);
            if (!(accuracy > 0 && accuracy < 1)) throw Error::InvalidProcedureCall();
            native().solution = std::make_unique<SaintVenantTorsion>(*section, accuracy);
        });
    }
    HRESULT STDMETHODCALLTYPE get_TorsionConstant(::_DMomentOfInertia** result) override {
        return Run([&] {
            Check(Wrap(InMillimetres<tgp::DMomentOfInertia>(Solution().TorsionConstant()), &Out(result)));
        });
    }
    HRESULT STDMETHODCALLTYPE get_WarpingConstant(double* result) override {
        return Run([&] { Out(result) = Solution().WarpingConstant(); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearCentreX(::_DLength** result) override {
        return Run(
            [&] { Check(Wrap(InMillimetres<tgp::DLength>(Solution().ShearCentre().x), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_ShearCentreY(::_DLength** result) override {
        return Run(
            [&] { Check(Wrap(InMillimetres<tgp::DLength>(Solution().ShearCentre().y), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_TorsionalModulus(::_DVolume** result) override {
        return Run(
            [&] { Check(Wrap(InMillimetres<tgp::DVolume>(Solution().TorsionalModulus()), &Out(result))); });
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

  private:
    // Before Init there is nothing to read: the library's error says so.
    const SaintVenantTorsion& Solution() {
        if (!native().solution)
            ThrowLibraryError("TorsionBlock: no section yet: call Init with a Loop7 or a Loop7s");
        return *native().solution;
    }
};

}  // namespace

HRESULT CreateTorsionBlock(REFIID iid, void** result) {
    return TorsionBlockAdapter::CreateInstance<TorsionBlockAdapter>(std::make_shared<TorsionState>(), iid,
                                                                    result);
}

}  // namespace tgp::automation
