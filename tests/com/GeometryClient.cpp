// Geometry and profile classes from C++: arrays of Double, lower bounds, typed by-reference
// variables as VBA passes them, the CAD entity's Move calls and hostile arrays.
#include "Client.h"
#include "StackDispatch.h"

using namespace client;

namespace {

// A CAD entity that records its Move calls.
class RecordingEntity final : public StackDispatch {
  public:
    int moves = 0;
    std::vector<double> lastTo;
    VARTYPE argumentType = VT_EMPTY;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        if (std::wstring(names[0]) != L"Move") return DISP_E_UNKNOWNNAME;
        *ids = 7;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        if (id != 7 || params->cArgs != 2) return DISP_E_BADPARAMCOUNT;
        ++moves;
        argumentType = V_VT(&params->rgvarg[0]);
        lastTo = Elements(params->rgvarg[0]);  // the last argument comes first
        return S_OK;
    }
};

}  // namespace

CLIENT_TEST(ArraysOfDouble) {
    Object vector(L"Vector");
    struct Case {
        const char* name;
        Outcome outcome;
        VARTYPE type;
        std::vector<double> expected;
    };
    const Case cases[] = {
        {"vplusv",
         Method(vector, L"vplusv", {VariantArray({1, 2, 3}), DoubleArray({1, 1})}),
         VT_R8,
         {2, 3, 0}},
        {"vxv", Method(vector, L"vxv", {DoubleArray({1, 0, 0}), DoubleArray({0, 1, 0})}), VT_R8, {0, 0, 1}},
        {"UnitVec", Method(vector, L"UnitVec", {DoubleArray({3, 4})}), VT_R8, {0.6, 0.8}},
        {"vRotate is a Variant array",
         Method(vector, L"vRotate", {DoubleArray({1, 0}), Var(0.0)}),
         VT_VARIANT,
         {1, 0}},
        {"vProjectTo is a Variant array",
         Method(vector, L"vProjectTo", {DoubleArray({3, 4}), DoubleArray({1, 0})}),
         VT_VARIANT,
         {3, 0}},
        {"lower bound 1 is read from its first element",
         Method(vector, L"VectorAB", {DoubleArray({1, 1}, 1), DoubleArray({4, 5}, -5)}),
         VT_R8,
         {3, 4}},
    };
    for (const Case& c : cases) {
        VARTYPE type = VT_EMPTY;
        LONG lower = -1;
        std::vector<double> values = Elements(c.outcome.result.v, &type, &lower);
        Check(c.outcome.number == 0, std::string(c.name) + " succeeds", Narrow(c.outcome.description));
        Check(type == c.type, std::string(c.name) + " element type");
        Check(lower == 0, std::string(c.name) + " is zero-based");
        Check(values.size() == c.expected.size(), std::string(c.name) + " element count");
        for (std::size_t i = 0; i < values.size() && i < c.expected.size(); ++i)
            CheckNear(values[i], c.expected[i], std::string(c.name) + " element " + std::to_string(i));
    }
    Object matrix(L"Matrix");
    Method(matrix, L"Reset", {Var(2), Var(3)});
    Method(matrix, L"LetItem", {Var(1), Var(2), Var(5.0)});
    Outcome array = Get(matrix, L"Array2D");
    SAFEARRAY* sa = V_VT(&array.result.v) == (VT_ARRAY | VT_R8) ? V_ARRAY(&array.result.v) : nullptr;
    Check(sa && SafeArrayGetDim(sa) == 2, "Array2D is a two-dimensional array of Double");
    if (sa) {
        LONG rows = 0, cols = 0;
        SafeArrayGetUBound(sa, 1, &rows);
        SafeArrayGetUBound(sa, 2, &cols);
        Check(rows == 1 && cols == 2, "Array2D bounds are (0 To 1, 0 To 2)");
        LONG at[2] = {1, 2};
        double value = 0;
        SafeArrayGetElement(sa, at, &value);
        Check(value == 5, "Array2D(1, 2) holds the item set");
    }
}

