#include "Variants.h"

#include <cmath>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>

#include "LateBound.h"
#include "NativeObject.h"
#include "Strings.h"
#include "core/Error.h"
#include "units/NumberText.h"
#include "units/RuntimeInteger.h"
#include "units/UnitSetting.h"

namespace tgp::automation {
namespace {

// Variants convert as the runtime does, but independent of the user's locale (a decimal comma
// must not change what "2.5" means).
const LCID kInvariant = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

ScopedVariant& Converted(const VARIANT& value, VARTYPE type, ScopedVariant& into) {
    HRESULT hr = VariantChangeTypeEx(&into.get(), const_cast<VARIANT*>(&Deref(value)), kInvariant, 0, type);
    if (hr == DISP_E_OVERFLOW) throw Error::Overflow();
    if (FAILED(hr)) throw Error::TypeMismatch();
    return into;
}

bool IsObject(const VARIANT& value) {
    VARTYPE type = V_VT(&value);
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

// A foreign object that names units through a UnitID(DimensionType) member, asked late-bound.
class LateBoundUnitSource final : public UnitIdSource {
  public:
    explicit LateBoundUnitSource(IDispatch* object) : object_(object) { object_->AddRef(); }
    ~LateBoundUnitSource() override { object_->Release(); }
    LateBoundUnitSource(const LateBoundUnitSource&) = delete;
    LateBoundUnitSource& operator=(const LateBoundUnitSource&) = delete;

    int16_t UnitID(DimensionObjectType DimensionType) const override {
        VARIANT kind;
        V_VT(&kind) = VT_I4;
        V_I4(&kind) = DimensionType;
        ScopedVariant result;
        CallByName(object_, L"UnitID", DISPATCH_PROPERTYGET | DISPATCH_METHOD, {kind}, &result);
        return ToInteger16(result.get());
    }

  private:
    IDispatch* object_;
};

// The element at indices (counted from the lower bounds, leftmost index first) as a VARIANT.
void ReadElement(SAFEARRAY* array, VARTYPE elementType, LONG* indices, ScopedVariant& into) {
    VARIANT& element = into.get();
    void* slot =
        elementType == VT_VARIANT ? static_cast<void*>(&element) : static_cast<void*>(&V_UI1(&element));
    if (FAILED(SafeArrayGetElement(array, indices, slot))) throw Error::SubscriptOutOfRange();
    if (elementType != VT_VARIANT) V_VT(&element) = elementType;
}

// Stores a number at indices of an array of Double or of Variants.
void PutDouble(SAFEARRAY* array, VARTYPE elementType, LONG* indices, double value) {
    VARIANT element;
    V_VT(&element) = VT_R8;
    V_R8(&element) = value;
    SafeArrayPutElement(
        array, indices,
        elementType == VT_R8 ? static_cast<void*>(&V_R8(&element)) : static_cast<void*>(&element));
}

// A script's array of arrays ([[1, 2], [3, 4]]) as a two-dimensional array of Variants, the outer
// index the row; rows of unequal length are 13.
void CopyScriptRows(const VARIANT& rows, ScopedVariant& into) {
    std::deque<ScopedVariant> cells;  // row by row (a deque: its elements never move)
    std::size_t rowCount = 0, columns = 0;
    VisitElements(rows, SIZE_MAX, [&](const VARIANT& row) {
        const std::size_t length = VisitElements(row, SIZE_MAX, [&](const VARIANT& element) {
            VariantCopy(&cells.emplace_back().get(), const_cast<VARIANT*>(&element));
        });
        if (rowCount++ == 0) columns = length;
        if (length != columns) throw Error::TypeMismatch();
    });
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rowCount), 0}, {static_cast<ULONG>(columns), 0}};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (!array) throw std::bad_alloc();
    V_VT(&into.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&into.get()) = array;
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        LONG indices[2] = {static_cast<LONG>(cell / columns), static_cast<LONG>(cell % columns)};
        SafeArrayPutElement(array, indices, &cells[cell].get());
    }
}

