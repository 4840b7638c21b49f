// Shaping of texts: numbers for display, rows of names, lists in one text.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

// Cuts zeros at the end of a number in fixed form down to its first decimal place: "1.500" becomes "1.5",
// "1.000" becomes "1.0". The decimal point is that of the process's locale; a text without one stays.
TOV_CORE_API void TovTrimTrailingZeros(CString& text);

// A number for display, with the decimal point of the process's locale: six significant digits below 1 and
// five decimals from 1 on, without zeros at the end. Zero and magnitudes up to 1e-11 or from 1e13 on are
// printed as "%g" does.
TOV_CORE_API CString TovAdvancedFormatDouble(double const& value);

// The pair of words for a truth value.
enum eTovBooleanType {
    eTovBooleanYesNo = 1,
    eTovBooleanTrueFalse = 2,
    eTovBooleanOnOff = 3,
};

// The word for a truth value in the language of the library's resource module, as it was at the first call;
// empty for any other type. Lives as long as the process.
TOV_CORE_API char const* TovBooleanAsString(int value, eTovBooleanType type);

// The next name of a row: "Report" gives "Report (2)", and that gives "Report (3)". The result has less than
// `maxLength` characters (0 means 260), for which the name is cut, down to nothing, but never the number.
// Empty for an empty name and behind the number 2147483647. What is in the brackets counts as a number only
// if it is one from 1 to 2147483647 in digits.
TOV_CORE_API CString TovIncrementString(char const* text, int maxLength);

// The pieces between double quotes, in order; what stands outside them, empty pieces and a last one without
// its closing quote are left out.
TOV_CORE_API void TovExtractTokens(char const* text, std::vector<CString>& tokens);

// The pieces between separators, each of which is one character of the text `separators`. Two in a row have
// an empty piece between them; behind one at the very end there is none. Answers the number of pieces.
TOV_CORE_API unsigned int TovExtractSubstrings(char const* text, char const* separators,
                                               std::vector<CString>& pieces);

}  // namespace tov
