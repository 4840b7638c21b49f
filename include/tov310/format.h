// How a number is printed: the text side of a unit.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

// Prints a number that is in the numeric form of its unit (value.h tells the units and their forms).
//
// Without a format of the host's the units 12 and 15 print as three fields, `  12° 34' 56.78900"`, and all
// others as one number with a leading blank or sign. A format of the host's is a text with tokens:
//
//   %U                    the unit abbreviation, put in when the format is set
//   the custom token      whatever CustomFormat says, anywhere
//   for the units 12 and 15:
//   %DegOrG  %degOrG      sign and degrees or gon; in small letters followed by their sign
//   %MinOrC  %minOrC      minutes or c
//   %SecOrCC %secOrCC     seconds or cc
//   for all others: the first conversion of the kinds %f %e %g (also in capitals, with the flags - + 0 # and
//   blank, width, precision and "l") takes the number; "%%" is a percent sign; ".*" takes the precision of
//   this object. Everything else stands for itself.
//   %?  %[  %]            with a "%?" behind the third character the first bracketed section is left out,
//                         and the second one stays without its brackets
//
// Tokens are replaced in one pass: what was put in is not searched again.
class TOV_CORE_API CTovFormat {
 public:
    CTovFormat();

    // The abbreviation comes from the unit; a null or empty format is none.
    CTovFormat(long unit, int useSecOnly, int limitToCircle, char const* format);

    CTovFormat(CTovFormat const&) = default;
    CTovFormat& operator=(CTovFormat const&) = default;
    virtual ~CTovFormat();

    // A null or empty text is ignored. The format keeps what it has put in for "%U".
    virtual void SetUnitAbbreviation(char const* abbreviation);

    // The abbreviation of the unit, or with UseSecOnly that of its small unit; empty for an unknown one. A
    // format that is set takes it over.
    virtual void SetUnitAbbreviation(long unit);
    virtual void GetUnitAbbreviation(CString& abbreviation) const;

    // The format as it was given; empty for none.
    virtual CString Format();
    // A null or empty format is ignored.
    virtual void Format(char const* format);
    bool HasFormat() const { return !m_expandedFormat.empty(); }

    // The custom token and what is put in its place; null empties.
    virtual void CustomFormat(char const* token, char const* text);

    // Decimals; below 1 means 6. In units 12 and 15 the seconds have Precision - 5 decimals, below 6
    // always 5; more than 15 of them are zeros. What is beyond 1024 counts as 1024. Initially 6.
    virtual void Precision(int precision);
    virtual int Precision();

    // Prints the value, which is in the numeric form of the unit. Answers 0. In units 12 and 15 a format
    // without any token leaves the text as it is. What is not finite prints as " nan", " inf" or "-inf".
    virtual int ConvertToString(double value, long unit, CString& out);

    // Degree, minute and second signs behind the fields of units 12 and 15. Initially 1.
    void UseDmsSymbols(int use) { m_bUseDmsSymbols = use; }
    int UseDmsSymbols() const { return m_bUseDmsSymbols; }

    // Leave out degrees that are 0, and then minutes that are 0. Initially 0.
    void TrimLeadingZeros(int trim) { m_bTrimLeadingZeros = trim; }
    int TrimLeadingZeros() const { return m_bTrimLeadingZeros; }

    // Cut zeros at the end, but not the first decimal. Initially 0.
    void TrimTrailingZeros(int trim) { m_bTrimTrailingZeros = trim; }
    int TrimTrailingZeros() const { return m_bTrimTrailingZeros; }

    // Print the whole angle in seconds (units 11, 12, 13) or thousandths (14, 15, 16). Printing in a unit
    // that has no such form clears it. Initially 0.
    void UseSecOnly(int use) { m_bUseSecOnly = use; }
    int UseSecOnly() const { return m_bUseSecOnly; }

    // Keep the printed degrees of units 12 and 15 below the circle. Initially 0.
    void LimitToCircle(int limit) { m_bLimitToCircle = limit; }
    int LimitToCircle() const { return m_bLimitToCircle; }

    // Decimals with which a plain number is printed: those of the format's conversion, else of Precision.
    int DecimalsShown() const;

 private:
    // A stretch of the format as it was given, or something that was put in and is not searched for tokens.
    struct Piece {
        CString text;
        bool inserted;
    };

    void BuildFmtList();
    std::vector<Piece> WithCustomText() const;
    void PrintFormat(double value, long unit, CString& out) const;
    void PrintFields(double value, long unit, CString& out) const;
    void PrintPlain(double value, CString& out) const;
    int ShownPrecision() const { return m_nPrecision < 1 ? 6 : m_nPrecision; }

    CString m_strUnitAbbreviation;
    std::vector<Piece> m_expandedFormat;
    CString m_strFormat;
    CString m_strCustomToken;
    CString m_strCustomText;
    int m_bUseDmsSymbols = 1;
    int m_bTrimLeadingZeros = 0;
    int m_bTrimTrailingZeros = 0;
    int m_bUseSecOnly = 0;
    int m_bLimitToCircle = 0;
    int m_nPrecision = 6;
};

}  // namespace tov
