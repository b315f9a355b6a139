// The server as a whole: the type library's contents, object lifetime and DllCanUnloadNow.
#include <algorithm>
#include <map>
#include <set>

#include "Client.h"
#include "Tessary_Geometry_Pro.h"

using namespace client;

namespace {

// Every name a type of the library declares (members of interfaces, constants of enumerations).
std::set<std::wstring> MemberNames(ITypeInfo* info) {
    std::set<std::wstring> names;
    TYPEATTR* attributes = nullptr;
    if (FAILED(info->GetTypeAttr(&attributes))) return names;
    auto add = [&](MEMBERID id) {
        BSTR name = nullptr;
        if (SUCCEEDED(info->GetDocumentation(id, &name, nullptr, nullptr, nullptr)) && name)
            names.insert(name);
        SysFreeString(name);
    };
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* desc = nullptr;
        if (SUCCEEDED(info->GetFuncDesc(i, &desc))) {
            add(desc->memid);
            info->ReleaseFuncDesc(desc);
        }
    }
    for (UINT i = 0; i < attributes->cVars; ++i) {
        VARDESC* desc = nullptr;
        if (SUCCEEDED(info->GetVarDesc(i, &desc))) {
            add(desc->memid);
            info->ReleaseVarDesc(desc);
        }
    }
    info->ReleaseTypeAttr(attributes);
    return names;
}

}  // namespace

