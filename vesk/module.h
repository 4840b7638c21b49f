// Loadable modules.
#pragma once

#include <tov310/types.h>

namespace tov {

// Loads a module and answers its handle; null when that fails, with the loader's words in `reason`. A module
// that is loaded stays until the process ends.
void* VeskLoadModule(char const* path, CString& reason);

// The address of an exported symbol; null where there is none.
void* VeskFindSymbol(void* module, char const* name);

// The path of the module that holds the given address, as the loader knows it; the executable's for null.
// Empty when it cannot be told.
CString VeskModulePath(void const* address);

}  // namespace tov