// The array a (possibly by-reference) Variant holds, with the given number of dimensions; a
// script's array object is copied into `holder` and read from there (one-dimensional, or a list
// of rows for two); 13 for anything else.
SAFEARRAY* ArrayOf(const VARIANT& value, UINT dimensions, VARTYPE& elementType, ScopedVariant& holder) {
    const VARIANT* held = &AsSafeArray(value, holder);
    if (dimensions == 2 && held == &holder.get()) {  // a script's list of rows
        ScopedVariant rows;
        std::swap(rows.get(), holder.get());
        CopyScriptRows(rows.get(), holder);
    }
    const VARIANT& v = *held;
    if (!(V_VT(&v) & VT_ARRAY)) throw Error::TypeMismatch();
    SAFEARRAY* array = (V_VT(&v) & VT_BYREF) ? *V_ARRAYREF(&v) : V_ARRAY(&v);
    if (!array || SafeArrayGetDim(array) != dimensions) throw Error::TypeMismatch();
    elementType = V_VT(&v) & VT_TYPEMASK;
    return array;
}

// The index range of one dimension of an array (dimensions counted from 1, leftmost first); empty
// when upper < lower.
struct Bounds {
    LONG lower = 0;
    LONG upper = -1;
    LONG count() const { return upper - lower + 1; }
};

Bounds BoundsOf(SAFEARRAY* array, UINT dimension) {
    Bounds bounds;
    SafeArrayGetLBound(array, dimension, &bounds.lower);
    SafeArrayGetUBound(array, dimension, &bounds.upper);
    return bounds;
}

SAFEARRAY* NewDoubleArray(const std::vector<double>& values, VARTYPE elementType) {
    SAFEARRAY* array = SafeArrayCreateVector(elementType, 0, static_cast<ULONG>(values.size()));
    if (!array) throw std::bad_alloc();
    for (LONG i = 0; i < static_cast<LONG>(values.size()); ++i)
        PutDouble(array, elementType, &i, values[static_cast<std::size_t>(i)]);
    return array;
}

// Visits the elements of a one-dimensional array in index order, whatever its lower bound.
template <class Visit>
void ForEachElement(const VARIANT& value, Visit&& visit) {
    VARTYPE elementType = VT_EMPTY;
    ScopedVariant holder;
    SAFEARRAY* array = ArrayOf(value, 1, elementType, holder);
    Bounds bounds = BoundsOf(array, 1);
    if (elementType == VT_VARIANT && array->cbElements == sizeof(VARIANT) &&
        SUCCEEDED(SafeArrayLock(array))) {
        // The elements in place (locked meanwhile): no copy of each one, the common case of a
        // script's Array(x, y, z).
        struct Unlock {
            SAFEARRAY* array;
            ~Unlock() { SafeArrayUnlock(array); }
        } unlock{array};
        const VARIANT* elements = static_cast<const VARIANT*>(array->pvData);
        for (LONG i = 0; i < bounds.count(); ++i) visit(elements[i]);
        return;
    }
    for (LONG i = bounds.lower; i <= bounds.upper; ++i) {
        ScopedVariant element;
        ReadElement(array, elementType, &i, element);
        visit(element.get());
    }
}

}  // namespace

const VARIANT& Deref(const VARIANT& value) {
    const VARIANT* v = &value;
    while (V_VT(v) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(v)) v = V_VARIANTREF(v);
    return *v;
}

VARIANT& Deref(VARIANT& value) {
    return const_cast<VARIANT&>(Deref(static_cast<const VARIANT&>(value)));
}

namespace {
// Set once a script array came in on this thread: its caller is a script engine (JScript) that
// reads arrays of Variants only.
thread_local bool scriptArraysSeen = false;
}  // namespace

bool CallerReadsOnlyVariantArrays() {
    return scriptArraysSeen;
}