CLIENT_TEST(TypedByReferenceVariables) {
    Object geometry(L"Geometry");
    // VBA passes a typed Double variable as VT_BYREF|VT_R8 and a Variant one as VT_BYREF|VT_VARIANT.
    const double twoPi = 6.28318530717958;
    double angle = -1.5707963267949;
    Check(Method(geometry, L"FixAngle360", {Ref(&angle)}).number == 0, "FixAngle360 with a Double variable");
    CheckNear(angle, twoPi - 1.5707963267949, "Double variable changed in place");
    float single = 7;
    Method(geometry, L"FixAngle360", {Ref(&single)});
    CheckNear(single, 7 - twoPi, "Single variable keeps its type", 1e-6);
    Var variable(L"7");
    Method(geometry, L"FixAngle360", {Ref(&variable.v)});
    Check(V_VT(&variable.v) == VT_R8, "a Variant variable holding text receives a Double");
    CheckNear(V_R8(&variable.v), 7 - twoPi, "Variant variable changed in place");
    LONG asLong = 14;
    Method(geometry, L"FixAngle360", {Ref(&asLong)});
    Check(asLong == 1, "a Long variable keeps its type (14 - 2 pi, rounded)", std::to_string(asLong));
    Var value(20.0);
    Method(geometry, L"FixAngle360", {value});
    Check(V_R8(&value.v) == 20, "a value passed by value is left as it was");
    double x = 1.0000001;
    Method(geometry, L"ACos", {Ref(&x)});
    Check(x == 1, "ACos snaps the caller's Double to 1");
    VARIANT_BOOL rotate = VARIANT_FALSE;
    double four = 4;
    Method(geometry, L"FixAngle180", {Ref(&four), Ref(&rotate)});
    Check(rotate == VARIANT_TRUE, "Boolean variable receives Rotate180");

    VARIANT returned;
    VariantInit(&returned);
    Method(geometry, L"RotatePoint",
           {DoubleArray({1, 0, 0}), DoubleArray({0, 0, 0}), DoubleArray({0, 0, 1}), Var(1.5707963267949),
            Ref(&returned)});
    VARTYPE type = VT_EMPTY;
    std::vector<double> point = Elements(returned, &type);
    Check(type == VT_R8 && point.size() == 3, "RotatePoint's ReturnPoint is an array of three Double");
    if (point.size() == 3) CheckNear(point[1], 1, "RotatePoint turned y");
    VariantClear(&returned);

    Object matrix(L"Matrix");
    Method(matrix, L"Reset", {Var(2), Var(2)});
    Method(matrix, L"LetItem", {Var(0), Var(0), Var(2.0)});
    Method(matrix, L"LetItem", {Var(1), Var(1), Var(3.0)});
    VARIANT gauss;
    VariantInit(&gauss);
    Outcome det = Method(matrix, L"Det", {Var(), Ref(&gauss)});
    Check(det.result.AsDouble() == 6, "Det");
    Check(V_VT(&gauss) == (VT_ARRAY | VT_R8) && SafeArrayGetDim(V_ARRAY(&gauss)) == 2,
          "GaussMatrix receives a 2-D array");
    VariantClear(&gauss);
}

// A typed array variable as VBA passes it (`Dim r(2) As Single`): VT_BYREF|VT_ARRAY of its type.
struct TypedArrayVariable {
    SAFEARRAY* array = nullptr;
    TypedArrayVariable(VARTYPE type, LONG lowerBound, ULONG count, USHORT features = 0) {
        SAFEARRAYBOUND bound{count, lowerBound};
        array = SafeArrayCreate(type, 1, &bound);
        array->fFeatures |= features;
    }
    ~TypedArrayVariable() {
        if (!array) return;
        array->fFeatures &= static_cast<USHORT>(~(FADF_FIXEDSIZE | FADF_STATIC));
        SafeArrayDestroy(array);
    }
    Var Ref() {
        Var ref;
        V_VT(&ref.v) = VT_BYREF | VT_ARRAY | SafeArrayElementType();
        V_ARRAYREF(&ref.v) = &array;
        return ref;
    }
    VARTYPE SafeArrayElementType() const {
        VARTYPE type = VT_EMPTY;
        SafeArrayGetVartype(array, &type);
        return type;
    }
};

