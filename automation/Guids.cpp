// Defines (once for the DLL) the IID, CLSID and LIBID constants the generated header declares.
#include <initguid.h>

#include "Tessary_Geometry_Pro.h"
