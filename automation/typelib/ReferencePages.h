#pragma once

#include <map>
#include <string>

#include "TypeLibraryModel.h"

namespace tgp::automation::typelib {

// The reference manual in Markdown, page by page (file name -> text): an index with the library's
// introduction, a page per class (its members with their parameters, defaults, return types and
// help, its events, its VBA example) and a page of the enumerations with their values.
std::map<std::string, std::string> ReferencePages(const LibraryModel& library, const IdlNotes& notes);

// What a macro author sees and has no help: types and members without a help string
// ("_DLength.Metres", or the type's name alone) and enumeration values without their comment in
// the IDL, one a line; empty when everything has its help.
std::wstring MissingHelp(const LibraryModel& library, const IdlNotes& notes);

}  // namespace tgp::automation::typelib
