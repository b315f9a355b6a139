#include "InstallerRegistry.h"

#include <sstream>

#include "core/XmlText.h"

namespace tgp::automation::typelib {
namespace {

// The automation marshaller, which serves every dual interface and dispinterface.
constexpr char kAutomationMarshaller[] = "{00020424-0000-0000-C000-000000000046}";

std::string Narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());  // GUIDs and the library's ASCII names
}

class Values {
  public:
    void Add(const std::string& key, const std::string& name, const std::string& value) {
        text_ << "  <RegistryValue Root=\"HKMU\" Key=\"Software\\Classes\\" << XmlEscaped(key) << "\"";
        if (!name.empty()) text_ << " Name=\"" << XmlEscaped(name) << "\"";
        text_ << " Type=\"string\" Value=\"" << XmlEscaped(value) << "\"/>\n";
    }
    std::string Include() const {
        return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!-- Generated from the type library: do not "
               "edit. -->\n"
               "<Include>\n" +
               text_.str() + "</Include>\n";
    }

  private:
    std::ostringstream text_;
};

std::string Version(const LibraryModel& library) {
    return std::to_string(library.major) + "." + std::to_string(library.minor);
}

std::string TypeLibraryKey(const LibraryModel& library) {
    return "TypeLib\\" + Narrow(GuidText(library.libid)) + "\\" + Version(library);
}

std::string ProgId(const LibraryModel& library, const TypeEntry& type) {
    return Narrow(library.name) + "." + Narrow(type.name);
}

}  // namespace

std::string SharedRegistry(const LibraryModel& library) {
    Values values;
    const std::string typeLibrary = TypeLibraryKey(library);
    values.Add(typeLibrary, "", Narrow(library.help));
    values.Add(typeLibrary + "\\FLAGS", "", "0");
    values.Add(typeLibrary + "\\HELPDIR", "", "[INSTALLDIR]");
    for (const TypeEntry& type : library.types) {
        const std::string guid = Narrow(GuidText(type.guid));
        if (type.kind == TypeEntry::Kind::Class) {
            values.Add(ProgId(library, type), "", ProgId(library, type));
            values.Add(ProgId(library, type) + "\\CLSID", "", guid);
        } else if (type.kind == TypeEntry::Kind::Interface || type.kind == TypeEntry::Kind::Events) {
            const std::string key = "Interface\\" + guid;
            values.Add(key, "", Narrow(type.name));
            values.Add(key + "\\ProxyStubClsid", "", kAutomationMarshaller);
            values.Add(key + "\\ProxyStubClsid32", "", kAutomationMarshaller);
            values.Add(key + "\\TypeLib", "", Narrow(GuidText(library.libid)));
            values.Add(key + "\\TypeLib", "Version", Version(library));
        }
    }
    return values.Include();
}

std::string ServerRegistry(const LibraryModel& library, const std::string& fileId,
                           const std::string& platform, bool wow64) {
    Values values;
    const std::string path = "[#" + fileId + "]";
    values.Add(TypeLibraryKey(library) + "\\0\\" + platform, "", path);
    const std::string classes = wow64 ? "Wow6432Node\\CLSID\\" : "CLSID\\";
    for (const TypeEntry& type : library.types) {
        if (type.kind != TypeEntry::Kind::Class) continue;
        const std::string key = classes + Narrow(GuidText(type.guid));
        values.Add(key, "", ProgId(library, type));
        values.Add(key + "\\InprocServer32", "", path);
        values.Add(key + "\\InprocServer32", "ThreadingModel", "Apartment");
        values.Add(key + "\\ProgID", "", ProgId(library, type));
        values.Add(key + "\\TypeLib", "", Narrow(GuidText(library.libid)));
        values.Add(key + "\\Version", "", Version(library));
    }
    return values.Include();
}

}  // namespace tgp::automation::typelib
