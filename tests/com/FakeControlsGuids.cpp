// Defines (once for the client) the GUID constants of the test controls' type library.
#include <initguid.h>

#include "FakeControls.h"