const VARIANT& AsSafeArray(const VARIANT& value, ScopedVariant& holder) {
    const VARIANT& v = Deref(value);
    if (V_VT(&v) != VT_DISPATCH || !CopyScriptArray(V_DISPATCH(&v), &holder.get())) return v;
    scriptArraysSeen = true;
    return holder.get();
}

bool IsMissing(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    return V_VT(&v) == VT_EMPTY || (V_VT(&v) == VT_ERROR && V_ERROR(&v) == DISP_E_PARAMNOTFOUND);
}

bool IsOmitted(const VARIANT* value) {
    if (!value) return true;
    const VARIANT& v = Deref(*value);
    return V_VT(&v) == VT_ERROR && V_ERROR(&v) == DISP_E_PARAMNOTFOUND;
}

bool IsNothing(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    if (V_VT(&v) == (VT_BYREF | VT_DISPATCH)) return !V_DISPATCHREF(&v) || !*V_DISPATCHREF(&v);
    return IsObject(v) && !V_UNKNOWN(&v);
}

bool HasValue(const VARIANT& value) {
    return !IsMissing(value) && !IsNothing(value);
}

double Finite(double value) {
    if (!std::isfinite(value)) throw Error::Overflow();
    return value;
}

double ToDouble(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    switch (V_VT(&v)) {  // the common numbers without a conversion call
        case VT_R8: return Finite(V_R8(&v));
        case VT_I4: return V_I4(&v);
        case VT_I2: return V_I2(&v);
        case VT_BSTR: {
            // Text reads as the number-text service reads it (a decimal point, or a comma where the
            // number has none: the "2,5" of a macro under a decimal-comma locale); the runtime's
            // other forms ("&H10", "1,000.5") through its own conversion.
            try {
                return ReadWholeNumber(ToUtf8(V_BSTR(&v)));
            } catch (const Error& e) {
                if (e.number() != Error::TypeMismatch().number()) throw;
            }
            break;
        }
        default: break;
    }
    ScopedVariant converted;
    return Finite(V_R8(&Converted(value, VT_R8, converted).get()));
}

int16_t ToInteger16(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    ScopedVariant converted;
    if (V_VT(&v) == VT_BSTR) return V_I2(&Converted(v, VT_I2, converted).get());
    return tgp::ToInteger16(ToDouble(v));
}

int32_t ToInteger32(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    ScopedVariant converted;
    if (V_VT(&v) == VT_BSTR) return V_I4(&Converted(v, VT_I4, converted).get());
    return tgp::ToInteger32(ToDouble(v));
}

std::size_t VisitElements(const VARIANT& value, std::size_t limit,
                          const std::function<void(const VARIANT&)>& visit) {
    VARTYPE elementType = VT_EMPTY;
    ScopedVariant holder;
    SAFEARRAY* array = ArrayOf(value, 1, elementType, holder);
    const Bounds bounds = BoundsOf(array, 1);
    std::size_t visited = 0;
    for (LONG i = bounds.lower; i <= bounds.upper && visited < limit; ++i, ++visited) {
        ScopedVariant element;
        ReadElement(array, elementType, &i, element);
        visit(element.get());
    }
    return visited;
}

bool ToBool(const VARIANT& value) {
    ScopedVariant converted;
    return V_BOOL(&Converted(value, VT_BOOL, converted).get()) != VARIANT_FALSE;
}

std::string ToText(const VARIANT& value) {
    ScopedVariant converted;
    return ToUtf8(V_BSTR(&Converted(value, VT_BSTR, converted).get()));
}

IDispatch* ToObject(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    if (V_VT(&v) == (VT_BYREF | VT_DISPATCH)) return V_DISPATCHREF(&v) ? *V_DISPATCHREF(&v) : nullptr;
    if (!IsObject(v)) throw Error::TypeMismatch();
    return V_DISPATCH(&v);  // VT_UNKNOWN objects are asked for IDispatch by their users
}

