// Classes from modules that are loaded at run time.
#pragma once

#include <tov310/export.h>
#include <tov310/object.h>
#include <tov310/types.h>

namespace tov {

// Loads a module and finds the class that it exports by TOV_EXPORT_CLASS (object.h). A nested class is named
// from the inside out: "Inner@Outer".
//
// Null with the optional pair cleared when a name is null or empty; null with code 126 when the module cannot
// be loaded, 127 when it does not export the class. A module that was loaded stays until the process ends,
// also when the class was not found. A module path without a separator is searched as the platform's loader
// does.
TOV_CORE_API CRuntimeClass const* TovQueryRuntimeClass(char const* module, char const* className,
                                                       unsigned long* error = nullptr,
                                                       CString* message = nullptr);

}  // namespace tov
