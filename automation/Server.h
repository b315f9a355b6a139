#pragma once

#include "OleBase.h"

namespace tgp::automation {

// Process-wide state of the in-process server: the module handle, the count of live objects and of
// class-factory locks (what DllCanUnloadNow answers from) and the type library loaded from the DLL's
// own TYPELIB resource.
class Server {
  public:
    static void Attach(HMODULE module);
    static HMODULE Module();
    static const wchar_t* ModulePath();

    static void ObjectCreated();
    static void ObjectDestroyed();
    static void Lock(bool lock);
    static bool CanUnload();

    // The library's type library (loaded once, kept until unload); nullptr if it cannot be loaded.
    static ITypeLib* TypeLibrary();
    // The type information of one interface or coclass of the library; adds a reference.
    static HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info);
};

}  // namespace tgp::automation
