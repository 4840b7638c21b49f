#include "util/trim.h"
#include "values/time_format.h"
#include "values/time_helper_kinds.h"

#include <string_view>

namespace tov {
namespace {

// A sign or blank that may stand between two fields.
bool IsSeparator(char c) {
    auto const within = [c](char from, char to) { return c >= from && c <= to; };
    return within(' ', '/') || within(':', '@') || within('[', '`') || within('{', '~');
}

// Takes out the first code of the letter, with the separator before it.
bool CutCode(char letter, CString& format) {
    FormatCode code = FindFormatCode(format, letter);
    if (code.begin == format.size()) return false;
    // What stands before may be the end of another code, "%%" for one.
    std::size_t literal = 0;
    for (FormatCode other = FindFormatCode(format, std::size_t{0}); other.begin < code.begin;
         other = FindFormatCode(format, other.end))
        literal = other.end;
    if (code.begin > literal && IsSeparator(format[code.begin - 1])) --code.begin;
    format.erase(code.begin, code.end - code.begin);
    format = CString(TrimBlanks(format));
    return true;
}

CString Print(CTime const& time, char const* format) {
    return time.Format(format);
}

CString Print(COleDateTime const& time, char const* format) {
    return time.Format(format);
}

template <class T>
CString PrintRounded(T time, char const* format, CTovTimeHelper::eRoundFlag flag) {
    if (format == nullptr || *format == 0) return {};
    CTovTimeHelper::Round(time, flag);
    if ((flag & CTovTimeHelper::eRoundCut) == 0) return Print(time, format);
    CString left = format;
    bool const cut = CutRounded(left, flag);
    CString text = Print(time, left.c_str());
    if (cut && text.ends_with(':')) text.pop_back();
    return text;
}

// Where the blank stands that parts date and time in the current format.
std::size_t EndOfDate(CString const& format) {
    std::size_t const end = format.find(" %H");
    return std::min(end != CString::npos ? end : format.find(" %#I"), format.size());
}

CString DateFormat() {
    CString const format = CTovTime::CurrentTimeFormat();
    return CString(TrimBlanks(format.substr(0, EndOfDate(format))));
}

CString ClockFormat() {
    CString const format = CTovTime::CurrentTimeFormat();
    return CString(TrimBlanks(format.substr(EndOfDate(format))));
}

void ReplaceEvery(CString& text, std::string_view what, std::string_view by) {
    std::size_t at = 0;
    while ((at = text.find(what, at)) != CString::npos) {
        text.erase(at, what.size());
        text.insert(at, by);
        at += by.size();
    }
}

}  // namespace

bool CutRounded(CString& format, int flag) {
    if ((flag & CTovTimeHelper::eRoundCut) == 0) return false;
    int const coarseness = flag & roundFlagMask;
    bool cut = false;
    if (coarseness == CTovTimeHelper::eRoundToMinute || coarseness == CTovTimeHelper::eRoundToHour)
        cut = CutCode('S', format);
    if (coarseness == CTovTimeHelper::eRoundToHour) cut = CutCode('M', format) || cut;
    return cut;
}

void CTovTimeHelper::CutString(char const* code, CString& format) {
    FormatCode const searched = FindFormatCode(code != nullptr ? code : "", std::size_t{0});
    if (searched.letter != 0) CutCode(searched.letter, format);
}

CString CTovTimeHelper::Format(CTime const& time, char const* format, eRoundFlag flag) {
    return PrintRounded(time, format, flag);
}

CString CTovTimeHelper::Format(COleDateTime const& time, char const* format, eRoundFlag flag) {
    return PrintRounded(time, format, flag);
}

CString CTovTimeHelper::Format(CTovTime const& time, char const* format, eRoundFlag flag) {
    return PrintRounded(time, format, flag);
}

CString CTovTimeHelper::Format(CTime const& time, eRoundFlag flag) {
    return PrintRounded(time, CTovTime::CurrentTimeFormat().c_str(), flag);
}

CString CTovTimeHelper::Format(COleDateTime const& time, eRoundFlag flag) {
    return PrintRounded(time, CTovTime::CurrentTimeFormat().c_str(), flag);
}

CString CTovTimeHelper::Format(CTovTime const& time, eRoundFlag flag) {
    return PrintRounded(time, CTovTime::CurrentTimeFormat().c_str(), flag);
}

CString CTovTimeHelper::FormatDate(CTime const& time, eRoundFlag flag) {
    return PrintRounded(time, DateFormat().c_str(), flag);
}

CString CTovTimeHelper::FormatDate(COleDateTime const& time, eRoundFlag flag) {
    return PrintRounded(time, DateFormat().c_str(), flag);
}

CString CTovTimeHelper::FormatDate(CTovTime const& time, eRoundFlag flag) {
    return PrintRounded(time, DateFormat().c_str(), flag);
}

CString CTovTimeHelper::FormatTime(CTime const& time, eRoundFlag flag) {
    return PrintRounded(time, ClockFormat().c_str(), flag);
}

CString CTovTimeHelper::FormatTime(COleDateTime const& time, eRoundFlag flag) {
    return PrintRounded(time, ClockFormat().c_str(), flag);
}

CString CTovTimeHelper::FormatTime(CTovTime const& time, eRoundFlag flag) {
    return PrintRounded(time, ClockFormat().c_str(), flag);
}

CString CTovTimeHelper::GetTovTimeFormat(eType type) {
    CString format = CTovTime::CurrentTimeFormat();
    std::size_t year = format.find("%y");
    if (year == CString::npos) year = format.find("%Y");
    if (year == CString::npos) return {};
    if (type == eTypeDate) {
        format.erase(year + 2);
    } else if (type == eTypeTime) {
        format.erase(0, year + 3);
    }
    ConvertTovTimeFormatToDateTimeCtrl(format);
    return CString(TrimBlanks(format));
}

void CTovTimeHelper::ConvertTovTimeFormatToDateTimeCtrl(CString& format) {
    // In this order; what control pictures do not have goes first.
    static constexpr struct {
        std::string_view code;
        std::string_view picture;
    } replacements[] = {
        {"%a", ""},      {"%#a", ""},      {"%A", ""},     {"%#A", ""},     {"%j", ""},     {"%#j", ""},
        {"%U", ""},      {"%#U", ""},      {"%w", ""},     {"%#w", ""},     {"%W", ""},     {"%#W", ""},
        {"%z", ""},      {"%#z", ""},      {"%Z", ""},     {"%#Z", ""},     {"%%", ""},     {"%p", ""},
        {"%d", "dd"},    {"%#d", "dd"},    {"%m", "MM"},   {"%#m", "MM"},   {"%b", "MMM"},  {"%#b", "MMM"},
        {"%B", "MMMM"},  {"%#B", "MMMM"},  {"%y", "yyyy"}, {"%#y", "yyyy"}, {"%Y", "yyyy"}, {"%#Y", "yyyy"},
        {"%I", "tt hh"}, {"%#I", "tt hh"}, {"%H", "HH"},   {"%#H", "HH"},   {"%M", "mm"},   {"%#M", "mm"},
        {"%S", "ss"},    {"%#S", "ss"},
    };
    for (auto const& [code, picture] : replacements)
        ReplaceEvery(format, code, picture);
}

}  // namespace tov
