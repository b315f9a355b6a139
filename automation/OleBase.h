#pragma once
// The real definitions behind OleBase.idl, for the header widl generates from the library's IDL.
#include <ocidl.h>
#include <olectl.h>