CLIENT_TEST(TypeLibraryContents) {
    ITypeLib* library = nullptr;
    Check(SUCCEEDED(LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, &library)),
          "type library loads from the DLL");
    if (!library) return;
    BSTR libraryName = nullptr;
    library->GetDocumentation(-1, &libraryName, nullptr, nullptr, nullptr);
    Check(libraryName && std::wstring(libraryName) == L"Tessary_Geometry_Pro", "library name");
    SysFreeString(libraryName);

    std::map<std::wstring, std::set<std::wstring>> types;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ITypeInfo* info = nullptr;
        BSTR name = nullptr;
        library->GetDocumentation(static_cast<INT>(i), &name, nullptr, nullptr, nullptr);
        if (name && SUCCEEDED(library->GetTypeInfo(i, &info))) types[name] = MemberNames(info);
        if (info) info->Release();
        SysFreeString(name);
    }
    library->Release();

    // Type, then members that must be there (published spellings).
    const std::pair<const wchar_t*, std::vector<const wchar_t*>> expected[] = {
        {L"DimensionObjectType", {L"DAngleObject", L"DForcePerareaObject", L"DForceDensityObject"}},
        {L"UnitIDAngle", {L"Radian_UnitID", L"Degree_UnitID"}},
        {L"UnitIDLength",
         {L"mm_UnitID", L"cm_UnitID", L"dm_UnitID", L"m_UnitID", L"in_UnitID", L"ft_UnitID"}},
        {L"UnitIDForce",
         {L"KN_unitID", L"daN_unitID", L"KG_unitID", L"ton_unitID", L"lb_unitID", L"kip_unitID",
          L"N_unitID"}},
        {L"UnitIDForceLength",
         {L"KN_mm_unitID", L"kG_cm_unitID", L"atm_unitID", L"Pa_unitID", L"KPa_unitID", L"MPa_unitID"}},
        {L"LoopRelationShip", {L"FriendLoop", L"ChildLoop", L"SiblingLoop", L"ParentLoop"}},
        {L"_DAngle",
         {L"DimensionType", L"Radians", L"Degrees", L"Value", L"ValueToString", L"ValueFromString", L"Copy"}},
        {L"_DLength",
         {L"Millimetres", L"Centimetres", L"Decimetres", L"Metres", L"Inches", L"Feet", L"Value"}},
        {L"_DArea", {L"Millimetres", L"Feet", L"ValueToString"}},
        {L"_DVolume", {L"Millimetres", L"Centimetres", L"Litres", L"Metres", L"Inches", L"Feet", L"Copy"}},
        {L"_DMomentOfInertia", {L"Millimetres", L"Inches", L"Decimetres"}},
        {L"_DForce", {L"KN", L"daN", L"KG", L"tons", L"pound", L"kip", L"Newtons"}},
        {L"_DPressure",
         {L"KN_mm2", L"daN_cm2", L"KG_m2", L"ton_m2", L"psi", L"ksi", L"N_mm2", L"KN_m2", L"KN_cm2",
          L"KG_cm2", L"atm", L"PA", L"KPa", L"MPa"}},
        {L"_DForcePerArea", {L"KN_mm2", L"MPa"}},
        {L"_DForceMoment", {L"KNmm", L"KGm", L"tm", L"lbin", L"kipin", L"KNm"}},
        {L"_DForcePerLine", {L"KN_mm", L"KG_m", L"tons_m", L"lbin", L"kipin", L"KN_m"}},
        {L"_DForceDensity", {L"KN_mm3", L"KG_m3", L"tons_m3", L"pci", L"kci", L"KN_m3"}},
        {L"_UnitSetting", {L"FreezeEvents", L"Copy", L"UnitIDs", L"CopyTo", L"UnitID", L"UnitString"}},
        {L"__UnitSetting", {L"Modified"}},
        {L"_Geometry_EXE",
         {L"EditEnum", L"EditQuantity", L"EditUnitSetting", L"GetUnitString", L"GetUnitID", L"GetDAngle",
          L"GetDLength", L"GetDArea", L"GetDVolume", L"GetDForce", L"GetDForceDensity", L"GetDForceMoment",
          L"GetDForcePerArea", L"GetDForcePerLine", L"GetDMomentOfInertia", L"GetDPressure"}},
        {L"_Vector",
         {L"vplusv", L"vminusv", L"vxr", L"vAngle", L"vLength", L"vRotate", L"vxv", L"vxxv", L"vProjectTo",
          L"vAngle3D", L"UnitVec", L"RoundZeroVector", L"AssocVector", L"VectorAB", L"ConvertVariantToArray",
          L"IsParallel", L"IsVertical", L"Fix_NegativeVector"}},
        {L"_Geometry",
         {L"pi",
          L"DegToRad",
          L"DegFromRad",
          L"FixAngle360",
          L"FixAngle180",
          L"FixAngle90",
          L"FixAngle180180",
          L"FixAngle9090",
          L"ASin",
          L"ACos",
          L"Area_3Distances",
          L"Area_3Points",
          L"NormalVector",
          L"Volume_4Points",
          L"RotatePoint",
          L"Analyse_TriPoints",
          L"Analyse_Point_Line",
          L"Analyse_Point_Plane",
          L"Analyse_Line_Plane",
          L"Analyse_Line_Line",
          L"Analyse_Plane_Plane",
          L"Intersect_Line_Circle",
          L"Intersect_Circle_Circle",
          L"Circle_3Points",
          L"Interpolate_Point",
          L"Interpolate_Table",
          L"Points_BoundingBox",
          L"Points_Centroid",
          L"Points_ConvexHull",
          L"Points_Nearest",
          L"Points_SortAlong",
          L"Move_Points",
          L"Scale_Points",
          L"Mirror_Points",
          L"Rotate_Points",
          L"Transform_Points"}},
        {L"A3P_Result", {L"A3P_Triangle", L"A3P_Collinear", L"A3P_TwoCoincident", L"A3P_AllCoincident"}},
        {L"A2L_Result", {L"A2L_Intersecting", L"A2L_Parallel", L"A2L_SameLine", L"A2L_Skew"}},
        {L"APlane_Result",
         {L"APlane_PointOnPlane", L"APlane_PointInFront", L"APlane_PointBehind", L"APlane_LineCrossing",
          L"APlane_LineParallel", L"APlane_LineInPlane", L"APlane_PlanesCrossing", L"APlane_PlanesParallel",
          L"APlane_PlanesSame"}},
        {L"_Matrix",
         {L"Reset",
          L"RowCount",
          L"ColumnCount",
          L"Array2D",
          L"Array2DPaste",
          L"LetRow",
          L"LetColumn",
          L"Row",
          L"Column",
          L"Item",
          L"LetItem",
          L"Copy",
          L"Transpose",
          L"GetSubMatrix",
          L"GetSubMatrixByRemoveRowCol",
          L"RoundUp",
          L"Product",
          L"MultiplyWithVector",
          L"MultiplyWithNumber",
          L"PlusWithMatrix",
          L"PlusWithNumber",
          L"IsSquareMatrix",
          L"Det",
          L"Inverse",
          L"SolveWithGaussMethod",
          L"Solve",
          L"InverseWithExcelMethod",
          L"DisplayOnExcelWorksheet",
          L"PrintToTextFile"}},
        {L"_UCS",
         {L"Label",
          L"Origin",
          L"Parent",
          L"Matrix",
          L"Ux",
          L"Uy",
          L"Uz",
          L"SetUCS",
          L"TranslateFromUCS",
          L"TranslateToUCS",
          L"UnitID",
          L"Reverse",
          L"Move",
          L"Rotate",
          L"Copy",
          L"ParallelTo",
          L"U1",
          L"U2",
          L"U3",
          L"Normal",
          L"TranslateMyUCSToWorld",
          L"RetrieveUCS_SeeMeAs"}},
        {L"_Loop7",
         {L"InitFromCoordinates",
          L"InitFromPoints",
          L"Reverse",
          L"Count",
          L"AcadEntity",
          L"Handle",
          L"Vertex",
          L"Coordinates",
          L"MiddlePoint",
          L"Bulges",
          L"IsVoid",
          L"InitInertiaDone",
          L"InertiaBlock",
          L"Length",
          L"Area",
          L"AreaAbs",
          L"MomentOfInertiaX",
          L"MomentOfInertiaY",
          L"ProductOfInertiaXY",
          L"Centroid",
          L"PointIsInside",
          L"IntersectWithLine",
          L"IntersectWithLoop",
          L"IsSelfIntersect",
          L"IsChildOF",
          L"RelationshipTo",
          L"GetTopBottomPoints",
          L"Move",
          L"Transformation",
          L"PointAnalysis"}},
        {L"_InertiaBlock",
         {L"Init",
          L"Copy",
          L"Centroid",
          L"OCS",
          L"Ux",
          L"Uy",
          L"Normal",
          L"Area",
          L"Perimeter",
          L"IsVoid",
          L"MomentOfInertiaX",
          L"MomentOfInertiaY",
          L"ProductOfInertiaXY",
          L"RadiusOfGyrationX",
          L"RadiusOfGyrationY",
          L"PMomentOfInertiaX",
          L"PMomentOfInertiaY",
          L"PrincipalAngle",
          L"PCS",
          L"GetPrincipalIP",
          L"ElasticModulus",
          L"HasNoMaterial",
          L"RotateOCS",
          L"RotateAll",
          L"Move",
          L"Inverse",
          L"Transformation",
          L"Join",
          L"Union",
          L"SaveToText",
          L"InitFromText"}},
        {L"_Loop7s",
         {L"Add", L"Item", L"Count", L"Remove", L"Clear", L"_NewEnum", L"Parent", L"Depth", L"IsHole",
          L"InertiaBlock", L"Area", L"Length", L"Centroid", L"MomentOfInertiaX", L"MomentOfInertiaY",
          L"ProductOfInertiaXY", L"Split", L"Sort"}},
        {L"Loop7sSortKey", {L"SortByArea", L"SortByCentroidX", L"SortByCentroidY", L"SortByDepth"}},
        {L"_UnitComboBox", {L"Init", L"Combo", L"DimensionType", L"UnitSetting", L"UnitString", L"UnitID"}},
        {L"__UnitComboBox", {L"Change"}},
        {L"_HostBridge", {L"Application", L"ShowModal"}},
        {L"__HostBridge",
         {L"WindowChanged", L"EnterModal", L"LeaveModal", L"DrawingActivated", L"DrawingClosing",
          L"ObjectModified", L"HostClosing"}},
        {L"DLength", {}},
        {L"DAngle", {}},
        {L"DForceDensity", {}},
        {L"UnitSetting", {}},
        {L"Geometry_EXE", {}},
        {L"Vector", {}},
        {L"Geometry", {}},
        {L"Matrix", {}},
        {L"UCS", {}},
        {L"Loop7", {}},
        {L"InertiaBlock", {}},
        {L"UnitComboBox", {}},
        {L"Loop7s", {}},
        {L"HostBridge", {}},
    };
    for (const auto& [type, members] : expected) {
        auto found = types.find(type);
        Check(found != types.end(), "type " + Narrow(type) + " present");
        if (found == types.end()) continue;
        for (const wchar_t* member : members)
            Check(found->second.count(member) == 1, Narrow(type) + "." + Narrow(member) + " present");
    }
    Check(types.find(L"LoopDLine") == types.end() && types.find(L"_LoopDLine") == types.end(),
          "LoopDLine stays private");
}

