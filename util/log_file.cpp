#include <tov310/log_file.h>

#include "util/file_facts.h"
#include "vesk/append_file.h"
#include "vesk/immortal.h"
#include "vesk/print.h"

#include <chrono>
#include <cstdarg>
#include <cstdint>
#include <mutex>
#include <string>

namespace tov {
namespace {

// Whoever holds the log longer than this has stopped.
constexpr std::chrono::seconds logPatience{5};

struct LogTarget {
    std::mutex guard;
    std::string name;
    std::intptr_t descriptor = -1;

    static LogTarget& Instance() {
        static Immortal<LogTarget> target;  // the last lines come from destructors
        return *target;
    }
};

int WriteLogBytes(std::string const& bytes) {
    LogTarget& target = LogTarget::Instance();
    std::scoped_lock const lock(target.guard);
    if (!target.name.empty()) {
        bool opened = false;
        auto const error = AppendToFile(target.name.c_str(), bytes, logPatience, opened);
        if (opened) return !error;
    }
    return target.descriptor > 0 &&
           !AppendToDescriptor(static_cast<int>(target.descriptor), bytes, logPatience);
}

}  // namespace

void CTovLogfile::SetLogfile(void* handle, char const* name) {
    std::string copy = SystemPath(name);
    LogTarget& target = LogTarget::Instance();
    std::scoped_lock const lock(target.guard);
    target.name = std::move(copy);
    target.descriptor = reinterpret_cast<std::intptr_t>(handle);
}

int CTovLogfile::WriteLogfile(char const* text, ...) {
    if (text == nullptr) return 0;
    std::va_list arguments;
    va_start(arguments, text);
    int written = 0;
    try {
        std::string bytes;
        written = VeskPrint(bytes, text, arguments) && WriteLogBytes(bytes);
    } catch (...) {  // no memory for the line
    }
    va_end(arguments);
    return written;
}

}  // namespace tov
