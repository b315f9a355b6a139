#include "TypeLibraryModel.h"

#include <sstream>
#include <stdexcept>
#include <tuple>

namespace tgp::automation::typelib {
namespace {

struct Bstr {
    BSTR text = nullptr;
    ~Bstr() { SysFreeString(text); }
    std::wstring str() const { return text ? std::wstring(text, SysStringLen(text)) : std::wstring(); }
};

void Check(HRESULT hr, const char* what) {
    if (FAILED(hr)) throw std::runtime_error(what);
}

// A type information with its attributes, released together.
class TypeView {
  public:
    explicit TypeView(ITypeInfo* info) : info_(info) { Check(info_->GetTypeAttr(&attr_), "GetTypeAttr"); }
    ~TypeView() {
        info_->ReleaseTypeAttr(attr_);
        info_->Release();
    }
    TypeView(const TypeView&) = delete;
    TypeView& operator=(const TypeView&) = delete;
    ITypeInfo* info() const { return info_; }
    const TYPEATTR& attr() const { return *attr_; }

    std::wstring Name() const { return Documentation(MEMBERID_NIL).first; }
    std::pair<std::wstring, std::wstring> Documentation(MEMBERID id) const {
        Bstr name, help;
        info_->GetDocumentation(id, &name.text, &help.text, nullptr, nullptr);
        return {name.str(), help.str()};
    }
    // The type information a reference names (an implemented interface, a parameter's type).
    ITypeInfo* Referenced(HREFTYPE ref) const {
        ITypeInfo* referenced = nullptr;
        Check(info_->GetRefTypeInfo(ref, &referenced), "GetRefTypeInfo");
        return referenced;
    }

  private:
    ITypeInfo* info_;
    TYPEATTR* attr_ = nullptr;
};

// A published class's interfaces are named after it with a leading underscore: the reference
// speaks of the class.
std::wstring ClassNameOf(const std::wstring& interfaceName) {
    return interfaceName.size() > 1 && interfaceName[0] == L'_' && interfaceName[1] != L'_'
               ? interfaceName.substr(1)
               : interfaceName;
}

std::wstring TypeName(const TypeView& owner, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_R8: return L"Double";
        case VT_R4: return L"Single";
        case VT_I2: return L"Integer";
        case VT_I4:
        case VT_INT: return L"Long";
        case VT_BSTR: return L"String";
        case VT_BOOL: return L"Boolean";
        case VT_VARIANT: return L"Variant";
        case VT_DISPATCH: return L"Object";
        case VT_UNKNOWN: return L"IUnknown";
        case VT_HRESULT:
        case VT_VOID: return L"";
        case VT_PTR: return TypeName(owner, *type.lptdesc);
        case VT_SAFEARRAY: return TypeName(owner, *type.lptdesc) + L"()";
        case VT_USERDEFINED: {
            TypeView referenced(owner.Referenced(type.hreftype));
            return ClassNameOf(referenced.Name());
        }
        default: return L"?";
    }
}

std::wstring DefaultText(const VARIANT& value) {
    switch (V_VT(&value)) {
        case VT_BSTR: return L"\"" + std::wstring(V_BSTR(&value)) + L"\"";
        case VT_BOOL: return V_BOOL(&value) ? L"True" : L"False";
        case VT_I2: return std::to_wstring(V_I2(&value));
        case VT_I4: return std::to_wstring(V_I4(&value));
        case VT_DISPATCH:
        case VT_UNKNOWN: return L"Nothing";
        default: return L"0";
    }
}

Parameter ReadParameter(const TypeView& owner, const ELEMDESC& element, const std::wstring& name) {
    const PARAMDESC& description = element.paramdesc;
    Parameter parameter;
    parameter.name = name;
    parameter.type = TypeName(owner, element.tdesc);
    parameter.byReference = (description.wParamFlags & PARAMFLAG_FOUT) != 0;
    parameter.optional = (description.wParamFlags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) != 0;
    // An optional Variant without a default still travels as a missing argument.
    if (description.wParamFlags & PARAMFLAG_FHASDEFAULT)
        parameter.defaultValue = DefaultText(description.pparamdescex->varDefaultValue);
    return parameter;
}

void ReadFunction(const TypeView& view, const FUNCDESC& function, std::vector<Member>& members, bool events) {
    std::vector<BSTR> names(static_cast<std::size_t>(function.cParams) + 1, nullptr);
    UINT count = 0;
    view.info()->GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &count);
    std::vector<std::wstring> text;
    for (UINT i = 0; i < count; ++i) text.emplace_back(names[i], SysStringLen(names[i]));
    for (BSTR name : names) SysFreeString(name);