// The published order of accessors: UnitSetting and DAngle list a property's let before its get.
CLIENT_TEST(PublishedAccessorOrder) {
    ITypeLib* library = nullptr;
    LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, &library);
    if (!library) return;
    const std::pair<const wchar_t*, const wchar_t*> letFirst[] = {
        {L"_UnitSetting", L"UnitID"}, {L"_DAngle", L"Radians"}, {L"_DAngle", L"Degrees"}};
    for (const auto& [interfaceName, property] : letFirst) {
        ITypeInfo* info = nullptr;
        MEMBERID id = 0;
        USHORT found = 1;
        std::wstring text = interfaceName;
        library->FindName(text.data(), 0, &info, &id, &found);
        int let = -1, get = -1;
        TYPEATTR* attributes = nullptr;
        if (found && info && SUCCEEDED(info->GetTypeAttr(&attributes))) {
            for (UINT i = 0; i < attributes->cFuncs; ++i) {
                FUNCDESC* desc = nullptr;
                if (FAILED(info->GetFuncDesc(i, &desc))) continue;
                BSTR name = nullptr;
                info->GetDocumentation(desc->memid, &name, nullptr, nullptr, nullptr);
                if (name && std::wstring(name) == property) {
                    if (desc->invkind == INVOKE_PROPERTYPUT && let < 0) let = static_cast<int>(i);
                    if (desc->invkind == INVOKE_PROPERTYGET && get < 0) get = static_cast<int>(i);
                }
                SysFreeString(name);
                info->ReleaseFuncDesc(desc);
            }
            info->ReleaseTypeAttr(attributes);
        }
        if (info) info->Release();
        Check(let >= 0 && get > let,
              Narrow(interfaceName) + "." + Narrow(property) + " lists its let before its get");
    }
    library->Release();
}

