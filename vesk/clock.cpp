#include "vesk/clock.h"

#include <langinfo.h>
#include <cstring>
#include <cwchar>
#include <limits>

namespace tov {

void VeskReadTimeZone() {
    tzset();
}

static_assert(std::numeric_limits<std::time_t>::max() == std::numeric_limits<std::int64_t>::max());

bool VeskLocalFields(std::int64_t seconds, std::tm& fields) {
    if (localtime_r(&seconds, &fields) != nullptr) return true;
    fields = {};
    return false;
}

bool VeskUtcFields(std::int64_t seconds, std::tm& fields) {
    if (gmtime_r(&seconds, &fields) != nullptr) return true;
    fields = {};
    return false;
}

void VeskAppendTime(std::string& out, wchar_t const* format, std::tm const& fields) {
    wchar_t text[256];
    std::size_t const length = std::wcsftime(text, std::size(text), format, &fields);
    for (std::size_t i = 0; i < length; ++i) {
        auto const c = static_cast<std::uint32_t>(text[i]);
        auto const put = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
        if (c < 0x80) {
            put(c);
        } else if (c < 0x800) {
            put(0xC0 | c >> 6);
            put(0x80 | (c & 0x3F));
        } else {
            if (c < 0x10000) {
                put(0xE0 | c >> 12);
            } else {
                put(0xF0 | c >> 18);
                put(0x80 | (c >> 12 & 0x3F));
            }
            put(0x80 | (c >> 6 & 0x3F));
            put(0x80 | (c & 0x3F));
        }
    }
}

namespace {

bool IsPlain(std::string_view text) {
    for (char const c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    }
    return true;
}

// A locale may keep its names in another character set than UTF-8. It has them in wide characters as well.
std::string_view NameInUtf8(nl_item item, wchar_t const* format, int std::tm::*field, int value) {
    std::string_view const name = nl_langinfo(item);
    if (IsPlain(name) || std::strcmp(nl_langinfo(_NL_TIME_CODESET), "UTF-8") == 0) return name;
    thread_local std::string converted;
    converted.clear();
    std::tm fields{};
    fields.*field = value;
    VeskAppendTime(converted, format, fields);
    return converted;
}

}  // namespace

std::string_view VeskMonthName(int month, bool full) {
    return NameInUtf8((full ? MON_1 : ABMON_1) + month, full ? L"%B" : L"%b", &std::tm::tm_mon, month);
}

std::string_view VeskDayName(int day, bool full) {
    return NameInUtf8((full ? DAY_1 : ABDAY_1) + day, full ? L"%A" : L"%a", &std::tm::tm_wday, day);
}

std::string_view VeskHalfDayName(bool afternoon) {
    return NameInUtf8(afternoon ? PM_STR : AM_STR, L"%p", &std::tm::tm_hour, afternoon ? 12 : 0);
}

}  // namespace tov
