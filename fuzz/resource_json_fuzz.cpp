// Text tables of resource modules come from translators: any bytes are read or refused, a table that was read
// is written and read again as the same, and a reason names a line that there is, in whole characters.
#include "frame/string_table.h"
#include "fuzz/expect.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    tov::StringTable table = {{1, "left over"}};
    std::string reason = "left over";
    if (tov::ParseStringTable(bytes, table, reason)) {
        Expect(reason.empty());
        nlohmann::json written = nlohmann::json::object();
        for (auto const& [id, text] : table)
            written[std::to_string(id)] = text;
        tov::StringTable again;
        Expect(tov::ParseStringTable(written.dump(), again, reason));
        Expect(again == table);
        return 0;
    }
    Expect(table.empty());
    Expect(reason.starts_with("line "));
    unsigned long const line = std::strtoul(reason.c_str() + 5, nullptr, 10);
    auto const lines = static_cast<unsigned long>(std::ranges::count(bytes, '\n')) + 1;
    Expect(line >= 1 && line <= lines);
    Expect(nlohmann::json::accept(nlohmann::json(reason).dump()));  // dump throws for what is no UTF-8
    return 0;
}