    Member* member = nullptr;
    for (Member& known : members)
        if (known.id == function.memid && known.kind == Member::Kind::Property) member = &known;
    const bool property = function.invkind != INVOKE_FUNC;
    if (!member) {
        members.push_back({});
        member = &members.back();
        member->name = text.empty() ? L"" : text[0];
        member->help = view.Documentation(function.memid).second;
        member->id = function.memid;
        member->kind = events     ? Member::Kind::Event
                       : property ? Member::Kind::Property
                                  : Member::Kind::Method;
        member->hidden = (function.wFuncFlags & (FUNCFLAG_FRESTRICTED | FUNCFLAG_FHIDDEN)) != 0;
    }
    if (function.invkind == INVOKE_PROPERTYPUT || function.invkind == INVOKE_PROPERTYPUTREF) {
        member->writable = true;
        member->byReferenceSet = function.invkind == INVOKE_PROPERTYPUTREF;
        if (member->readable) return;  // the get named the parameters and the type
    } else {
        member->readable = property;
    }
    member->parameters.clear();
    const int valueParameters =
        function.invkind == INVOKE_FUNC || function.invkind == INVOKE_PROPERTYGET ? 0 : 1;
    for (SHORT i = 0; i < function.cParams - valueParameters; ++i) {
        const ELEMDESC& element = function.lprgelemdescParam[i];
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
            member->returnType = TypeName(view, element.tdesc);
            continue;
        }
        const std::size_t at = static_cast<std::size_t>(i) + 1;
        member->parameters.push_back(ReadParameter(view, element, at < text.size() ? text[at] : L"value"));
    }
    if (function.cParamsOpt == -1 && !member->parameters.empty()) member->parameters.back().paramArray = true;
    if (function.invkind == INVOKE_PROPERTYPUT || function.invkind == INVOKE_PROPERTYPUTREF) {
        const ELEMDESC& value = function.lprgelemdescParam[function.cParams - 1];
        member->returnType = TypeName(view, value.tdesc);
    }
}

void ReadMembers(const TypeView& view, TypeEntry& entry, bool events) {
    for (UINT f = 0; f < view.attr().cFuncs; ++f) {
        FUNCDESC* function = nullptr;
        Check(view.info()->GetFuncDesc(f, &function), "GetFuncDesc");
        ReadFunction(view, *function, entry.members, events);
        view.info()->ReleaseFuncDesc(function);
    }
}

void ReadValues(const TypeView& view, TypeEntry& entry) {
    for (UINT v = 0; v < view.attr().cVars; ++v) {
        VARDESC* variable = nullptr;
        Check(view.info()->GetVarDesc(v, &variable), "GetVarDesc");
        const std::wstring name = view.Documentation(variable->memid).first;
        entry.values.push_back({name, V_I4(variable->lpvarValue)});
        view.info()->ReleaseVarDesc(variable);
    }
}

void ReadClass(const TypeView& view, TypeEntry& entry) {
    for (UINT i = 0; i < view.attr().cImplTypes; ++i) {
        HREFTYPE ref = 0;
        INT flags = 0;
        view.info()->GetRefTypeOfImplType(i, &ref);
        view.info()->GetImplTypeFlags(i, &flags);
        TypeView implemented(view.Referenced(ref));
        (flags & IMPLTYPEFLAG_FSOURCE ? entry.eventInterface : entry.defaultInterface) = implemented.Name();
    }
}

