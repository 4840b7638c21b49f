#include "table.h"

#include "text.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace survey {
namespace {

// A cell in two halves: the first is pushed to the right, against the second.
struct Halves {
    std::string_view first;
    std::string_view second;
};

Halves Split(std::string_view cell, Table::Align align) {
    if (align == Table::Align::kLeft) return {{}, cell};
    std::size_t const digits = cell.find_last_of("0123456789") + 1;  // 0 where there is none
    std::string_view first = cell.substr(0, digits);
    first.remove_prefix(std::min(first.find_first_not_of(' '), first.size()));
    return {first, cell.substr(digits)};
}

struct Widths {
    std::size_t first = 0;
    std::size_t second = 0;
};

std::string Blanks(std::size_t width, std::size_t used) {
    return std::string(width > used ? width - used : 0, ' ');
}

}  // namespace

Table::Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

void Table::Add(std::vector<std::string> cells) {
    cells.resize(m_columns.size());
    m_rows.push_back(std::move(cells));
}

void Table::Print(std::ostream& out) const {
    std::vector<Widths> widths(m_columns.size());
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        for (auto const& row : m_rows) {
            Halves const halves = Split(row[i], m_columns[i].align);
            widths[i].first = std::max(widths[i].first, DisplayWidth(halves.first));
            widths[i].second = std::max(widths[i].second, DisplayWidth(halves.second));
        }
        std::size_t const title = DisplayWidth(m_columns[i].title);
        std::size_t const width = widths[i].first + widths[i].second;
        if (title > width) {
            (m_columns[i].align == Align::kLeft ? widths[i].second : widths[i].first) += title - width;
        }
    }

    auto print = [&](auto cell) {
        std::string line;
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (i != 0) line += "  ";
            line += cell(i);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    };
    print([&](std::size_t i) {
        std::string const blanks =
            Blanks(widths[i].first + widths[i].second, DisplayWidth(m_columns[i].title));
        return m_columns[i].align == Align::kLeft ? m_columns[i].title + blanks : blanks + m_columns[i].title;
    });
    for (auto const& row : m_rows) {
        print([&](std::size_t i) {
            Halves const halves = Split(row[i], m_columns[i].align);
            return Blanks(widths[i].first, DisplayWidth(halves.first)) + std::string(halves.first) +
                   std::string(halves.second) + Blanks(widths[i].second, DisplayWidth(halves.second));
        });
    }
}

}  // namespace survey
