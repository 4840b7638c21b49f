// The registry tree on SQLite. See the header for the model.
#include "util/registry_store.h"

#include "vesk/immortal.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace tov {
namespace {

constexpr int applicationId = 0x546F7633;  // marks a database file as a registry
constexpr int schemaVersion = 1;
constexpr std::chrono::milliseconds registryPatience = std::chrono::seconds{30};
constexpr std::size_t mostCachedKeys = 4096;

// Numbers of keys come from a counter that never goes back (AUTOINCREMENT), so that a number once known means
// this key or nothing. Values keep their row, and so their place, when they are written again.
constexpr char const* schema = R"(
    CREATE TABLE keys(
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        parent INTEGER NOT NULL,
        name TEXT NOT NULL COLLATE NOCASE,
        UNIQUE(parent, name));
    CREATE TABLE entries(
        id INTEGER PRIMARY KEY,
        key INTEGER NOT NULL,
        name TEXT NOT NULL COLLATE NOCASE,
        type INTEGER NOT NULL,
        data,
        UNIQUE(key, name));
    INSERT INTO keys(id, parent, name) VALUES(1, 0, 'HKEY_CURRENT_USER'), (2, 0, 'HKEY_LOCAL_MACHINE');
)";

enum Statement : std::size_t {
    begin,
    commit,
    rollback,
    findKey,
    addKey,
    readValue,
    writeValue,
    deleteValue,
    listValues,
    listKeys,
    deleteKey,
};

constexpr std::array statementTexts{
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
    "SELECT id FROM keys WHERE parent = ?1 AND name = ?2",
    "INSERT INTO keys(parent, name) VALUES(?1, ?2)",
    // No row: no such key. A row without a type: no such value.
    "SELECT entries.type, entries.data FROM keys LEFT JOIN entries"
    " ON entries.key = keys.id AND entries.name = ?2 WHERE keys.id = ?1",
    // Changes nothing where the key has been deleted meanwhile.
    "INSERT INTO entries(key, name, type, data) SELECT id, ?2, ?3, ?4 FROM keys WHERE id = ?1"
    " ON CONFLICT(key, name) DO UPDATE SET type = excluded.type, data = excluded.data",
    "DELETE FROM entries WHERE key = ?1 AND name = ?2",
    "SELECT name, type, data FROM entries WHERE key = ?1 ORDER BY id",
    "SELECT name FROM keys WHERE parent = ?1 ORDER BY id",
    "DELETE FROM keys WHERE id = ?1",
};

Immortal<RegistryStore>& RegistryOfProcess() {
    static Immortal<RegistryStore> store;
    return store;
}

// Called while another process writes. The pauses are short, because so are the writes.
int WaitForWriter(void* /*unused*/, int times) {
    constexpr auto pause = std::chrono::milliseconds{1};
    if (times * pause > registryPatience) return 0;
    std::this_thread::sleep_for(pause);
    return 1;
}

// Takes the next step off a key's text; empty at the end.
std::string_view NextStep(std::string_view& key) {
    while (key.starts_with('\\'))
        key.remove_prefix(1);
    auto const step = key.substr(0, key.find('\\'));
    key.remove_prefix(step.size());
    return step;
}

std::string CacheText(HKEY root, std::string_view key) {
    std::string text;
    text.reserve(key.size() + 1);
    text += root == HKEY_LOCAL_MACHINE ? 'm' : 'u';
    std::ranges::transform(key, std::back_inserter(text), FoldAscii);
    return text;
}

// A key from the cache may have been deleted by another process; then it is made anew, once.
constexpr int registryTries = 2;

}  // namespace

void RegistryStore::CloseDatabase::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

void RegistryStore::FinalizeStatement::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

// One run of a prepared statement.
class RegistryStore::Query {
 public:
    Query(RegistryStore& store, Statement number)
        : m_store(store), m_statement(store.m_statements[number].get()) {}
    Query(Query const&) = delete;
    Query& operator=(Query const&) = delete;
    ~Query() {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }

    Query& Bind(int at, std::int64_t number) {
        sqlite3_bind_int64(m_statement, at, number);
        return *this;
    }
    // The text must live until the end of the query.
    Query& Bind(int at, std::string_view text) {
        m_bound &= sqlite3_bind_text64(m_statement, at, text.data() != nullptr ? text.data() : "",
                                       text.size(), SQLITE_STATIC, SQLITE_UTF8) == SQLITE_OK;
        return *this;
    }

    bool Row() { return m_bound && (m_result = sqlite3_step(m_statement)) == SQLITE_ROW; }
    // Whether the query has run to its end.
    bool Done() { return m_bound && m_store.Note(m_result); }
    bool Finish() {
        while (Row()) {
        }
        return Done();
    }

