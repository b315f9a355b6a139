// The rules of the library's own IDispatch beyond what a script shows: names and named arguments
// in any case (VBA's x:=), the counts of arguments, malformed DISPPARAMS, and unknown members or kinds
// of call.
#include <string>
#include <vector>

#include "Client.h"

namespace client {
namespace {

struct Lookup {
    HRESULT hr;
    std::vector<DISPID> ids;
};

Lookup IdsOf(IDispatch* object, std::vector<const wchar_t*> names) {
    Lookup found{S_OK, std::vector<DISPID>(names.size(), 12345)};
    std::vector<LPOLESTR> list;
    for (const wchar_t* n : names) list.push_back(const_cast<LPOLESTR>(n));
    found.hr = object->GetIDsOfNames(IID_NULL, list.data(), static_cast<UINT>(list.size()),
                                     LOCALE_USER_DEFAULT, found.ids.data());
    return found;
}

// Invoke with the arguments as given (rgvarg order: named first, then positional last-first).
HRESULT RawInvoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> rgvarg,
                  std::vector<DISPID> named, VARIANT* result) {
    DISPPARAMS params{rgvarg.empty() ? nullptr : rgvarg.data(), named.empty() ? nullptr : named.data(),
                      static_cast<UINT>(rgvarg.size()), static_cast<UINT>(named.size())};
    EXCEPINFO info{};
    const HRESULT hr =
        object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &info, nullptr);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    return hr;
}

}  // namespace

CLIENT_TEST(DispatchNamesAndNamedArguments) {
    Object vector(L"Vector");
    // vRotate(v, r): the member and its parameters by name, in any case.
    const Lookup ids = IdsOf(vector, {L"VROTATE", L"R", L"v"});
    Check(ids.hr == S_OK && ids.ids[1] == 1 && ids.ids[2] == 0,
          "member and parameter names in any case give their ids");
    const Lookup unknown = IdsOf(vector, {L"vRotate", L"angle"});
    Check(
        unknown.hr == DISP_E_UNKNOWNNAME && unknown.ids[0] == ids.ids[0] && unknown.ids[1] == DISPID_UNKNOWN,
        "an unknown parameter name is DISPID_UNKNOWN, the member's id still given");
    const Lookup missing = IdsOf(vector, {L"NoSuchMember"});
    Check(missing.hr == DISP_E_UNKNOWNNAME && missing.ids[0] == DISPID_UNKNOWN, "an unknown member name");

    // Named in reverse order: r := pi/2, v := (1, 0, 0) turns v a quarter to (0, 1, 0).
    double quarter = 1.5707963267948966;
    Var point = VariantArray({1, 0, 0});
    Var angle = Ref(&quarter);
    Var result;
    const HRESULT hr = RawInvoke(vector, ids.ids[0], DISPATCH_METHOD, {angle.v, point.v}, {1, 0}, &result.v);
    const std::vector<double> turned = SUCCEEDED(hr) ? Elements(result.v) : std::vector<double>{};
    Check(turned.size() >= 2 && std::fabs(turned[0]) < 1e-15 && std::fabs(turned[1] - 1) < 1e-15,
          "named arguments reach their parameters whatever their order");
}

CLIENT_TEST(DispatchArgumentCountsAndMalformedCalls) {
    Object geometry(L"Geometry");
    const DISPID degToRad = IdsOf(geometry, {L"DegToRad"}).ids[0];
    Var one(1.0), two(2.0), result;
    struct Case {
        const char* name;
        DISPID id;
        WORD flags;
        std::vector<VARIANT> args;
        HRESULT expected;
    };
    const Case cases[] = {
        {"no argument for a required parameter", degToRad, DISPATCH_METHOD, {}, DISP_E_PARAMNOTOPTIONAL},
        {"one argument too many", degToRad, DISPATCH_METHOD, {one.v, two.v}, DISP_E_BADPARAMCOUNT},
        {"an id no member has", 4242, DISPATCH_METHOD, {one.v}, DISP_E_MEMBERNOTFOUND},
        {"a method called as a property put", degToRad, DISPATCH_PROPERTYPUT, {one.v}, DISP_E_MEMBERNOTFOUND},
    };
    for (const Case& c : cases) {
        std::vector<DISPID> named;
        if (c.flags == DISPATCH_PROPERTYPUT) named.push_back(DISPID_PROPERTYPUT);
        const HRESULT hr = RawInvoke(geometry, c.id, c.flags, c.args, named, &result.v);
        Check(hr == c.expected, c.name, "HRESULT " + std::to_string(static_cast<unsigned long>(hr)));
    }
    DISPPARAMS broken{nullptr, nullptr, 1, 0};
    Check(geometry->Invoke(degToRad, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &broken, &result.v,
                           nullptr, nullptr) == E_INVALIDARG,
          "an argument count without arguments is refused");
}

}  // namespace client