// The published signatures of the dialog members: optional Booleans that are False when omitted,
// an optional by-reference Integer for the chosen unit and an optional object for the owner.
CLIENT_TEST(DialogMemberSignatures) {
    ITypeLib* library = nullptr;
    LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, &library);
    if (!library) return;
    ITypeInfo* info = nullptr;
    MEMBERID id = 0;
    USHORT found = 1;
    std::wstring text = L"_Geometry_EXE";
    library->FindName(text.data(), 0, &info, &id, &found);
    library->Release();
    if (!found || !info) {
        Check(false, "_Geometry_EXE found");
        return;
    }
    struct Expected {
        const wchar_t* member;
        int parameter;
        VARTYPE type;       // VT_PTR | x for by reference
        bool defaultFalse;  // optional with a default of 0 / False
    };
    const Expected expected[] = {{L"EditUnitSetting", 1, VT_BOOL, true},
                                 {L"EditUnitSetting", 2, VT_BOOL, true},
                                 {L"EditQuantity", 4, static_cast<VARTYPE>(VT_PTR | VT_I2), true},
                                 {L"EditQuantity", 5, VT_DISPATCH, true}};
    TYPEATTR* attributes = nullptr;
    info->GetTypeAttr(&attributes);
    for (const Expected& e : expected) {
        bool ok = false;
        std::string seen = "member not found";
        for (UINT i = 0; attributes && i < attributes->cFuncs && !ok; ++i) {
            FUNCDESC* desc = nullptr;
            if (FAILED(info->GetFuncDesc(i, &desc))) continue;
            BSTR name = nullptr;
            info->GetDocumentation(desc->memid, &name, nullptr, nullptr, nullptr);
            if (name && std::wstring(name) == e.member && e.parameter < desc->cParams) {
                const ELEMDESC& p = desc->lprgelemdescParam[e.parameter];
                VARTYPE type = p.tdesc.vt;
                if (type == VT_PTR && p.tdesc.lptdesc)
                    type = static_cast<VARTYPE>(VT_PTR | p.tdesc.lptdesc->vt);
                const USHORT flags = p.paramdesc.wParamFlags;
                bool defaultZero =
                    (flags & PARAMFLAG_FOPT) && (flags & PARAMFLAG_FHASDEFAULT) && p.paramdesc.pparamdescex;
                if (defaultZero) {  // 0, False or Nothing
                    VARIANT& given = p.paramdesc.pparamdescex->varDefaultValue;
                    VARIANT zero;
                    VariantInit(&zero);
                    const bool nothing =
                        (V_VT(&given) == VT_DISPATCH || V_VT(&given) == VT_UNKNOWN) && !V_UNKNOWN(&given);
                    defaultZero = nothing ||
                                  (SUCCEEDED(VariantChangeType(&zero, &given, 0, VT_I4)) && V_I4(&zero) == 0);
                }
                ok = type == e.type && defaultZero == e.defaultFalse;
                seen = "type " + std::to_string(type) + " flags " + std::to_string(flags);
            }
            SysFreeString(name);
            info->ReleaseFuncDesc(desc);
        }
        Check(ok,
              Narrow(e.member) + " parameter " + std::to_string(e.parameter) +
                  " has its published type and default",
              seen);
    }
    if (attributes) info->ReleaseTypeAttr(attributes);
    info->Release();
}