    std::int64_t Integer(int column) const { return sqlite3_column_int64(m_statement, column); }
    bool IsNull(int column) const { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    std::string_view Text(int column) const {
        auto const* const text = static_cast<char const*>(sqlite3_column_blob(m_statement, column));
        return text != nullptr
                   ? std::string_view(text,
                                      static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column)))
                   : std::string_view();
    }
    RegistryValue Value(int typeColumn) const {
        RegistryValue value;
        value.type = static_cast<int>(Integer(typeColumn));
        if (value.type == registryText) {
            value.text = Text(typeColumn + 1);
        } else {
            value.number = static_cast<std::int32_t>(Integer(typeColumn + 1));
        }
        return value;
    }

 private:
    RegistryStore& m_store;
    sqlite3_stmt* m_statement;
    bool m_bound = true;
    int m_result = SQLITE_DONE;
};

// Undone unless committed.
class RegistryStore::Transaction {
 public:
    explicit Transaction(RegistryStore& store) : m_store(store), m_open(Query(store, begin).Finish()) {}
    Transaction(Transaction const&) = delete;
    Transaction& operator=(Transaction const&) = delete;
    ~Transaction() {
        if (m_open) Query(m_store, rollback).Finish();
    }
    explicit operator bool() const { return m_open; }
    bool Commit() {
        if (!Query(m_store, commit).Finish()) return false;
        m_open = false;
        return true;
    }

 private:
    RegistryStore& m_store;
    bool m_open;
};

RegistryStore& RegistryStore::Instance() {
    // SQLite forbids to carry a connection over a fork: close it before, and keep everybody out meanwhile. At
    // the end of the process the connection is closed, too; a later write only opens it again.
    struct Watch {
        Watch() {
            OnFork(
                [] {
                    RegistryOfProcess()->m_mutex.lock();
                    RegistryOfProcess()->Close();
                },
                [] { RegistryOfProcess()->m_mutex.unlock(); });
        }
        ~Watch() {
            std::lock_guard const lock(RegistryOfProcess()->m_mutex);
            RegistryOfProcess()->Close();
        }
    };
    auto& store = RegistryOfProcess();
    static Watch const watch;
    return *store;
}