CLIENT_TEST(ResultPointsInTheCallersVariable) {
    Object geometry(L"Geometry");
    auto rotate = [&](Var target) {
        return Method(geometry, L"RotatePoint",
                      {DoubleArray({1, 0, 0}), DoubleArray({0, 0, 0}), DoubleArray({0, 0, 1}),
                       Var(1.5707963267949), target});
    };
    // A Variant receives an array of Double whatever it held, a Variant array included.
    VARIANT variable;
    VariantInit(&variable);
    V_VT(&variable) = VT_BSTR;
    V_BSTR(&variable) = SysAllocString(L"text");
    rotate(Ref(&variable));
    Check(V_VT(&variable) == (VT_ARRAY | VT_R8), "a text Variant receives an array of Double");
    VariantClear(&variable);
    Var variants = VariantArray({9, 9, 9});
    VariantCopy(&variable, &variants.v);
    rotate(Ref(&variable));
    Check(V_VT(&variable) == (VT_ARRAY | VT_R8),
          "a Variant holding a Variant array receives an array of Double");
    VariantClear(&variable);

    // A typed array variable is filled in its own type, its bounds kept.
    TypedArrayVariable singles(VT_R4, 1, 3);
    Check(rotate(singles.Ref()).number == 0, "RotatePoint into a Single array variable");
    float y = 0;
    LONG at = 2;
    SafeArrayGetElement(singles.array, &at, &y);
    Check(singles.SafeArrayElementType() == VT_R4 && std::fabs(y - 1) < 1e-6,
          "the Single array holds the point from its lower bound 1");
    TypedArrayVariable integers(VT_I2, 0, 3);
    rotate(integers.Ref());
    short yInteger = 0;
    at = 1;
    SafeArrayGetElement(integers.array, &at, &yInteger);
    Check(integers.SafeArrayElementType() == VT_I2 && yInteger == 1,
          "an Integer array variable receives rounded coordinates");
    // A dynamic array of another length is given a new one of its type; a fixed-size one cannot be.
    TypedArrayVariable dynamic(VT_R8, 0, 1);
    rotate(dynamic.Ref());
    Check(dynamic.array && dynamic.array->rgsabound[0].cElements == 3,
          "a dynamic Double array variable is redimensioned");
    TypedArrayVariable fixed(VT_R8, 0, 5, FADF_FIXEDSIZE | FADF_STATIC);
    Check(rotate(fixed.Ref()).number == 9, "a fixed-size array variable of another length raises 9");

    // UCS translations write back the same way.
    Object system(L"UCS");
    Object world(L"UCS");
    Method(system, L"Move", {DoubleArray({0, 0, 0}), DoubleArray({10, 0, 0})});
    TypedArrayVariable point(VT_R4, 0, 3);
    float one = 1;
    at = 0;
    SafeArrayPutElement(point.array, &at, &one);
    Var worldObject(static_cast<IDispatch*>(world));
    Method(system, L"TranslateFromUCS", {point.Ref(), worldObject});
    float x = 0;
    SafeArrayGetElement(point.array, &at, &x);
    Check(point.SafeArrayElementType() == VT_R4 && x == -9, "TranslateFromUCS fills a Single array variable");
}

CLIENT_TEST(EntityMove) {
    Object loop(L"Loop7");
    Method(loop, L"InitFromCoordinates", {DoubleArray({0, 0, 10, 0, 10, 10}), DoubleArray({0, 0, 0})});
    RecordingEntity entity;
    Var object(static_cast<IDispatch*>(&entity));
    Check(Call(loop, L"AcadEntity", DISPATCH_PROPERTYPUTREF, {object}).number == 0, "Set AcadEntity");
    Method(loop, L"Move", {DoubleArray({2, 3, 0}), Var(true)});
    Check(entity.moves == 1, "Move with MoveAcad calls the entity's Move once");
    Check(entity.argumentType == (VT_ARRAY | VT_R8), "the entity receives arrays of Double");
    Check(entity.lastTo.size() >= 2 && entity.lastTo[0] == 2 && entity.lastTo[1] == 3, "to the displacement");
    Method(loop, L"Move", {DoubleArray({2, 3, 0})});
    Check(entity.moves == 1, "Move without MoveAcad leaves the entity");
    Call(loop, L"AcadEntity", DISPATCH_PROPERTYPUTREF, {Var(static_cast<IDispatch*>(nullptr))});
    VariantClear(&object.v);
    Check(entity.references() == 1, "the loop released the entity");
}

CLIENT_TEST(HostileArrays) {
    Object vector(L"Vector");
    const Var nothing = Typed(VT_DISPATCH), text(L"1,2");
    struct Case {
        const char* name;
        Var argument;
        int number;
    };
    const Case cases[] = {
        {"two-dimensional array", ArrayOf(VT_R8, 2, 2), 13},
        {"NaN element", DoubleArray({1, std::nan("")}), 6},
        {"infinite element", DoubleArray({HUGE_VAL, 0}), 6},
        {"Nothing", nothing, 13},
        {"text", text, 13},
        {"empty array", DoubleArray({}), 0},
    };
    for (const Case& c : cases) {
        Outcome outcome = Method(vector, L"vLength", {c.argument});
        Check(outcome.number == c.number, std::string("vLength of ") + c.name,
              "got " + std::to_string(outcome.number));
    }
    Object ucs(L"UCS");
    Outcome nothingUcs = Method(ucs, L"ParallelTo", {nothing});
    Check(nothingUcs.number == 424, "Nothing where a UCS is needed raises 424");
    Object matrix(L"Matrix");
    Check(Put(matrix, L"Array2D", {DoubleArray({1, 2})}).number == 13, "a one-dimensional Array2D raises 13");
    Check(Method(matrix, L"LetItem", {Var(0), Var(0), Var(std::nan(""))}).number != 0,
          "NaN into a matrix raises an error");
    Check(Method(Object(L"Geometry"), L"DegToRad", {Var(HUGE_VAL)}).number == 6, "infinite angle raises 6");
}
