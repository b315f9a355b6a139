#include <algorithm>

#include "DispatchObject.h"
#include "Out.h"
#include "ProfileAdapters.h"
#include "Strings.h"
#include "Variants.h"
#include "drawings/DrawingSections.h"
#include "units/DLength.h"
#include "units/UnitCatalogue.h"

namespace tgp::automation {
namespace {

// What a DrawingSections object keeps: how to read, and what the last file held.
struct DrawingSectionsState {
    drawings::DrawingOptions options;
    long drawingUnit = -1;  // -1: the drawing's own unit
    std::string file;
    drawings::DrawingSections read;
    std::vector<std::shared_ptr<tgp::Loop7s>> loops;  // of each section, for For Each
};

// Item Index from 1 to Count; anything else raises 9 "Subscript out of range".
template <class T>
const T& At(const std::vector<T>& items, long Index) {
    if (Index < 1 || static_cast<std::size_t>(Index) > items.size()) throw Error::SubscriptOutOfRange();
    return items[static_cast<std::size_t>(Index) - 1];
}

// Millimetres per unit of a length unit of the catalogue; another number raises 5.
double MillimetresPer(long unit) {
    const auto ids = ValidUnitIds(DLengthObject);
    if (std::find(ids.begin(), ids.end(), unit) == ids.end()) throw Error::InvalidProcedureCall();
    DLength length;
    length.Value(static_cast<int16_t>(unit), 1.0);
    return length.Millimetres();
}

class DrawingSectionsAdapter final
    : public DispatchObject<::_DrawingSections, ::DrawingSections, DrawingSectionsState> {
  public:
    using DispatchObject::DispatchObject;

    HRESULT STDMETHODCALLTYPE Read(BSTR FileName) override {
        return Run([&] {
            DrawingSectionsState& s = native();
            const std::string file = ToUtf8(FileName);
            s.read = drawings::ReadDrawingSections(file, s.options);
            s.file = file;
            s.loops.clear();
            for (const auto& section : s.read.sections) s.loops.push_back(section.loops);
        });
    }
    HRESULT STDMETHODCALLTYPE get_Item(long Index, ::_Loop7s** result) override {
        return Run([&] { Check(Wrap(At(native().loops, Index), &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(long* result) override {
        return Run([&] { Out(result) = static_cast<long>(native().loops.size()); });
    }
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** result) override {
        return Run([&] { Check(NewObjectEnumerator<::_Loop7s>(native().loops, &Out(result))); });
    }
    HRESULT STDMETHODCALLTYPE get_Name(long Index, BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(At(native().read.sections, Index).name); });
    }
    HRESULT STDMETHODCALLTYPE get_Handle(long Index, BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(At(native().read.sections, Index).handle); });
    }
    HRESULT STDMETHODCALLTYPE get_EntityLayer(long Index, BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(At(native().read.sections, Index).layer); });
    }
    HRESULT STDMETHODCALLTYPE get_RejectedCount(long* result) override {
        return Run([&] { Out(result) = static_cast<long>(native().read.rejected.size()); });
    }
    HRESULT STDMETHODCALLTYPE get_RejectedName(long Index, BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(At(native().read.rejected, Index).name); });
    }
    HRESULT STDMETHODCALLTYPE get_RejectedReason(long Index, BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(At(native().read.rejected, Index).reason); });
    }
    HRESULT STDMETHODCALLTYPE get_SkipSummary(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().read.SkipSummary()); });
    }
    HRESULT STDMETHODCALLTYPE get_Layer(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().options.layer.value_or("")); });
    }
    HRESULT STDMETHODCALLTYPE put_Layer(BSTR rhs) override {
        return Run([&] { native().options.layer = Optional(ToUtf8(rhs)); });
    }
    HRESULT STDMETHODCALLTYPE get_Layout(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().options.layout.value_or("")); });
    }
    HRESULT STDMETHODCALLTYPE put_Layout(BSTR rhs) override {
        return Run([&] { native().options.layout = Optional(ToUtf8(rhs)); });
    }
    HRESULT STDMETHODCALLTYPE get_DrawingUnit(long* result) override {
        return Run([&] { Out(result) = native().drawingUnit; });
    }
    HRESULT STDMETHODCALLTYPE put_DrawingUnit(long rhs) override {
        return Run([&] {
            DrawingSectionsState& s = native();
            s.options.millimetresPerUnit = rhs == -1 ? std::nullopt : std::optional(MillimetresPer(rhs));
            s.drawingUnit = rhs;
        });
    }
    HRESULT STDMETHODCALLTYPE get_EachOutline(VARIANT_BOOL* result) override {
        return Run([&] { Out(result) = ToVariantBool(native().options.eachOutline); });
    }
    HRESULT STDMETHODCALLTYPE put_EachOutline(VARIANT_BOOL rhs) override {
        return Run([&] { native().options.eachOutline = rhs != VARIANT_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* result) override {
        return Run([&] { Out(result) = ToBstr(native().file); });
    }

  private:
    static std::optional<std::string> Optional(std::string text) {
        if (text.empty()) return std::nullopt;
        return text;
    }
};

}  // namespace

HRESULT CreateDrawingSections(REFIID iid, void** result) {
    return DrawingSectionsAdapter::CreateInstance<DrawingSectionsAdapter>(
        std::make_shared<DrawingSectionsState>(), iid, result);
}

}  // namespace tgp::automation
