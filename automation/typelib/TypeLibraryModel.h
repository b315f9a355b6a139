#pragma once

#include <map>
#include <string>
#include <vector>

#include "OleBase.h"

namespace tgp::automation::typelib {

// The published interface as its type library describes it, in plain data: what the reference
// pages, the installer's registry table and the help check are made from.

struct Parameter {
    std::wstring name;
    std::wstring type;         // as a macro author writes it: Double, String, Variant, DLength ...
    bool byReference = false;  // [in, out]: the caller's variable may be written
    bool optional = false;
    std::wstring defaultValue;  // empty when none
    bool paramArray = false;    // [vararg]: any number of values
};

struct Member {
    enum class Kind { Method, Property, Event };
    std::wstring name;
    std::wstring help;
    Kind kind = Kind::Method;
    long id = 0;
    bool readable = false;  // a property's get
    bool writable = false;  // a property's let or set
    bool byReferenceSet = false;
    bool hidden = false;                // restricted or hidden: not shown to macro authors
    std::vector<Parameter> parameters;  // without the value of a property let
    std::wstring returnType;            // empty for a Sub
};

struct EnumValue {
    std::wstring name;
    long value = 0;
};

struct TypeEntry {
    enum class Kind { Class, Interface, Events, Enumeration };
    std::wstring name;
    std::wstring help;
    Kind kind = Kind::Interface;
    GUID guid{};
    std::vector<Member> members;    // interfaces and events
    std::vector<EnumValue> values;  // enumerations
    std::wstring defaultInterface;  // classes
    std::wstring eventInterface;    // classes that raise events
};

struct LibraryModel {
    std::wstring name;
    std::wstring help;
    GUID libid{};
    unsigned short major = 0;
    unsigned short minor = 0;
    std::vector<TypeEntry> types;

    const TypeEntry* Find(const std::wstring& name) const;
};

// Reads the whole type library (the interface view of dual interfaces).
LibraryModel ReadTypeLibrary(ITypeLib* library);

// What the IDL says beside its declarations that a type library cannot carry: the comment after
// an enumeration value ("A3P_Triangle" -> "A proper triangle"), and the "///" lines above a class
// or the library (Markdown: a class's VBA example, the library's introduction).
struct IdlNotes {
    std::map<std::wstring, std::wstring> valueComments;
    std::map<std::wstring, std::wstring> blockComments;
};
IdlNotes ReadIdlNotes(const std::string& idlText);

std::wstring GuidText(const GUID& guid);

}  // namespace tgp::automation::typelib
