#include <tov310/resources.h>
#include <tov310/system_error.h>

#include "frame/resource_module.h"
#include "vesk/error_codes.h"
#include "vesk/file.h"
#include "vesk/immortal.h"
#include "vesk/module.h"

#include <atomic>
#include <filesystem>
#include <mutex>
#include <utility>
#include <vector>

namespace tov {

// Made by the build from res/zh_CN.
extern TovResourceTable const builtInResources;

namespace {

constexpr char const* stringsFile = "strings.json";

std::atomic<HINSTANCE> libraryHandle{nullptr};  // null stands for the built-in module
std::atomic<HINSTANCE> savedHandle{nullptr};
thread_local HINSTANCE currentHandle = nullptr;  // likewise

// Modules stay until the end: handles and views of their contents may be kept anywhere.
HINSTANCE Keep(std::unique_ptr<CTovResourceModule> module) {
    static std::mutex guard;
    static auto* const modules = new std::vector<std::unique_ptr<CTovResourceModule>>;  // outlives all users
    std::scoped_lock const lock(guard);
    return modules->emplace_back(std::move(module)).get();
}

HINSTANCE BuiltIn() {
    static HINSTANCE const module = [] {
        std::string reason;
        auto made = CTovResourceModule::FromTable(builtInResources, reason);
        // The build's own table is held by a test; an empty module is still a module.
        return Keep(made != nullptr ? std::move(made) : std::make_unique<CTovResourceModule>());
    }();
    return module;
}

std::string const* FindString(HINSTANCE module, unsigned id) {
    if (module != nullptr) {
        if (std::string const* text = module->FindString(id)) return text;
    }
    return BuiltIn()->FindString(id);
}

void Report(unsigned long code, std::string const& reason, unsigned long* error, CString* message) {
    if (error != nullptr) *error = code;
    if (message == nullptr) return;
    *message = TovSystemErrorText(code);
    if (!reason.empty()) *message += (message->empty() ? "" : " ") + reason;
}

}  // namespace

std::unique_ptr<CTovResourceModule> CTovResourceModule::FromTable(TovResourceTable const& table,
                                                                  std::string& reason) {
    auto module = std::make_unique<CTovResourceModule>();
    for (TovResourceTable::File const* file = table.files; file != table.files + table.count; ++file) {
        module->m_files.emplace(file->name,
                                std::string_view(reinterpret_cast<char const*>(file->bytes), file->size));
    }
    auto const strings = module->m_files.find(stringsFile);
    if (strings == module->m_files.end()) return module;
    if (!ParseStringTable(strings->second, module->m_strings, reason)) return nullptr;
    return module;
}

std::unique_ptr<CTovResourceModule> CTovResourceModule::FromFolder(std::string const& folder,
                                                                   unsigned long& error,
                                                                   std::string& reason) {
    namespace fs = std::filesystem;
    auto module = std::make_unique<CTovResourceModule>();
    auto const load = [&](fs::path const& file) {
        std::string bytes;
        if (std::error_code const failure = ReadWholeFile(file.c_str(), bytes)) {
            error = VeskErrorCode(failure.value());
            reason = file.string();
            return false;
        }
        auto const stored = module->m_contents.insert_or_assign(
            file.lexically_relative(folder).generic_string(), std::move(bytes));
        module->m_files.insert_or_assign(stored.first->first, stored.first->second);
        return true;
    };
    // The texts first: a folder without them is no module, whatever else it holds.
    if (!load(fs::path(folder) / stringsFile)) return nullptr;
    if (!ParseStringTable(module->m_contents[stringsFile], module->m_strings, reason)) {
        error = TOV_ERROR_INVALID_PARAMETER;
        reason = CString(stringsFile) + ": " + reason;
        return nullptr;
    }
    std::error_code failure;
    fs::recursive_directory_iterator entry(folder, failure);
    for (; !failure && entry != fs::recursive_directory_iterator(); entry.increment(failure)) {
        std::error_code unknown;
        if (entry->is_regular_file(unknown) && entry->path().filename() != stringsFile &&
            !load(entry->path())) {
            return nullptr;
        }
    }
    if (failure) {
        error = VeskErrorCode(failure.value());
        return nullptr;
    }
    return module;
}

std::string_view CTovResourceModule::FindFile(std::string_view name) const {
    auto const found = m_files.find(name);
    return found != m_files.end() ? found->second : std::string_view();
}

std::string const& LibraryString(unsigned id) {
    static Immortal<std::string> none;
    std::string const* const text = FindString(libraryHandle.load(std::memory_order_acquire), id);
    return text != nullptr ? *text : *none;
}

HINSTANCE TovBuiltInResourceModule() {
    return BuiltIn();
}

HINSTANCE TovLoadResourceModule(char const* path, unsigned long* error, CString* message) {
    if (error != nullptr) *error = TOV_ERROR_NONE;
    if (message != nullptr) message->clear();
    std::string const name = path != nullptr ? path : "";
    std::unique_ptr<CTovResourceModule> module;
    std::string reason;
    std::error_code failure;
    if (name.empty()) {
        Report(TOV_ERROR_NOT_FOUND, reason, error, message);
    } else if (std::filesystem::is_directory(name, failure)) {
        unsigned long code = TOV_ERROR_NONE;
        module = CTovResourceModule::FromFolder(name, code, reason);
        if (module == nullptr) Report(code, reason, error, message);
        if (module != nullptr) module->SetPath(std::filesystem::absolute(name, failure).string());
    } else if (name.find('/') != std::string::npos && !std::filesystem::exists(name, failure)) {
        Report(TOV_ERROR_NOT_FOUND, name, error, message);
    } else if (void* const loaded = VeskLoadModule(name.c_str(), reason); loaded == nullptr) {
        Report(TOV_ERROR_MODULE_NOT_LOADED, reason, error, message);
    } else if (auto const* table =
                   static_cast<TovResourceTable const*>(VeskFindSymbol(loaded, "tov_resources"));
               table == nullptr) {
        Report(TOV_ERROR_SYMBOL_NOT_FOUND, "tov_resources", error, message);
    } else {
        module = CTovResourceModule::FromTable(*table, reason);
        if (module == nullptr) Report(TOV_ERROR_INVALID_PARAMETER, reason, error, message);
        if (module != nullptr) module->SetPath(VeskModulePath(table));
    }
    return module != nullptr ? Keep(std::move(module)) : nullptr;
}

void TovSetTovResourceHandle(HINSTANCE module) {
    libraryHandle.store(module, std::memory_order_release);
}

HINSTANCE TovGetTovResourceHandle() {
    HINSTANCE const module = libraryHandle.load(std::memory_order_acquire);
    return module != nullptr ? module : BuiltIn();
}

void TovSetResourceHandle(HINSTANCE module) {
    savedHandle.store(TovGetResourceHandle(), std::memory_order_release);
    currentHandle = module;
}

HINSTANCE TovGetResourceHandle() {
    return currentHandle != nullptr ? currentHandle : BuiltIn();
}

void TovRestoreResourceHandle() {
    HINSTANCE const saved = savedHandle.exchange(nullptr, std::memory_order_acq_rel);
    if (saved != nullptr) currentHandle = saved;
}

int TovLoadString(unsigned int id, CString& text) {
    std::string const* const found = FindString(currentHandle, id);
    text = found != nullptr ? *found : CString();
    return found != nullptr;
}

int TovLoadResourceString(HINSTANCE module, unsigned int id, CString& text) {
    TovSetResourceHandle(module);
    int const loaded = TovLoadString(id, text);
    TovRestoreResourceHandle();
    return loaded;
}

std::string_view TovFindResource(HINSTANCE module, char const* name) {
    std::string_view const wanted = name != nullptr ? name : "";
    std::string_view file = module != nullptr ? module->FindFile(wanted) : std::string_view();
    return file.data() != nullptr ? file : BuiltIn()->FindFile(wanted);
}

}  // namespace tov