// The published parameter names of the dialog members and of UnitComboBox, which named arguments
// in macros (EditQuantity(Value:=x, ReturnUnitID:=u)) depend on; Change passes both ids by reference.
CLIENT_TEST(PublishedParameterNames) {
    ITypeLib* library = nullptr;
    LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, &library);
    if (!library) return;
    struct Expected {
        const wchar_t* type;
        const wchar_t* member;
        std::vector<std::wstring> parameters;
    };
    const Expected expected[] = {
        {L"_Geometry_EXE", L"EditEnum", {L"Value", L"EnumString", L"Title", L"Desc"}},
        {L"_Geometry_EXE",
         L"EditQuantity",
         {L"Value", L"UnitID", L"Title", L"Desc", L"ReturnUnitID", L"OwnerForm"}},
        {L"_Geometry_EXE", L"EditUnitSetting", {L"US", L"ShowModal", L"ShowCenterScreen"}},
        {L"_UnitComboBox", L"Init", {L"Combo", L"DType", L"UnitS"}},
        {L"__UnitComboBox", L"Change", {L"oldUnitID", L"newUnitID"}},
    };
    for (const Expected& e : expected) {
        ITypeInfo* info = nullptr;
        MEMBERID id = 0;
        USHORT found = 1;
        std::wstring typeName = e.type;
        library->FindName(typeName.data(), 0, &info, &id, &found);
        std::vector<std::wstring> seen;
        bool byReference = true;
        TYPEATTR* attributes = nullptr;
        if (found && info && SUCCEEDED(info->GetTypeAttr(&attributes))) {
            for (UINT i = 0; i < attributes->cFuncs && seen.empty(); ++i) {
                FUNCDESC* desc = nullptr;
                if (FAILED(info->GetFuncDesc(i, &desc))) continue;
                BSTR names[16] = {};
                UINT count = 0;
                info->GetNames(desc->memid, names, 16, &count);
                if (count > 0 && std::wstring(names[0]) == e.member) {
                    for (UINT n = 1; n < count && n <= e.parameters.size(); ++n) seen.emplace_back(names[n]);
                    for (SHORT p = 0; p < desc->cParams; ++p)
                        byReference = byReference && desc->lprgelemdescParam[p].tdesc.vt == VT_PTR;
                }
                for (UINT n = 0; n < count; ++n) SysFreeString(names[n]);
                info->ReleaseFuncDesc(desc);
            }
            info->ReleaseTypeAttr(attributes);
        }
        if (info) info->Release();
        std::wstring shown;
        for (const auto& name : seen) shown += name + L" ";
        Check(seen == e.parameters, Narrow(e.type) + "." + Narrow(e.member) + " parameter names",
              Narrow(shown));
        if (std::wstring(e.member) == L"Change") Check(byReference, "Change passes both ids by reference");
    }
    library->Release();
}

CLIENT_TEST(GlobalClasses) {
    ITypeLib* library = nullptr;
    LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, &library);
    if (!library) return;
    // Vector, Geometry and Geometry_EXE are application objects; the others are plain classes.
    const std::pair<const wchar_t*, bool> classes[] = {{L"Vector", true},
                                                       {L"Geometry", true},
                                                       {L"Geometry_EXE", true},
                                                       {L"DLength", false},
                                                       {L"Loop7", false}};
    for (const auto& [name, global] : classes) {
        ITypeInfo* info = nullptr;
        MEMBERID id = 0;
        USHORT found = 1;
        std::wstring text = name;
        library->FindName(text.data(), 0, &info, &id, &found);
        TYPEATTR* attributes = nullptr;
        bool isGlobal = false;
        if (found && info && SUCCEEDED(info->GetTypeAttr(&attributes))) {
            isGlobal = (attributes->wTypeFlags & TYPEFLAG_FAPPOBJECT) != 0;
            info->ReleaseTypeAttr(attributes);
        }
        if (info) info->Release();
        Check(found && isGlobal == global,
              Narrow(name) + (global ? " is" : " is not") + " an application object");
    }
    library->Release();
}

