// The registry store: a tree of keys with typed values, in one SQLite file in the user's configuration
// folder.
//
// A key is named by a root and a text in which "\" divides the steps; empty steps count for nothing. Names of
// keys and values fold ASCII case and stay as they were first written; values and subkeys come in the order
// in which they were made. Several processes may work on the file at once. A write is on the disk when it
// answers.
//
// The connection is opened at the first use, and again when the configuration folder changes, when somebody
// has replaced the file, and after a fork. A file that is damaged, made by a later version or by another
// program is never touched: reads find nothing and writes fail.
#pragma once

#include "util/profile_text.h"
#include "vesk/file.h"

#include <tov310/profile.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace tov {

// Types of values, with the numbers by which they are stored. A file may hold further types; they are kept.
inline constexpr int registryText = 1;
inline constexpr int registryNumber = 4;

struct RegistryValue {
    int type = registryText;
    std::int32_t number = 0;  // of every type but text
    std::string text;
};

class RegistryStore {
 public:
    // The one of the process. It is safe to use from several threads, around fork and until the process ends.
    static RegistryStore& Instance();

    // Name of the file inside the configuration folder.
    static constexpr char const* fileName = "Tov310.registry.sqlite";

    // These make the key when it is missing.
    std::optional<RegistryValue> Read(HKEY root, std::string_view key, std::string_view name);
    bool Write(HKEY root, std::string_view key, std::string_view name, RegistryValue const& value);
    // Several texts by name in one transaction: all or none. Those that are there already are not written.
    bool WriteTexts(HKEY root, std::string_view key,
                    std::vector<std::pair<std::string, std::string>> const& texts);
    bool ForEachValue(HKEY root, std::string_view key,
                      std::function<bool(std::string_view name, RegistryValue const& value)> const& visit);
    bool SubKeys(HKEY root, std::string_view key, std::vector<std::string>& names);

    // True also when there is nothing to delete. A key with subkeys stays, and so do the roots.
    bool DeleteValue(HKEY root, std::string_view key, std::string_view name);
    bool DeleteKey(HKEY root, std::string_view key);

    void Close();

 private:
    using Key = std::int64_t;
    class Query;
    class Transaction;
    struct CloseDatabase {
        void operator()(sqlite3* database) const;
    };
    struct FinalizeStatement {
        void operator()(sqlite3_stmt* statement) const;
    };
    static constexpr std::size_t statements = 11;

    bool Open();
    bool OpenFile();
    bool Prepare();
    bool SetUp();
    bool Run(char const* sql);
    std::optional<std::int64_t> Number(char const* sql);
    bool Note(int result);

    std::optional<Key> Child(Key parent, std::string_view name);
    std::optional<Key> Find(HKEY root, std::string_view key);
    std::optional<Key> Make(HKEY root, std::string_view key);
    std::optional<Key> MakeSteps(HKEY root, std::string_view key);
    bool Put(Key key, std::string_view name, RegistryValue const& value);
    std::optional<Key> CachedKey(std::string const& text, HKEY root, std::string_view key);
    void ForgetKeys() { m_keys.clear(); }

    std::mutex m_mutex;
    std::unique_ptr<sqlite3, CloseDatabase> m_database;
    std::array<std::unique_ptr<sqlite3_stmt, FinalizeStatement>, statements> m_statements;
    std::string m_path;
    FileStamp m_opened;    // which file the connection holds
    FileStamp m_refused;   // the state of a file that was found unfit
    bool m_unfit = false;  // found at its opening or during an operation
    std::unordered_map<std::string, Key>
        m_keys;  // by root and folded text; numbers of keys are never used twice
};

}  // namespace tov
