#include <tov310/plugin.h>
#include <tov310/system_error.h>

#include "vesk/module.h"

#include <algorithm>

namespace tov {
namespace {

CRuntimeClass const* Fail(unsigned long code, unsigned long* error, CString* message) {
    if (error != nullptr) *error = code;
    if (message != nullptr) *message = TovSystemErrorText(code);
    return nullptr;
}

}  // namespace

CRuntimeClass const* TovQueryRuntimeClass(char const* module, char const* className, unsigned long* error,
                                          CString* message) {
    if (error != nullptr) *error = TOV_ERROR_NONE;
    if (message != nullptr) message->clear();
    if (module == nullptr || *module == '\0' || className == nullptr || *className == '\0') return nullptr;

    CString reason;
    void* const loaded = VeskLoadModule(module, reason);
    if (loaded == nullptr) {
        Fail(TOV_ERROR_MODULE_NOT_LOADED, error, message);
        // The loader's own words tell which file or symbol is missing.
        if (message != nullptr && !reason.empty()) *message += " " + reason;
        return nullptr;
    }
    CString symbol = CString("tov_class_") + className;
    std::replace(symbol.begin(), symbol.end(), '@', '_');
    void* const found = VeskFindSymbol(loaded, symbol.c_str());
    if (found == nullptr) return Fail(TOV_ERROR_SYMBOL_NOT_FOUND, error, message);
    return *static_cast<CRuntimeClass const* const*>(found);
}

}  // namespace tov
