#include "ReferencePages.h"

#include <sstream>

namespace tgp::automation::typelib {
namespace {

std::string Utf8(const std::wstring& text) {
    std::string out;
    for (wchar_t c : text) {
        const auto code = static_cast<unsigned>(c);
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return out;
}

std::wstring ClassName(const std::wstring& interfaceName) {
    return interfaceName.size() > 1 && interfaceName[0] == L'_' ? interfaceName.substr(1) : interfaceName;
}

// The member as a macro author declares it: Function ValueToString(Unit As Variant, Optional
// NumberOfDigits As Integer = -2) As String.
std::wstring Signature(const Member& member) {
    std::wstring text;
    if (member.kind == Member::Kind::Event) {
        text = L"Event ";
    } else if (member.kind == Member::Kind::Property) {
        text = L"Property ";
    } else {
        text = member.returnType.empty() ? L"Sub " : L"Function ";
    }
    text += member.name;
    if (!member.parameters.empty() || member.kind != Member::Kind::Property) {
        text += L"(";
        for (std::size_t i = 0; i < member.parameters.size(); ++i) {
            const Parameter& p = member.parameters[i];
            if (i > 0) text += L", ";
            if (p.paramArray)
                text += L"ParamArray ";
            else if (p.optional)
                text += L"Optional ";
            if (p.byReference && !p.paramArray) text += L"ByRef ";
            text += p.name + L" As " + p.type;
            if (!p.defaultValue.empty()) text += L" = " + p.defaultValue;
        }
        text += L")";
    }
    if (!member.returnType.empty()) text += L" As " + ClassName(member.returnType);
    return text;
}

std::wstring Access(const Member& member) {
    if (member.kind != Member::Kind::Property) return L"";
    if (member.readable && member.writable) return member.byReferenceSet ? L"read, Set" : L"read, write";
    return member.readable ? L"read-only" : member.byReferenceSet ? L"Set only" : L"write-only";
}

void WriteMember(std::wostringstream& page, const Member& member) {
    page << L"### " << member.name << L"\n\n```vb\n" << Signature(member) << L"\n```\n\n";
    std::wstring facts = Access(member);
    if (member.id == 0) facts += std::wstring(facts.empty() ? L"" : L"; ") + L"the default member";
    if (!facts.empty()) page << L"*" << facts << L"*\n\n";
    page << member.help << L"\n\n";
}

std::string ClassPage(const LibraryModel& library, const TypeEntry& type, const IdlNotes& notes) {
    std::wostringstream page;
    page << L"# " << type.name << L"\n\n"
         << type.help << L"\n\n```vb\nSet obj = CreateObject(\"" << library.name << L"." << type.name
         << L"\")\n```\n\n";
    if (const auto example = notes.blockComments.find(type.name); example != notes.blockComments.end())
        page << L"## Example\n\n```vb\n" << example->second << L"```\n\n";
    const TypeEntry* members = library.Find(type.defaultInterface);
    if (members) {
        page << L"## Members\n\n" << L"Interface `" << members->name << L"`: " << members->help << L"\n\n";
        for (const Member& member : members->members)
            if (!member.hidden) WriteMember(page, member);
    }
    if (const TypeEntry* events = library.Find(type.eventInterface)) {
        page << L"## Events\n\n";
        for (const Member& member : events->members) WriteMember(page, member);
    }
    page << L"[Back to the index](README.md)\n";
    return Utf8(page.str());
}

std::string EnumerationsPage(const LibraryModel& library, const IdlNotes& notes) {
    std::wostringstream page;
    page << L"# Enumerations\n\nThe named constants of the type library; a macro may pass the name (with the "
            L"library referenced) or the number.\n\n";
    for (const TypeEntry& type : library.types) {
        if (type.kind != TypeEntry::Kind::Enumeration) continue;
        page << L"## " << type.name << L"\n\n"
             << type.help << L"\n\n| name | value | meaning |\n|---|---|---|\n";
        for (const EnumValue& value : type.values) {
            const auto comment = notes.valueComments.find(value.name);
            page << L"| `" << value.name << L"` | " << value.value << L" | "
                 << (comment == notes.valueComments.end() ? L"" : comment->second) << L" |\n";
        }
        page << L"\n";
    }
    page << L"[Back to the index](README.md)\n";
    return Utf8(page.str());
}

std::string IndexPage(const LibraryModel& library, const IdlNotes& notes) {
    std::wostringstream page;
    page << L"# " << library.help << L" " << library.major << L"." << library.minor << L" reference\n\n";
    if (const auto intro = notes.blockComments.find(library.name); intro != notes.blockComments.end())
        page << intro->second << L"\n";
    page << L"## Classes\n\n| class | what it is |\n|---|---|\n";
    for (const TypeEntry& type : library.types)
        if (type.kind == TypeEntry::Kind::Class)
            page << L"| [" << type.name << L"](" << type.name << L".md) | " << type.help << L" |\n";
    page << L"\n[Enumerations](Enumerations.md): ";
    bool first = true;
    for (const TypeEntry& type : library.types)
        if (type.kind == TypeEntry::Kind::Enumeration) {
            page << (first ? L"" : L", ") << L"`" << type.name << L"`";
            first = false;
        }
    page << L".\n\nThis reference is generated from the type library and its IDL "
            L"(`scripts/reference`); edit those, not these pages.\n";
    return Utf8(page.str());
}

}  // namespace

std::map<std::string, std::string> ReferencePages(const LibraryModel& library, const IdlNotes& notes) {
    std::map<std::string, std::string> pages;
    pages["README.md"] = IndexPage(library, notes);
    pages["Enumerations.md"] = EnumerationsPage(library, notes);
    for (const TypeEntry& type : library.types)
        if (type.kind == TypeEntry::Kind::Class)
            pages[Utf8(type.name) + ".md"] = ClassPage(library, type, notes);
    return pages;
}

std::wstring MissingHelp(const LibraryModel& library, const IdlNotes& notes) {
    std::wstring missing;
    const auto report = [&](const std::wstring& name) { missing += name + L"\n"; };
    for (const TypeEntry& type : library.types) {
        if (type.help.empty()) report(type.name);
        for (const Member& member : type.members)
            if (!member.hidden && member.help.empty()) report(type.name + L"." + member.name);
        for (const EnumValue& value : type.values)
            if (!notes.valueComments.contains(value.name)) report(type.name + L"." + value.name);
    }
    return missing;
}

}  // namespace tgp::automation::typelib