TypeEntry ReadType(ITypeInfo* info) {
    info->AddRef();  // the view releases it
    TypeView view(info);
    TypeEntry entry;
    std::tie(entry.name, entry.help) = view.Documentation(MEMBERID_NIL);
    entry.guid = view.attr().guid;
    switch (view.attr().typekind) {
        case TKIND_COCLASS:
            entry.kind = TypeEntry::Kind::Class;
            ReadClass(view, entry);
            break;
        case TKIND_ENUM:
            entry.kind = TypeEntry::Kind::Enumeration;
            ReadValues(view, entry);
            break;
        case TKIND_DISPATCH:
            if (view.attr().wTypeFlags & TYPEFLAG_FDUAL) {
                // The interface view of a dual interface: its own members with their real signatures.
                HREFTYPE ref = 0;
                Check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &ref), "GetRefTypeOfImplType");
                TypeView dual(view.Referenced(ref));
                entry.kind = TypeEntry::Kind::Interface;
                ReadMembers(dual, entry, false);
            } else {
                entry.kind = TypeEntry::Kind::Events;
                ReadMembers(view, entry, true);
            }
            break;
        default:
            entry.kind = TypeEntry::Kind::Interface;
            ReadMembers(view, entry, false);
            break;
    }
    return entry;
}

}  // namespace

const TypeEntry* LibraryModel::Find(const std::wstring& typeName) const {
    for (const TypeEntry& type : types)
        if (type.name == typeName) return &type;
    return nullptr;
}

LibraryModel ReadTypeLibrary(ITypeLib* library) {
    LibraryModel model;
    Bstr name, help;
    library->GetDocumentation(-1, &name.text, &help.text, nullptr, nullptr);
    model.name = name.str();
    model.help = help.str();
    TLIBATTR* attr = nullptr;
    Check(library->GetLibAttr(&attr), "GetLibAttr");
    model.libid = attr->guid;
    model.major = attr->wMajorVerNum;
    model.minor = attr->wMinorVerNum;
    library->ReleaseTLibAttr(attr);
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ITypeInfo* info = nullptr;
        Check(library->GetTypeInfo(i, &info), "GetTypeInfo");
        model.types.push_back(ReadType(info));
        info->Release();
    }
    return model;
}

IdlNotes ReadIdlNotes(const std::string& idlText) {
    IdlNotes notes;
    std::istringstream lines(idlText);
    std::string line;
    std::wstring example;
    const auto trimmed = [](const std::string& s) {
        const auto first = s.find_first_not_of(" \t");
        return first == std::string::npos ? std::string()
                                          : s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
    };
    const auto wide = [](const std::string& s) { return std::wstring(s.begin(), s.end()); };
    while (std::getline(lines, line)) {
        const std::string text = trimmed(line);
        if (text.rfind("///", 0) == 0) {
            example += wide(text.size() > 4 ? text.substr(4) : std::string()) + L"\n";
            continue;
        }
        for (const std::string keyword : {"coclass ", "library "})
            if (text.rfind(keyword, 0) == 0 && !example.empty())
                notes.blockComments[wide(trimmed(text.substr(keyword.size())))] = example;
        const auto comment = text.find("//");
        const auto equals = text.find('=');
        if (comment != std::string::npos && equals != std::string::npos && equals < comment &&
            text.find('(') > comment) {
            notes.valueComments[wide(trimmed(text.substr(0, equals)))] =
                wide(trimmed(text.substr(comment + 2)));
        }
        // Attribute lines stand between a "///" block and its declaration; a statement ends it.
        if (!text.empty() && (text.back() == ';' || text.back() == '{' || text.back() == '}'))
            example.clear();
    }
    return notes;
}

std::wstring GuidText(const GUID& guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

}  // namespace tgp::automation::typelib
