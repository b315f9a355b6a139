#include "VariantEnumerator.h"

#include <atomic>
#include <memory>
#include <new>

#include "Server.h"

namespace tgp::automation {

namespace {

// The items are shared between an enumerator and its clones; each keeps its own position.
struct Items {
    std::vector<VARIANT> values;
    ~Items() {
        for (VARIANT& v : values) VariantClear(&v);
    }
};

class VariantEnumerator final : public IEnumVARIANT {
  public:
    VariantEnumerator(std::shared_ptr<Items> items, std::size_t position)
        : items_(std::move(items)), position_(position) {
        Server::ObjectCreated();
    }
    ~VariantEnumerator() { Server::ObjectDestroyed(); }
    VariantEnumerator(const VariantEnumerator&) = delete;
    VariantEnumerator& operator=(const VariantEnumerator&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        if (!result) return E_POINTER;
        *result =
            (iid == IID_IUnknown || iid == IID_IEnumVARIANT) ? static_cast<IEnumVARIANT*>(this) : nullptr;
        if (!*result) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
    ULONG STDMETHODCALLTYPE Release() override {
        const long left = --references_;
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override {
        if (!values && count > 0) return E_POINTER;
        ULONG given = 0;
        while (given < count && position_ < items_->values.size()) {
            VariantInit(&values[given]);
            const HRESULT hr = VariantCopy(&values[given], &items_->values[position_]);
            if (FAILED(hr)) {
                for (ULONG i = 0; i < given; ++i) VariantClear(&values[i]);
                if (fetched) *fetched = 0;
                return hr;
            }
            ++given;
            ++position_;
        }
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = items_->values.size() - position_;
        position_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        position_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
        if (!copy) return E_POINTER;
        *copy = new (std::nothrow) VariantEnumerator(items_, position_);
        return *copy ? S_OK : E_OUTOFMEMORY;
    }

  private:
    std::shared_ptr<Items> items_;
    std::size_t position_;
    std::atomic<long> references_{1};
};

}  // namespace

HRESULT NewVariantEnumerator(std::vector<VARIANT> values, IUnknown** result) noexcept {
    if (!result) return E_POINTER;
    *result = nullptr;
    try {
        auto items = std::make_shared<Items>();
        items->values = std::move(values);
        *result = new VariantEnumerator(std::move(items), 0);
        return S_OK;
    } catch (...) {
        for (VARIANT& v : values) VariantClear(&v);
        return E_OUTOFMEMORY;
    }
}

}  // namespace tgp::automation
