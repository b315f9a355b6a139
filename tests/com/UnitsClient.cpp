// Units classes from C++: what scripts cannot reach.
#include "Client.h"
#include "ModifiedCounter.h"
#include "Tessary_Geometry_Pro.h"

using namespace client;

// The event through a connection point: raised once per change (the rules themselves are the native
// suite's), FreezeEvents taken by reference, none after Unadvise, and the sink released.
CLIENT_TEST(ModifiedEvent) {
    Object setting(L"UnitSetting");
    ModifiedCounter sink;
    {
        Connection connection(setting, sink);
        Check(connection.ok, "connect a sink to Modified");
        Put(setting, L"UnitID", {Var(1), Var(3)});
        Check(sink.count == 1, "a changed UnitID raises Modified", std::to_string(sink.count));
        VARIANT_BOOL flag = VARIANT_TRUE;
        Method(setting, L"FreezeEvents", {Ref(&flag)});
        Put(setting, L"UnitID", {Var(2), Var(1)});
        Check(sink.count == 1, "none while frozen by a Boolean variable", std::to_string(sink.count));
        Method(setting, L"FreezeEvents", {Var(false)});
        Check(sink.count == 2, "one when unfrozen", std::to_string(sink.count));
        Object target(L"UnitSetting");
        ModifiedCounter targetSink;
        Connection targetConnection(target, targetSink);
        Method(setting, L"CopyTo", {Var(target.p)});
        Check(targetSink.count == 1, "CopyTo raises Modified on the target",
              std::to_string(targetSink.count));
    }
    Put(setting, L"UnitID", {Var(1), Var(4)});
    Check(sink.count == 2, "no event after Unadvise");
    Check(sink.references() == 1, "the server released the sink", std::to_string(sink.references()));
}

CLIENT_TEST(UnitIdsArray) {
    Object setting(L"UnitSetting");
    VARTYPE type = VT_EMPTY;
    LONG lower = -1;
    const std::vector<double> values = Elements(Get(setting, L"UnitIDs").result.v, &type, &lower);
    Check(type == VT_I2 && lower == 0 && values.size() == 11, "UnitIDs is a zero-based array of 11 Integers");
    Put(setting, L"UnitIDs", {DoubleArray({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10})});  // taken from Doubles
    Check(Get(setting, L"UnitID", {Var(7)}).result.AsDouble() == 9, "UnitIDs let in storage order");
}

CLIENT_TEST(ErrorInfoAfterVtableCall) {
    Object object(L"DLength");
    _DLength* length = nullptr;
    Check(SUCCEEDED(object->QueryInterface(IID__DLength, reinterpret_cast<void**>(&length))),
          "QueryInterface _DLength");
    if (!length) return;
    ISupportErrorInfo* support = nullptr;
    object->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(&support));
    Check(support && support->InterfaceSupportsErrorInfo(IID__DLength) == S_OK,
          "ISupportErrorInfo for _DLength");
    if (support) support->Release();

    Var unit(7);
    double value = 0;
    HRESULT hr = length->get_Value(unit.v, &value);
    Check(hr == MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 24111), "HRESULT carries 24111");
    IErrorInfo* error = nullptr;
    Check(GetErrorInfo(0, &error) == S_OK && error, "error object published");
    if (error) {
        BSTR description = nullptr;
        BSTR source = nullptr;
        error->GetDescription(&description);
        error->GetSource(&source);
        Check(description && std::wstring(description) == L"7 is an invalid UnitID for Length",
              "description");
        Check(!source || SysStringLen(source) == 0, "no source");
        SysFreeString(description);
        SysFreeString(source);
        error->Release();
    }
    Check(length->put_Millimetres(std::nan("")) == MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 6),
          "NaN refused with 6");
    Check(length->put_Millimetres(HUGE_VAL) == MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 6),
          "infinity refused with 6");
    Check(length->get_Millimetres(nullptr) != S_OK, "null out pointer refused");
    length->Release();
}

CLIENT_TEST(DefaultMembersAndText) {
    Object length(L"DLength");
    DISPID put = DISPID_PROPERTYPUT;
    Var twelve(12.0);
    DISPPARAMS params{&twelve.v, &put, 1, 1};
    HRESULT hr =
        length->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
    Check(hr == S_OK, "default member let");
    Check(Get(length, L"Millimetres").result.AsDouble() == 12, "default member let sets Millimetres");
    Var result;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    length->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result.v, nullptr, nullptr);
    Check(result.AsDouble() == 12, "default member get");

    Object angle(L"DAngle");
    Put(angle, L"Degrees", {Var(90.0)});
    Outcome text = Method(angle, L"ValueToString", {Var(1), Var(0), Var(true)});
    Check(text.result.AsText() == L"90 \u00BA", "degree symbol is U+00BA", Narrow(text.result.AsText()));
    Object area(L"DArea");
    Put(area, L"Centimetres", {Var(2.0)});
    Check(Method(area, L"ValueToString", {Var(1)}).result.AsText() == L"2 (cm\u00B2)",
          "area symbol cm\u00B2");
}

CLIENT_TEST(HostileArguments) {
    Object length(L"DLength");
    struct Case {
        const char* name;
        Var unit;
        int number;
    };
    const Case cases[] = {
        {"Nothing as unit", Typed(VT_DISPATCH), 0},
        {"null IUnknown as unit", Typed(VT_UNKNOWN), 0},
        {"NaN as unit", Var(std::nan("")), 6},
        {"infinity as unit", Var(HUGE_VAL), 6},
        {"two-dimensional array as unit", ArrayOf(VT_R8, 2, 2), 13},
        {"Null as unit", Typed(VT_NULL), 13},
        {"empty text as unit", Var(L""), 13},
    };
    for (const Case& c : cases) {
        Outcome outcome = Get(length, L"Value", {c.unit});
        Check(outcome.number == c.number, c.name, "got " + std::to_string(outcome.number));
    }
    Outcome wrongType = Method(Object(L"UnitSetting"), L"CopyTo", {Var(length.p)});
    Check(wrongType.number != 0, "a DLength where a UnitSetting is typed is refused");
}