void RegistryStore::Close() {
    // Nothing is to be moved from the log into a file that is damaged or not ours.
    if (m_unfit && m_database != nullptr) {
        sqlite3_db_config(m_database.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
    ForgetKeys();
    for (auto& statement : m_statements)
        statement.reset();
    m_database.reset();
}

// Looks at every result of SQLite once. Damage that shows itself only now makes the file unfit.
bool RegistryStore::Note(int result) {
    int const kind = result & 0xFF;
    if (kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB) m_unfit = true;
    return kind == SQLITE_OK || kind == SQLITE_DONE;
}

bool RegistryStore::Run(char const* sql) {
    return Note(sqlite3_exec(m_database.get(), sql, nullptr, nullptr, nullptr));
}

std::optional<std::int64_t> RegistryStore::Number(char const* sql) {
    sqlite3_stmt* raw = nullptr;
    int const prepared = sqlite3_prepare_v2(m_database.get(), sql, -1, &raw, nullptr);
    std::unique_ptr<sqlite3_stmt, FinalizeStatement> const statement(raw);
    if (!Note(prepared)) return std::nullopt;
    int const result = sqlite3_step(raw);
    if (result == SQLITE_ROW) return sqlite3_column_int64(raw, 0);
    Note(result);
    return std::nullopt;
}

// Gives an empty database its tables. Whoever comes second finds them made.
bool RegistryStore::SetUp() {
    // The change of the mode asks for the file alone and does not wait by itself.
    auto const end = std::chrono::steady_clock::now() + registryPatience;
    while (!Run("PRAGMA journal_mode = WAL")) {
        int const kind = sqlite3_errcode(m_database.get()) & 0xFF;
        bool const busy = kind == SQLITE_BUSY || kind == SQLITE_LOCKED;
        if (!busy || std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    if (!Run("BEGIN IMMEDIATE")) return false;
    auto const id = Number("PRAGMA application_id");
    if (id == applicationId) return Run("COMMIT");
    auto const marks = "PRAGMA application_id = " + std::to_string(applicationId) +
                       "; PRAGMA user_version = " + std::to_string(schemaVersion);
    if (id == 0 && Run(schema) && Run(marks.c_str()) && Run("COMMIT")) return true;
    Run("ROLLBACK");
    return false;
}

bool RegistryStore::Prepare() {
    static_assert(statementTexts.size() == statements);
    for (std::size_t i = 0; i < statements; ++i) {
        sqlite3_stmt* raw = nullptr;
        int const result = sqlite3_prepare_v3(m_database.get(), statementTexts[i], -1,
                                              SQLITE_PREPARE_PERSISTENT, &raw, nullptr);
        m_statements[i].reset(raw);
        if (!Note(result)) return false;
    }
    return true;
}

bool RegistryStore::OpenFile() {
    sqlite3* raw = nullptr;
    int const flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    int const opened = sqlite3_open_v2(m_path.c_str(), &raw, flags, nullptr);
    m_database.reset(raw);
    if (!Note(opened)) return false;
    sqlite3_busy_handler(raw, WaitForWriter, nullptr);
    // In one transaction: another process may be setting the file up.
    if (!Run("BEGIN")) return false;
    auto const id = Number("PRAGMA application_id");
    auto const version = Number("PRAGMA user_version");
    auto const tables = Number("SELECT count(*) FROM sqlite_master");
    if (!Run("COMMIT")) return false;
    if (id == 0 && version == 0 && tables == 0) {
        if (!SetUp()) return false;
    } else if (id != applicationId || version != schemaVersion) {
        // An unreadable number may only mean that the file was not to be had just now.
        m_unfit = m_unfit || id.has_value();
        return false;
    } else {
        // Answers the text "ok", or what is wrong.
        if (Number("SELECT count(*) FROM pragma_quick_check(1) WHERE quick_check = 'ok'") != 1) {
            m_unfit = true;
            return false;
        }
    }
    if (!Run("PRAGMA synchronous = FULL; PRAGMA cell_size_check = ON; PRAGMA trusted_schema = OFF"))
        return false;
    return Prepare() && !StatFile(m_path.c_str(), m_opened);
}

bool RegistryStore::Open() {
    auto const folder = UserConfigFolder();
    FileStamp now;
    if (m_unfit) {
        Close();
        m_unfit = false;
        if (!StatFile(m_path.c_str(), now)) m_refused = now;
    }
    bool const samePath = m_path.size() > folder.size() && m_path[folder.size()] == '/' &&
                          m_path.starts_with(folder) &&
                          std::string_view(m_path).substr(folder.size() + 1) == fileName;
    if (!samePath) {
        Close();
        m_path = folder + '/' + fileName;
    }
    bool const exists = !StatFile(m_path.c_str(), now);
    if (m_database != nullptr) {
        if (exists && now.IsSameFile(m_opened)) return true;
        Close();  // somebody has put another file, or none, in its place
    }
    if (exists && now == m_refused) return false;
    if (MakePrivateFolder(folder)) return false;
    if (OpenFile()) return true;
    Close();
    if (std::exchange(m_unfit, false) && !StatFile(m_path.c_str(), now)) m_refused = now;
    return false;
}

std::optional<RegistryStore::Key> RegistryStore::Child(Key parent, std::string_view name) {
    Query query(*this, findKey);
    query.Bind(1, parent).Bind(2, name);
    if (query.Row()) return query.Integer(0);
    return query.Done() ? std::optional<Key>(0) : std::nullopt;
}

// 0 where there is no such key, nothing on failure.
std::optional<RegistryStore::Key> RegistryStore::Find(HKEY root, std::string_view key) {
    std::optional<Key> at = root == HKEY_LOCAL_MACHINE ? 2 : 1;
    for (auto step = NextStep(key); at && *at != 0 && !step.empty(); step = NextStep(key))
        at = Child(*at, step);
    return at;
}

std::optional<RegistryStore::Key> RegistryStore::Make(HKEY root, std::string_view key) {
    if (auto const found = Find(root, key); !found || *found != 0) return found;
    Transaction transaction(*this);
    auto const made = transaction ? MakeSteps(root, key) : std::nullopt;
    return made && transaction.Commit() ? made : std::nullopt;
}

// Within a transaction.
std::optional<RegistryStore::Key> RegistryStore::MakeSteps(HKEY root, std::string_view key) {
    Key at = root == HKEY_LOCAL_MACHINE ? 2 : 1;
    for (auto step = NextStep(key); !step.empty(); step = NextStep(key)) {
        auto const child = Child(at, step);
        if (!child) return std::nullopt;
        if (*child != 0) {
            at = *child;
            continue;
        }
        if (!Query(*this, addKey).Bind(1, at).Bind(2, step).Finish()) return std::nullopt;
        at = sqlite3_last_insert_rowid(m_database.get());
    }
    return at;
}

std::optional<RegistryStore::Key> RegistryStore::CachedKey(std::string const& text, HKEY root,
                                                           std::string_view key) {
    if (auto const cached = m_keys.find(text); cached != m_keys.end()) return cached->second;
    auto const made = Make(root, key);
    if (!made) return std::nullopt;
    if (m_keys.size() >= mostCachedKeys) ForgetKeys();
    m_keys.insert_or_assign(text, *made);
    return made;
}

std::optional<RegistryValue> RegistryStore::Read(HKEY root, std::string_view key, std::string_view name) {
    std::lock_guard const lock(m_mutex);
    if (!Open()) return std::nullopt;
    auto const text = CacheText(root, key);
    for (int i = 0; i < registryTries; ++i) {
        auto const id = CachedKey(text, root, key);
        if (!id) return std::nullopt;
        Query query(*this, readValue);
        query.Bind(1, *id).Bind(2, name);
        if (query.Row()) return query.IsNull(0) ? std::nullopt : std::optional(query.Value(0));
        if (!query.Done()) return std::nullopt;
        ForgetKeys();
    }
    return std::nullopt;
}

bool RegistryStore::Put(Key key, std::string_view name, RegistryValue const& value) {
    Query query(*this, writeValue);
    query.Bind(1, key).Bind(2, name).Bind(3, value.type);
    if (value.type == registryText) {
        query.Bind(4, std::string_view(value.text));
    } else {
        query.Bind(4, value.number);
    }
    return query.Finish();
}

bool RegistryStore::Write(HKEY root, std::string_view key, std::string_view name,
                          RegistryValue const& value) {
    std::lock_guard const lock(m_mutex);
    if (!Open()) return false;
    auto const text = CacheText(root, key);
    for (int i = 0; i < registryTries; ++i) {
        auto const id = CachedKey(text, root, key);
        if (!id) return false;
        if (!Put(*id, name, value)) return false;
        if (sqlite3_changes(m_database.get()) != 0) return true;
        ForgetKeys();
    }
    return false;
}

bool RegistryStore::WriteTexts(HKEY root, std::string_view key,
                               std::vector<std::pair<std::string, std::string>> const& texts) {
    std::lock_guard const lock(m_mutex);
    if (!Open()) return false;
    Transaction transaction(*this);
    if (!transaction) return false;
    auto const id = MakeSteps(root, key);
    if (!id) return false;
    auto const isThere = [&](std::string_view name, std::string_view text) {
        Query query(*this, readValue);
        query.Bind(1, *id).Bind(2, name);
        return query.Row() && query.Integer(0) == registryText && query.Text(1) == text;
    };
    for (auto const& [name, text] : texts) {
        if (!isThere(name, text) && !Put(*id, name, {registryText, 0, text})) return false;
    }
    return transaction.Commit();
}

bool RegistryStore::ForEachValue(
    HKEY root, std::string_view key,
    std::function<bool(std::string_view name, RegistryValue const& value)> const& visit) {
    std::lock_guard const lock(m_mutex);
    if (!Open()) return false;
    auto const id = Make(root, key);
    if (!id) return false;
    Query query(*this, listValues);
    query.Bind(1, *id);
    while (query.Row()) {
        if (!visit(query.Text(0), query.Value(1))) return true;
    }
    return query.Done();
}

bool RegistryStore::SubKeys(HKEY root, std::string_view key, std::vector<std::string>& names) {
    std::lock_guard const lock(m_mutex);
    if (!Open()) return false;
    auto const id = Make(root, key);
    if (!id) return false;
    Query query(*this, listKeys);
    query.Bind(1, *id);
    while (query.Row())
        names.emplace_back(query.Text(0));
    return query.Done();
}

bool RegistryStore::DeleteValue(HKEY root, std::string_view key, std::string_view name) {
    std::lock_guard const lock(m_mutex);
    if (!Open()) return false;
    auto const id = Find(root, key);
    if (!id) return false;
    return *id == 0 || Query(*this, deleteValue).Bind(1, *id).Bind(2, name).Finish();
}

bool RegistryStore::DeleteKey(HKEY root, std::string_view key) {
    std::lock_guard const lock(m_mutex);
    if (!Open()) return false;
    Transaction transaction(*this);
    if (!transaction) return false;
    auto const id = Find(root, key);
    if (!id) return false;
    if (*id == 0) return transaction.Commit();
    auto probe = key;
    if (NextStep(probe).empty()) return false;
    {
        Query children(*this, listKeys);
        if (children.Bind(1, *id).Row() || !children.Done()) return false;
    }
    ForgetKeys();
    // All values of the key; its number is never given to another, so leaving them would only waste room.
    if (!Run(("DELETE FROM entries WHERE key = " + std::to_string(*id)).c_str())) return false;
    return Query(*this, deleteKey).Bind(1, *id).Finish() && transaction.Commit();
}

}  // namespace tov
