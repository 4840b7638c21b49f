// Columns of text for a terminal.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace survey {

class Table {
 public:
    enum class Align {
        kLeft,
        kNumber,  // last digits stand below each other, whatever follows them
    };

    struct Column {
        std::string title;
        Align align = Align::kLeft;
    };

    explicit Table(std::vector<Column> columns);

    // One cell for each column, in UTF-8.
    void Add(std::vector<std::string> cells);

    // Title and rows, with two blanks between the columns and none at the ends of lines.
    void Print(std::ostream& out) const;

 private:
    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace survey
