// The file store: initialisation files on disk, kept in memory as long as they stay the same.
//
// A read costs one question to the system for the stamp of the file and a look-up by hash. A file that has
// changed very lately is read again even where its stamp is the old one, since two changes within one tick of
// the file system's clock look the same. A write reads the file anew under its lock.
#pragma once

#include "util/ini_text.h"
#include "vesk/file.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tov {

class IniStore {
 public:
    // The one of the process. It is safe to use from several threads, around fork and until the process ends.
    static IniStore& Instance();

    // Calls use(IniText const*) with the text of the file and gives its answer; null where there is no file
    // or none that can be read. The text is only valid within the call.
    template <class Use>
    auto Read(char const* path, Use use) {
        std::lock_guard const lock(m_mutex);
        return use(Load(path));
    }

    // Replaces the file by what `edit` makes of its text, under the lock of the file. A missing file is an
    // empty text, and where `creates` is false it is left missing. Answers whether the file now says what was
    // asked.
    bool Edit(char const* path, bool creates, std::function<std::string(IniText const&)> const& edit);

    // Whether a file that was read at this time or later, by the clock of files, cannot be changed any more
    // without its stamp showing it.
    static bool IsSettled(FileStamp const& stamp, std::int64_t time);

 private:
    struct File {
        std::unique_ptr<IniText const> text;
        FileStamp stamp;
        bool settled = false;  // no later change can have the same stamp
    };
    struct PathHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view path) const noexcept {
            return std::hash<std::string_view>{}(path);
        }
    };

    IniText const* Load(char const* path);
    void Keep(char const* path, File file);

    std::mutex m_mutex;
    std::unordered_map<std::string, File, PathHash, std::equal_to<>> m_files;
};

}  // namespace tov
