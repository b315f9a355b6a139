// tgp_typelib_tool: what is made from the server's type library (run under Wine by the scripts).
//   tgp_typelib_tool check LIBRARY IDL            lists what has no help; exit 1 when anything
//   tgp_typelib_tool reference LIBRARY IDL FOLDER  writes the reference pages
//   tgp_typelib_tool installer LIBRARY FOLDER      writes the installer's registry includes
#include <windows.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "InstallerRegistry.h"
#include "ReferencePages.h"
#include "TypeLibraryModel.h"

namespace typelib = tgp::automation::typelib;

namespace {

std::wstring Wide(const std::string& text) {
    const int size = MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, wide.data(), size);
    wide.resize(static_cast<std::size_t>(size > 0 ? size - 1 : 0));
    return wide;
}

typelib::LibraryModel Load(const std::string& path) {
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(Wide(path).c_str(), REGKIND_NONE, &library)))
        throw std::runtime_error("cannot load the type library of " + path);
    typelib::LibraryModel model = typelib::ReadTypeLibrary(library);
    library->Release();
    return model;
}

std::string ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void Write(const std::string& folder, const std::string& name, const std::string& text) {
    const std::string path = folder + "\\" + name;
    std::ofstream out(path, std::ios::binary);
    out << text;
    if (!out) throw std::runtime_error("cannot write " + path);
}

int Check(const std::string& library, const std::string& idl) {
    const std::wstring missing = typelib::MissingHelp(Load(library), typelib::ReadIdlNotes(ReadText(idl)));
    if (missing.empty()) return 0;
    std::wcout << L"without help:\n" << missing;
    return 1;
}

int Reference(const std::string& library, const std::string& idl, const std::string& folder) {
    for (const auto& [name, text] :
         typelib::ReferencePages(Load(library), typelib::ReadIdlNotes(ReadText(idl))))
        Write(folder, name, text);
    return 0;
}

int Installer(const std::string& library, const std::string& folder) {
    const typelib::LibraryModel model = Load(library);
    Write(folder, "shared.wxi", typelib::SharedRegistry(model));
    Write(folder, "server64.wxi", typelib::ServerRegistry(model, "dll64", "win64", false));
    Write(folder, "server32-on-64.wxi", typelib::ServerRegistry(model, "dll32", "win32", true));
    Write(folder, "server32.wxi", typelib::ServerRegistry(model, "dll32", "win32", false));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    CoInitialize(nullptr);
    try {
        const std::string command = argc > 1 ? argv[1] : "";
        if (command == "check" && argc == 4) return Check(argv[2], argv[3]);
        if (command == "reference" && argc == 5) return Reference(argv[2], argv[3], argv[4]);
        if (command == "installer" && argc == 4) return Installer(argv[2], argv[3]);
        std::cerr << "usage: tgp_typelib_tool check LIBRARY IDL | reference LIBRARY IDL FOLDER | installer "
                     "LIBRARY FOLDER\n";
        return 2;
    } catch (const std::exception& e) {
        std::cerr << "tgp_typelib_tool: " << e.what() << "\n";
        return 1;
    }
}
