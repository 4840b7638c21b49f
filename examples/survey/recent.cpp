#include "recent.h"

#include "answer.h"
#include "text.h"

#include <tov310/profile.h>

#include <charconv>
#include <iostream>
#include <string_view>
#include <system_error>

namespace survey {
namespace {

constexpr char const* recentSection = "Recent tables";

// A profile gives back no longer text from a file.
constexpr std::size_t longestEntry = 4000;

class RecentList : public tov::CTovLastDocuments {
 public:
    RecentList() : CTovLastDocuments(nullptr, mostRecent) { Section(recentSection); }
};

// The list takes a ";" for the end of the path and cannot keep control characters, and a file that people
// edit is best kept in UTF-8. Bytes of that kind are written as "%3B".
std::string Escaped(std::string const& path) {
    constexpr char digits[] = "0123456789ABCDEF";
    bool const isText = IsUtf8(path);
    std::string kept;
    for (char const c : path) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < ' ' || c == '%' || c == ';' || (byte >= 0x80 && !isText)) {
            kept += {'%', digits[byte / 16], digits[byte % 16]};
        } else {
            kept += c;
        }
    }
    return kept;
}

std::string Unescaped(std::string_view kept) {
    std::string path;
    while (!kept.empty()) {
        unsigned byte = 0;
        bool const isEscape =
            kept.size() > 2 && kept.front() == '%' &&
            std::from_chars(kept.data() + 1, kept.data() + 3, byte, 16).ptr == kept.data() + 3 && byte != 0;
        path += isEscape ? static_cast<char>(byte) : kept.front();
        kept.remove_prefix(isEscape ? 3 : 1);
    }
    return path;
}

}  // namespace

void RememberTable(std::filesystem::path const& path) {
    std::error_code failed;
    std::filesystem::path const full = std::filesystem::absolute(path, failed).lexically_normal();
    std::string const kept = Escaped(full.string());
    // A pipe cannot be opened again.
    if (failed || !std::filesystem::is_regular_file(full, failed)) return;
    if (kept.size() <= longestEntry) RecentList().AddDocument(kept.c_str());
}

std::vector<std::string> RecentTables() {
    RecentList list;
    std::vector<std::string> paths;
    for (unsigned number = 1; number <= list.GetCapacity(); ++number) {
        std::string_view const kept = list.GetDocument(number);
        if (kept.empty()) break;
        paths.push_back(TableOf(std::string(kept)));
    }
    return paths;
}

std::unique_ptr<tov::CTovLastDocuments> RecentDocuments() {
    return std::make_unique<RecentList>();
}

std::string TableOf(std::string const& document) {
    return Unescaped(std::string_view(document).substr(0, document.find(';')));
}

void ForgetRecentTables() {
    tov::CTovProfileEntries::WriteTovProfileString(recentSection, nullptr, nullptr);
}

std::string RecentHelp() {
    return "Lists the tables that were opened last; survey --recent N opens number N again.\n";
}

int RunRecent(Arguments& arguments, CommonOptions& common) {
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        if (!arguments.IsFile()) arguments.Unknown();
        throw UsageError("recent lists the tables and takes no name; --recent N opens one");
    }
    LoadLanguage(common.language);
    if (common.help) return kFine;
    OpenProfile(common);
    std::vector<std::string> const recent = RecentTables();
    if (recent.empty()) std::cout << "No table was opened yet.\n";
    for (std::size_t i = 0; i < recent.size(); ++i)
        std::cout << i + 1 << "  " << Shown(recent[i]) << '\n';
    return kFine;
}

}  // namespace survey