Point ToPoint(const VARIANT& value) {
    Point point;
    point.reserve(3);
    ForEachElement(value, [&](const VARIANT& element) { point.push_back(ToDouble(element)); });
    return point;
}

bool IsArrayOfArrays(const VARIANT& value) {
    VARTYPE elementType = VT_EMPTY;
    ScopedVariant holder;
    const VARIANT& v = AsSafeArray(value, holder);
    if (!(V_VT(&v) & VT_ARRAY)) return false;
    SAFEARRAY* array = ArrayOf(v, 1, elementType, holder);
    if (elementType != VT_VARIANT) return false;
    Bounds bounds = BoundsOf(array, 1);
    if (bounds.count() <= 0) return false;
    ScopedVariant first, firstHolder;
    ReadElement(array, elementType, &bounds.lower, first);
    return (V_VT(&AsSafeArray(first.get(), firstHolder)) & VT_ARRAY) != 0;
}

std::vector<Point> ToPoints(const VARIANT& value) {
    std::vector<Point> points;
    ForEachElement(value, [&](const VARIANT& element) { points.push_back(ToPoint(element)); });
    return points;
}

Array2DData ToArray2D(const VARIANT& value) {
    VARTYPE elementType = VT_EMPTY;
    ScopedVariant holder;
    SAFEARRAY* array = ArrayOf(value, 2, elementType, holder);
    Bounds rowBounds = BoundsOf(array, 1);
    Bounds colBounds = BoundsOf(array, 2);
    long rows = rowBounds.count();
    long cols = colBounds.count();
    if (rows > 32767 || cols > 32767) throw Error::Overflow();
    Array2DData result(static_cast<int>(rows), static_cast<int>(cols));
    for (LONG i = 0; i < rows; ++i) {
        for (LONG j = 0; j < cols; ++j) {
            LONG indices[2] = {rowBounds.lower + i, colBounds.lower + j};  // leftmost (row) index first
            ScopedVariant element;
            ReadElement(array, elementType, indices, element);
            result(static_cast<int>(i), static_cast<int>(j)) = ToDouble(element.get());
        }
    }
    return result;
}

void SetArray2D(VARIANT* result, const Array2DData& data) {
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(data.rows), 0}, {static_cast<ULONG>(data.cols), 0}};
    const VARTYPE elementType = CallerReadsOnlyVariantArrays() ? VT_VARIANT : VT_R8;
    SAFEARRAY* array = SafeArrayCreate(elementType, 2, bounds);
    if (!array) throw std::bad_alloc();
    for (LONG i = 0; i < data.rows; ++i) {
        for (LONG j = 0; j < data.cols; ++j) {
            LONG indices[2] = {i, j};
            PutDouble(array, elementType, indices, data(static_cast<int>(i), static_cast<int>(j)));
        }
    }
    VariantInit(result);
    V_VT(result) = VT_ARRAY | elementType;
    V_ARRAY(result) = array;
}

UnitArg ToUnitArg(const VARIANT& value) {
    const VARIANT& v = Deref(value);
    if (IsMissing(v) || IsNothing(v)) return {};
    if (V_VT(&v) == VT_BSTR) return UnitArg(ToInteger16(v));  // the runtime's conversion: "&H3" is 3
    if (!IsObject(v) && V_VT(&v) != (VT_BYREF | VT_DISPATCH)) return UnitArg(ToDouble(v));
    IDispatch* object = ToObject(v);
    if (auto setting = NativeOf<UnitSetting>(object)) return UnitArg(setting);
    IDispatch* dispatch = nullptr;
    if (FAILED(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch))))
        throw Error::TypeMismatch();
    auto source = std::make_shared<LateBoundUnitSource>(dispatch);
    dispatch->Release();
    return UnitArg(std::shared_ptr<const UnitIdSource>(source));
}

void SetDoubleArray(VARIANT* result, const std::vector<double>& values) {
    if (CallerReadsOnlyVariantArrays()) return SetVariantArray(result, values);
    VariantInit(result);
    V_ARRAY(result) = NewDoubleArray(values, VT_R8);
    V_VT(result) = VT_ARRAY | VT_R8;
}

