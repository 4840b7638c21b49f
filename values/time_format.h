// Texts of times by the codes of strftime, and the search for such codes.
#pragma once

#include <tov310/types.h>

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string_view>

namespace tov {

// Prints fields by the codes that CTime::Format tells of. Anything else stands for itself.
CString FormatFields(std::tm const& fields, std::string_view format);

// How the hours of a span are printed.
struct SpanHours {
    char code = 'H';     // the code that stands for them; "%H" is always known
    bool all = false;    // all of the span, not those of the day
    bool padded = true;  // to two digits
};

// Prints a span in seconds by the codes that CTimeSpan::Format tells of.
CString FormatSpan(std::int64_t seconds, std::string_view format, SpanHours hours = {});

// A code in a format: from its "%" on, with a flag perhaps.
struct FormatCode {
    std::size_t begin;
    std::size_t end;
    char letter;   // 0 where the format ends within the code
    bool flagged;  // by "#"
};

// The first code from a position on; its begin is the length of the format where there is none.
FormatCode FindFormatCode(std::string_view format, std::size_t from);
// The first one of a letter.
FormatCode FindFormatCode(std::string_view format, char letter);

}  // namespace tov
