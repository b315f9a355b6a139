#pragma once

#include <atomic>

#include "ClassTable.h"

namespace tgp::automation {

// The class object DllGetClassObject hands out for one class: one per class for the life of the
// process (script hosts that ask for it on every CreateObject and never release it would otherwise
// leak one each time). While a caller holds a reference it keeps the DLL loaded like any object.
class ClassFactory final : public IClassFactory {
  public:
    // The class object of the entry, with a reference added for the caller.
    static HRESULT Get(const ClassEntry& entry, REFIID iid, void** result);

    explicit ClassFactory(const ClassEntry& entry) : entry_(entry) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** result) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

  private:
    const ClassEntry& entry_;
    std::atomic<long> references_{0};
};

}  // namespace tgp::automation
