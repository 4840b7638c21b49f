// Loadable modules.
#pragma once

#include <tov310/types.h>

namespace tov {

// Loads a module and answers its handle; null when that fails, with the loader's words in `reason`. A module
// that is loaded stays until the process ends.
void* VeskLoadModule(char const* path, CString& reason);

// A module that is loaded for a while: it goes with its last owner in the process.
class PassingModule {
 public:
    PassingModule() = default;
    PassingModule(PassingModule const&) = delete;
    PassingModule& operator=(PassingModule const&) = delete;
    ~PassingModule();

    // Whether it could be loaded. A path without a separator is searched as the loader does.
    bool Load(char const* path);

    // The function of that name in the module or in what it stands on; null where there is none.
    template <class Function>
    Function* Find(char const* name) const {
        return reinterpret_cast<Function*>(Symbol(name));
    }

 private:
    void* Symbol(char const* name) const;
    void* m_module = nullptr;
};

// The address of an exported symbol; null where there is none.
void* VeskFindSymbol(void* module, char const* name);

// The path of the module that holds the given address, as the loader knows it; the executable's for null.
// Empty when it cannot be told.
CString VeskModulePath(void const* address);

}  // namespace tov