CLIENT_TEST(LifetimeAndUnloading) {
    HMODULE server = LoadLibraryW(ServerPath().c_str());
    Check(server != nullptr, "server DLL loads");
    if (!server) return;
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    auto canUnload =
        reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(server, "DllCanUnloadNow")));
    auto getClassObject = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(GetProcAddress(server, "DllGetClassObject")));
    Check(canUnload && getClassObject, "entry points exported");
    if (!canUnload || !getClassObject) return;
    CoFreeUnusedLibraries();

    CLSID clsid{};
    CLSIDFromProgID(L"Tessary_Geometry_Pro.DLength", &clsid);
    Check(canUnload() == S_OK, "nothing alive: can unload");
    IClassFactory* factory = nullptr;
    getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    Check(factory != nullptr, "class factory");
    if (!factory) return;
    IClassFactory* again = nullptr;
    getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&again));
    Check(again == factory, "one class object per class, handed out again rather than made anew");
    if (again) again->Release();
    Check(canUnload() == S_FALSE, "a live class factory keeps the DLL");
    factory->LockServer(TRUE);
    IDispatch* object = nullptr;
    factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object));
    IUnknown* outer = reinterpret_cast<IUnknown*>(object);
    IUnknown* aggregated = nullptr;
    Check(factory->CreateInstance(outer, IID_IUnknown, reinterpret_cast<void**>(&aggregated)) ==
              CLASS_E_NOAGGREGATION,
          "aggregation refused");
    factory->Release();
    Check(canUnload() == S_FALSE, "a lock keeps the DLL");
    factory = nullptr;
    getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->LockServer(FALSE);
    factory->Release();
    Check(object && canUnload() == S_FALSE, "a live object keeps the DLL");
    Check(object->AddRef() == 2, "AddRef counts");
    Check(object->Release() == 1, "Release counts");
    IUnknown* unknown = nullptr;
    object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&unknown));
    Check(unknown == reinterpret_cast<IUnknown*>(object), "IUnknown identity");
    unknown->Release();
    IDispatch* copy = nullptr;
    Outcome copied = Method(object, L"Copy");
    copy = copied.result.AsObject();
    Check(copy != nullptr, "Copy returns an object");
    object->Release();
    Check(canUnload() == S_FALSE, "a copy keeps the DLL");
    copied = Outcome{};
    Check(canUnload() == S_OK, "everything released: can unload");
    Check(getClassObject(IID_IDispatch, IID_IClassFactory, reinterpret_cast<void**>(&factory)) ==
              CLASS_E_CLASSNOTAVAILABLE,
          "unknown class refused");
    FreeLibrary(server);
}

namespace {

bool KeyExists(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

}  // namespace

CLIENT_TEST_LAST(UnregisterAndRegisterAgain) {
    std::wstring path = ServerPath();
    CLSID clsid{};
    CLSIDFromProgID(L"Tessary_Geometry_Pro.Loop7", &clsid);
    wchar_t guid[40] = {};
    StringFromGUID2(clsid, guid, 40);
    wchar_t library[40] = {};
    StringFromGUID2(LIBID_Tessary_Geometry_Pro, library, 40);
    wchar_t loopInterface[40] = {};
    StringFromGUID2(IID__Loop7, loopInterface, 40);
    const std::wstring keys[] = {
        L"Software\\Classes\\Tessary_Geometry_Pro.Loop7",
        std::wstring(L"Software\\Classes\\CLSID\\") + guid,
        std::wstring(L"Software\\Classes\\TypeLib\\") + library,
        std::wstring(L"Software\\Classes\\Interface\\") + loopInterface,
    };
    HMODULE server = LoadLibraryW(path.c_str());
    using Entry = HRESULT(STDAPICALLTYPE*)();
    auto unregister =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(server, "DllUnregisterServer")));
    auto reregister =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(server, "DllRegisterServer")));
    Check(unregister && reregister, "registration entry points");
    if (!unregister || !reregister) return;
    for (const auto& key : keys) Check(KeyExists(HKEY_LOCAL_MACHINE, key), "registered: " + Narrow(key));
    Check(unregister() == S_OK, "DllUnregisterServer");
    for (const auto& key : keys) {
        Check(!KeyExists(HKEY_LOCAL_MACHINE, key) && !KeyExists(HKEY_CURRENT_USER, key),
              "removed: " + Narrow(key));
    }
    Check(reregister() == S_OK, "DllRegisterServer");
    for (const auto& key : keys)
        Check(KeyExists(HKEY_LOCAL_MACHINE, key), "registered again: " + Narrow(key));
    FreeLibrary(server);
}
