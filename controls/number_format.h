// Numbers by the formats of printf that hosts give to edits.
#pragma once

#include <tov310/types.h>

#include <string_view>

namespace tov {

// The first conversion of a floating number takes the value, "%%" is a percent sign, everything else stands
// for itself. The decimal point is what is given.
CString PrintByFormat(std::string_view format, double value, std::string_view decimalSeparator);

// The same with the first conversion d, i, u, o, x or X. Sizes (h, l) are of no meaning: the value is printed
// as it is, unsigned for all but d and i.
CString PrintByFormat(std::string_view format, long value);

}  // namespace tov
