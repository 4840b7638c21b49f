#include "vesk/module.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace tov {

void* VeskLoadModule(char const* path, CString& reason) {
    void* const module = dlopen(path, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) {
        char const* const words = dlerror();
        reason = words != nullptr ? words : "";
    }
    return module;
}

PassingModule::~PassingModule() {
    if (m_module != nullptr) dlclose(m_module);
}

bool PassingModule::Load(char const* path) {
    if (m_module != nullptr) return true;
    m_module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (m_module == nullptr) return false;
    // What image libraries compute with in parallel gives neither its memory nor its threads back when it is
    // unloaded with them; where it came along it stays.
    if (void* const parallel = dlopen("libgomp.so.1", RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE))
        dlclose(parallel);
    return true;
}

void* PassingModule::Symbol(char const* name) const {
    return m_module != nullptr ? dlsym(m_module, name) : nullptr;
}

void* VeskFindSymbol(void* module, char const* name) {
    return dlsym(module, name);
}

CString VeskModulePath(void const* address) {
    std::error_code failure;
    if (address == nullptr) return std::filesystem::read_symlink("/proc/self/exe", failure).string();
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
    std::filesystem::path const path = std::filesystem::absolute(info.dli_fname, failure);
    return failure ? CString(info.dli_fname) : path.string();
}

}  // namespace tov
