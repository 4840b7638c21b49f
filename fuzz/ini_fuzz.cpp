// Initialisation files from outside: any bytes can be read and edited, an edit is read back as what it was,
// and all that it was not about stays.
#include "fuzz/expect.h"
#include "util/ini_text.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

// All entries of all sections but one, with their values, and the lines that are none.
std::string Others(tov::IniText const& text, std::string_view section, std::string_view entry) {
    std::string all;
    for (auto const& name : text.SectionNames()) {
        bool const here = tov::FoldedEqual{}(name, tov::TrimBlanks(section));
        if (!here) (all += name) += '\n';
        text.ForEachLine(name, [&](std::string_view e, bool has, std::string_view value) {
            if (here && has && tov::FoldedEqual{}(e, tov::TrimBlanks(entry))) return true;
            ((((all += e) += has ? '=' : ' ') += value) += '\n');
            return true;
        });
    }
    return all;
}

}  // namespace

// The input: three texts, each closed by a zero byte, and the file.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<char const*>(data), size);
    auto const next = [&rest] {
        auto const part = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
        return std::string(part);
    };
    auto const section = next();
    auto const entry = next();
    auto const value = next();
    tov::IniText const text{std::string(rest)};
    if (!text.IsReadable()) return 0;
    auto const others = Others(text, section, entry);

    tov::IniText const removed(text.WithoutEntry(section, entry));
    Expect(!removed.Value(section, entry));
    Expect(Others(removed, section, entry) == others);
    Expect(!tov::IniText(text.WithoutSection(section)).HasSection(section));

    bool const writable = tov::IniText::IsWritableSection(section) && tov::IniText::IsWritableEntry(entry) &&
                          tov::IniText::IsWritableValue(value);
    if (!writable) return 0;
    tov::IniText const set(text.WithValue(section, entry, value));
    if (!set.IsReadable()) return 0;
    Expect(set.Value(section, entry) == tov::TrimBlanks(value));
    Expect(set.WithValue(section, entry, tov::TrimBlanks(value)).size() <= set.Bytes().size());
    Expect(Others(set, section, entry) == others);

    if (!tov::IniText::IsWritableLine(value)) return 0;
    std::string_view const lines[] = {value, value};
    std::size_t count = 0;
    tov::IniText(text.WithLines(section, lines)).ForEachLine(section, [&](auto, bool, auto) {
        return ++count < 3;
    });
    Expect(count == 2);
    return 0;
}