void SetVariantArray(VARIANT* result, const std::vector<double>& values) {
    VariantInit(result);
    V_ARRAY(result) = NewDoubleArray(values, VT_VARIANT);
    V_VT(result) = VT_ARRAY | VT_VARIANT;
}

void SetPointList(VARIANT* result, const std::vector<Point>& points) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(points.size()));
    if (!array) throw std::bad_alloc();
    VariantInit(result);
    V_VT(result) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(result) = array;
    for (LONG i = 0; i < static_cast<LONG>(points.size()); ++i) {
        ScopedVariant point;
        SetDoubleArray(&point.get(), points[static_cast<std::size_t>(i)]);
        SafeArrayPutElement(array, &i, &point.get());
    }
}

void SetDouble(VARIANT* result, double value) {
    VariantInit(result);
    V_VT(result) = VT_R8;
    V_R8(result) = value;
}

void SetBool(VARIANT* result, bool value) {
    VariantInit(result);
    V_VT(result) = VT_BOOL;
    V_BOOL(result) = ToVariantBool(value);
}

void WriteBack(VARIANT* target, const VARIANT& value) {
    if (!target) return;
    VARIANT& slot = Deref(*target);
    if (!(V_VT(&slot) & VT_BYREF)) {
        VariantCopy(&slot, const_cast<VARIANT*>(&value));
        return;
    }
    // A typed variable: convert to its type and store through the reference.
    VARTYPE type = V_VT(&slot) & ~VT_BYREF;
    ScopedVariant converted;
    Converted(value, type, converted);
    VARIANT& c = converted.get();
    switch (type) {
        case VT_R8: *V_R8REF(&slot) = V_R8(&c); break;
        case VT_R4: *V_R4REF(&slot) = V_R4(&c); break;
        case VT_I2: *V_I2REF(&slot) = V_I2(&c); break;
        case VT_I4: *V_I4REF(&slot) = V_I4(&c); break;
        case VT_BOOL: *V_BOOLREF(&slot) = V_BOOL(&c); break;
        case VT_UI1: *V_UI1REF(&slot) = V_UI1(&c); break;
        case VT_CY: *V_CYREF(&slot) = V_CY(&c); break;
        case VT_DATE: *V_DATEREF(&slot) = V_DATE(&c); break;
        case VT_BSTR:
            SysFreeString(*V_BSTRREF(&slot));
            *V_BSTRREF(&slot) = V_BSTR(&c);
            V_VT(&c) = VT_EMPTY;  // ownership moved to the caller's variable
            break;
        default: throw Error::TypeMismatch();
    }
}

void WriteBack(VARIANT* target, double value) {
    VARIANT v;
    V_VT(&v) = VT_R8;
    V_R8(&v) = value;
    WriteBack(target, v);
}

void WriteBack(VARIANT* target, bool value) {
    VARIANT v;
    V_VT(&v) = VT_BOOL;
    V_BOOL(&v) = ToVariantBool(value);
    WriteBack(target, v);
}

namespace {

// Stores a value at indices of an array, converted to the array's element type.
void PutConverted(SAFEARRAY* array, VARTYPE elementType, LONG* indices, const VARIANT& value) {
    if (elementType == VT_VARIANT) {
        if (FAILED(SafeArrayPutElement(array, indices, const_cast<VARIANT*>(&value))))
            throw Error::SubscriptOutOfRange();
        return;
    }
    ScopedVariant converted;
    Converted(value, elementType, converted);
    VARIANT& c = converted.get();
    void* data = elementType == VT_BSTR ? static_cast<void*>(V_BSTR(&c)) : static_cast<void*>(&V_UI1(&c));
    if (FAILED(SafeArrayPutElement(array, indices, data))) throw Error::SubscriptOutOfRange();
}

VARIANT DoubleValue(double value) {
    VARIANT v;
    V_VT(&v) = VT_R8;
    V_R8(&v) = value;
    return v;
}

}  // namespace

