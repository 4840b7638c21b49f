#include "values/tov_time_format.h"

#include <tov310/messages.h>
#include <tov310/profile.h>
#include <tov310/tov_time.h>
#include <tov310/window.h>

#include "frame/resource_module.h"

#include <atomic>
#include <string_view>

namespace tov {
namespace {

constexpr char const* timeFormats[tovTimeFormatCount] = {
    "%m/%d/%Y %H:%M:%S",   "%d/%m/%Y %H:%M:%S",  "%m/%d/%Y %#I:%M:%S %p",   "%d/%m/%Y %#I:%M:%S %p",
    "%m/%d/%y %H:%M:%S",   "%d/%m/%y %H:%M:%S",  "%m/%d/%y %#I:%M:%S %p",   "%d/%m/%y %#I:%M:%S %p",
    "%m-%d-%Y %H:%M:%S",   "%d-%m-%Y %H:%M:%S",  "%m-%d-%Y %#I:%M:%S %p",   "%d-%m-%Y %#I:%M:%S %p",
    "%m-%d-%y %H:%M:%S",   "%d-%m-%y %H:%M:%S",  "%m-%d-%y %#I:%M:%S %p",   "%d-%m-%y %#I:%M:%S %p",
    "%m.%d.%Y %H:%M:%S",   "%d.%m.%Y %H:%M:%S",  "%m.%d.%Y %#I:%M:%S %p",   "%d.%m.%Y %#I:%M:%S %p",
    "%m.%d.%y %H:%M:%S",   "%d.%m.%y %H:%M:%S",  "%m.%d.%y %#I:%M:%S %p",   "%d.%m.%y %#I:%M:%S %p",
    "%#d. %b %Y %H:%M:%S", "%#d-%b-%Y %H:%M:%S", "%#d. %b %Y %#I:%M:%S %p", "%#d-%b-%Y %#I:%M:%S %p",
    "%#d. %b %y %H:%M:%S", "%#d-%b-%y %H:%M:%S", "%#d. %b %y %#I:%M:%S %p", "%#d-%b-%y %#I:%M:%S %p",
};

constexpr unsigned notLoaded = 0xFFFFFFFF;

// The text of the format follows from its number, so the number is all that is shared between threads.
std::atomic<unsigned> currentTimeFormat{notLoaded};

// What the profile holds; not below tovTimeFormatCount where that is no format.
unsigned StoredTimeFormat() {
    return CTovProfileEntries::ReadTovProfileInt(CTovProfileEntries::TimeSection(),
                                                 CTovProfileEntries::TimeEntryFormatNumber(), -1);
}

void StoreTimeFormat(unsigned format) {
    char const* const section = CTovProfileEntries::TimeSection();
    CTovProfileEntries::WriteTovProfileInt(section, CTovProfileEntries::TimeEntryFormatNumber(),
                                           static_cast<int>(format));
    CTovProfileEntries::WriteTovProfileString(section, CTovProfileEntries::TimeEntryFormatString(),
                                              timeFormats[format]);
}

unsigned LoadTimeFormat() {
    unsigned const stored = StoredTimeFormat();
    return stored < tovTimeFormatCount ? stored : 0;
}

}  // namespace

void EnsureCurrentTimeFormat() {
    unsigned expected = notLoaded;
    if (currentTimeFormat.load(std::memory_order_relaxed) != notLoaded) [[likely]]
        return;
    // Who has chosen a format meanwhile is not overruled.
    currentTimeFormat.compare_exchange_strong(expected, LoadTimeFormat());
}

CString FormatFromResource(HINSTANCE module, unsigned id) {
    CString text;
    if (module == nullptr) {
        TovLoadString(id, text);
        return text;
    }
    std::string const* found = module->FindString(id);
    if (found == nullptr) found = TovBuiltInResourceModule()->FindString(id);
    return found != nullptr ? *found : text;
}

CTovTime::CTimeFormatComboBox::~CTimeFormatComboBox() = default;

unsigned int CTovTime::CurrentTimeFormatIndex() {
    EnsureCurrentTimeFormat();
    return currentTimeFormat.load(std::memory_order_relaxed);
}

CString CTovTime::CurrentTimeFormat() {
    return timeFormats[CurrentTimeFormatIndex()];
}

char const* CTovTime::TimeFormat(eTimeFormat format) {
    return format < tovTimeFormatCount ? timeFormats[format] : "";
}

char CTovTime::DateSeparator() {
    std::string_view const format = timeFormats[CurrentTimeFormatIndex()];
    std::size_t year = format.find("%Y");
    if (year == format.npos) year = format.find("%y");
    if (year == format.npos) return ' ';
    return format[year > 0 ? year - 1 : 2];
}

int CTovTime::DateOrder() const {
    std::string_view const format = timeFormats[CurrentTimeFormatIndex()];
    std::size_t const day = format.find("%d");
    std::size_t const month = format.find("%m");
    if (day == format.npos) return 1;
    return month != format.npos && month < day ? 1 : 0;
}

void CTovTime::DefaultSettings(eTimeFormat format) {
    if (format >= tovTimeFormatCount) return;
    unsigned stored = StoredTimeFormat();
    if (stored >= tovTimeFormatCount) StoreTimeFormat(stored = format);
    currentTimeFormat = stored;
}

void CTovTime::SaveSettings(eTimeFormat format) {
    if (format >= tovTimeFormatCount) return;
    if (format != StoredTimeFormat()) StoreTimeFormat(format);
    currentTimeFormat = format;
}

void CTovTime::InitializeTimeFormatComboBox(CTimeFormatComboBox& box) const {
    CTovTime const now;
    box.ResetContent();
    for (unsigned format = 0; format < tovTimeFormatCount; ++format)
        box.AddString(now.Format(timeFormats[format]).c_str());
    currentTimeFormat = LoadTimeFormat();
    box.SetCurSel(static_cast<int>(currentTimeFormat));
}

unsigned int CTovTime::GetCurrentSelection(CTimeFormatComboBox const& box) const {
    auto const selection = static_cast<unsigned>(box.GetCurSel());
    return selection < tovTimeFormatCount ? selection : 0;
}

void CTovTime::SaveCurrentSelection(CTimeFormatComboBox const& box, CWnd* root) const {
    unsigned const before = CurrentTimeFormatIndex();
    unsigned const now = GetCurrentSelection(box);
    currentTimeFormat = now;
    StoreTimeFormat(now);
    if (now == before || root == nullptr) return;
    TovSendMessageToDescendants(root->GetSafeHwnd(), WM_TOV_FORMAT_CHANGED_TIME, before,
                                static_cast<LPARAM>(now));
}

}  // namespace tov
