#pragma once

#include <atomic>

#include "ClassTable.h"

namespace tgp::automation {

// The class object DllGetClassObject hands out for one class.
class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const ClassEntry& entry);
    ~ClassFactory();
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** result) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

private:
    const ClassEntry& entry_;
    std::atomic<long> references_{1};
};

}  // namespace tgp::automation