// A Variant variable receives a new array of Double, whatever it held before; a typed array variable
// (VT_BYREF|VT_ARRAY of a type) is filled in its own type, in place when it has the point's length,
// else given a new array of its type (a fixed-size one cannot be, and raises 9).
void WritePointBack(VARIANT* target, const Point& point) {
    if (!target) return;
    VARIANT& slot = Deref(*target);
    if (!(V_VT(&slot) & VT_BYREF)) {
        VariantClear(&slot);
        SetDoubleArray(&slot, point);
        return;
    }
    if (!(V_VT(&slot) & VT_ARRAY)) throw Error::TypeMismatch();  // a typed scalar cannot hold a point
    const VARTYPE elementType = V_VT(&slot) & VT_TYPEMASK;
    SAFEARRAY*& array = *V_ARRAYREF(&slot);
    if (array && SafeArrayGetDim(array) == 1 &&
        BoundsOf(array, 1).count() == static_cast<LONG>(point.size())) {
        const LONG lower = BoundsOf(array, 1).lower;
        for (LONG i = 0; i < static_cast<LONG>(point.size()); ++i) {
            LONG index = lower + i;
            PutConverted(array, elementType, &index, DoubleValue(point[static_cast<std::size_t>(i)]));
        }
        return;
    }
    if (array && (array->fFeatures & (FADF_FIXEDSIZE | FADF_STATIC | FADF_EMBEDDED)))
        throw Error::SubscriptOutOfRange();
    SAFEARRAY* fresh = SafeArrayCreateVector(elementType, 0, static_cast<ULONG>(point.size()));
    if (!fresh) throw std::bad_alloc();
    try {
        for (LONG i = 0; i < static_cast<LONG>(point.size()); ++i)
            PutConverted(fresh, elementType, &i, DoubleValue(point[static_cast<std::size_t>(i)]));
    } catch (...) {
        SafeArrayDestroy(fresh);
        throw;
    }
    if (array) SafeArrayDestroy(array);
    array = fresh;
}

void ExchangeVariables(VARIANT* first, VARIANT* second, const Point& firstNow, const Point& secondNow) {
    VARIANT& a = Deref(*first);
    VARIANT& b = Deref(*second);
    if (!(V_VT(&a) & VT_BYREF) && !(V_VT(&b) & VT_BYREF)) {  // two Variants: their contents trade places
        std::swap(a, b);
        return;
    }
    if (V_VT(&a) == V_VT(&b) && (V_VT(&a) & VT_ARRAY)) {  // two array variables of one type
        std::swap(*V_ARRAYREF(&a), *V_ARRAYREF(&b));
        return;
    }
    WritePointBack(first, firstNow);
    WritePointBack(second, secondNow);
}

void ZeroElements(VARIANT* target, const std::vector<std::size_t>& positions) {
    if (!target || positions.empty()) return;
    VARTYPE elementType = VT_EMPTY;
    ScopedVariant holder;
    SAFEARRAY* array = ArrayOf(*target, 1, elementType, holder);
    const LONG lower = BoundsOf(array, 1).lower;
    VARIANT zero;
    V_VT(&zero) = VT_I2;  // what `v(i) = 0` stores in a Variant element
    V_I2(&zero) = 0;
    for (std::size_t position : positions) {
        LONG index = lower + static_cast<LONG>(position);
        PutConverted(array, elementType, &index, zero);
    }
}

std::shared_ptr<Quantity> QuantityOf(IUnknown* object) {
    if (!object) return nullptr;
    INativeObject* native = nullptr;
    if (FAILED(object->QueryInterface(__uuidof(INativeObject), reinterpret_cast<void**>(&native))))
        return nullptr;
    auto quantity = native->NativeQuantity();
    native->Release();
    return quantity;
}

}  // namespace tgp::automation
