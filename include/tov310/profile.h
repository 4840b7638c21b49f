// The one gateway to everything that the library remembers between runs.
//
// A path chooses the store at each call, so a program can use both at once. Where the path contains ".INI"
// (in any case) or ":\" or ":/", or begins with a separator, it names an initialisation file; any other path
// names a branch of the registry, a tree of typed values in an SQLite file in the user's configuration
// folder. A file name without a folder ("App.ini") stands in that folder, too; "\" and "/" both divide
// folders. A registry path is divided at "\" only.
//
// The file store keeps what it does not write byte for byte, comments and order included, writes the file
// whole or not at all, and lets one process write at a time. It needs to write in the folder of the file.
// Links are written through. Only the user's configuration folder is made when it is missing.
//
// Null is an empty text wherever nothing else is said. No operation throws.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <map>
#include <utility>
#include <vector>

namespace tov {

class CWinApp;

// Roots of the registry tree. The values are the platform-neutral names of the roots; only the current user
// and the local machine hold branches of the library, side by side in the same file.
enum class HKEY : std::uint32_t {};
inline constexpr HKEY HKEY_CLASSES_ROOT{0x80000000};
inline constexpr HKEY HKEY_CURRENT_USER{0x80000001};
inline constexpr HKEY HKEY_LOCAL_MACHINE{0x80000002};
inline constexpr HKEY HKEY_USERS{0x80000003};

// The profile path: what the short family below uses. A trailing separator is removed; null or an empty path
// means the default one, Tov310.INI in the user's configuration folder.
TOV_CORE_API void TovSetProfilePath(char const* path);

// Never empty: an empty profile path becomes the default one here. The text is valid until the path is set
// again.
TOV_CORE_API char const* TovGetProfilePath();

// The profile path becomes the default one with the prefix and "." in front of the file name. An empty prefix
// gives the default path itself.
TOV_CORE_API void TovSetProfilePrefix(char const* prefix);

// The root under which registry branches lie: HKEY_CURRENT_USER (default) or HKEY_LOCAL_MACHINE. Any other
// value is ignored.
TOV_CORE_API void TovSetRegistryProfileRoot(HKEY root);
TOV_CORE_API HKEY TovGetRegistryProfileRoot();

// Sections, entries and their values. Names fold ASCII case. Reads answer the default where nothing can be
// read; writes answer 1, or 0 when nothing was written.
//
// In a file an entry is a line "name=value" below "[section]". Blanks around names and values do not count,
// and a pair of quotes around a value (either kind) is taken off when it is read; so a value keeps its blanks
// at the ends when it is written in quotes. Where a name stands twice the first one counts. Lines that begin
// with ";" are comments. Lines end with LF or CR LF; new ones as their neighbours do, those of a new file
// with CR LF, which every reader of such files takes. What could not be read back is refused with 0: a line
// end in a name or value, "]" in a section, "=" in an entry or "[" or ";" at its start. A file in UTF-16 is
// neither read nor written.
//
// In the registry a value lies at root \ "software\" + path \ section \ entry; an empty path stands for the
// profile path. Reading makes the key of the section when it is missing. Values are texts or 32-bit numbers,
// and either is read as the other. A line end in a name or text is refused with 0 here too.
class TOV_CORE_API CTovProfileEntries {
 public:
    // Fills the buffer with texts "name=value", each with a closing zero, and one more zero behind the last:
    // at most `size` bytes with all zeros. The first text that does not fit ends the list. Quotes stay on. A
    // line of a file that has no "=" is given as it is. Answers the bytes that were filled without the last
    // zero, or size - 2 when something did not fit. 0 means that there is no such section, nothing in it, or
    // no room. In the registry, texts above 8191 bytes and names above 260 characters are left out, and a
    // value without a name ends the list.
    static int ReadProfileSection(char const* path, char const* section, char* buffer, unsigned long size);

    // Writes such a list, closed by an empty text. In a file it replaces the section: the comments in it
    // stay, and a text that would not be read back as an entry (";", "[", a line end) refuses the whole. In
    // the registry the values are added as texts one by one, those without "=" left out, up to the first that
    // fails.
    static int WriteProfileSectionA(char const* path, char const* section, char const* buffer);

    // The decimal number at the start of a value, behind blanks and a sign: 0 where there is none, and the
    // lowest 32 bits of too large a one. A negative number comes back modulo 2^32, to be cast to int.
    static unsigned int ReadProfileInt(char const* path, char const* section, char const* entry,
                                       int defaultValue);
    static int WriteProfileInt(char const* path, char const* section, char const* entry, int value);

    // From a file at most 4095 bytes, cut between two characters; the default likewise.
    static CString ReadProfileString(char const* path, char const* section, char const* entry,
                                     char const* defaultValue);

    // A null entry deletes the section, a null value the entry. Deleting what is not there is a success. In
    // the registry a section that has subkeys cannot be deleted.
    static int WriteProfileStringA(char const* path, char const* section, char const* entry,
                                   char const* value);

    // Writes several entries (name, text) of one section, all of them or none: with one rewrite of the file
    // or one transaction of the registry, so no reader ever sees a part. What is there already is not written
    // again, and no entries at all are a success. A name or text with a zero is refused with 0, too.
    static int WriteProfileStrings(char const* path, char const* section,
                                   std::vector<std::pair<CString, CString>> const& entries);

    // Vectors are stored as text, every number followed by ";". Empty pieces and a number without ";" behind
    // it are passed over; what is no number is 0. The vector is emptied first.
    static void ReadProfileIntVector(char const* path, char const* section, char const* entry,
                                     std::vector<int>& values);
    static int WriteProfileIntVector(char const* path, char const* section, char const* entry,
                                     std::vector<int> const& values);

    // The same in the store of an application, through its virtual operations.
    static void ReadProfileIntVector(CWinApp& app, char const* section, char const* entry,
                                     std::vector<int>& values);
    static int WriteProfileIntVector(CWinApp& app, char const* section, char const* entry,
                                     std::vector<int> const& values);

    // Names of all sections, in the order in which they stand in the file or were made in the registry; each
    // once. Answers 1, or 0 with no names when the file or the registry cannot be read.
    static int ReadSectionNames(char const* path, std::vector<CString>& names);

    // All values of a registry section, numbers as decimal text. The path is the name of a branch whatever it
    // looks like. Answers 1, or 0 with no entries when the registry cannot be read.
    static int ReadProfileSection(char const* path, char const* section, std::map<CString, CString>& entries);

    // The same with the profile path.
    static int ReadTovSectionNames(std::vector<CString>& names);
    static int ReadTovProfileSection(char const* section, char* buffer, unsigned long size);
    static int ReadTovProfileSection(char const* section, std::map<CString, CString>& entries);
    static int WriteTovProfileSection(char const* section, char const* buffer);
    static unsigned int ReadTovProfileInt(char const* section, char const* entry, int defaultValue);
    static int WriteTovProfileInt(char const* section, char const* entry, int value);
    static CString ReadTovProfileString(char const* section, char const* entry, char const* defaultValue);
    static int WriteTovProfileString(char const* section, char const* entry, char const* value);
    static int WriteTovProfileStrings(char const* section,
                                      std::vector<std::pair<CString, CString>> const& entries);
    static void ReadTovProfileIntVector(char const* section, char const* entry, std::vector<int>& values);
    static int WriteTovProfileIntVector(char const* section, char const* entry,
                                        std::vector<int> const& values);

    // The names of the sections and entries that the library itself uses. They have their one home here.
    static constexpr char const* TimeSection() { return "CTovTime"; }
    static constexpr char const* TimeEntryFormatNumber() { return "Time Format (###)"; }
    static constexpr char const* TimeEntryFormatString() { return "Time Format (str)"; }
    static constexpr char const* LeapSecondsSection() { return "LeapSeconds"; }
    static constexpr char const* LeapSecondsEntry() { return "KnownLeapSeconds"; }
    static constexpr char const* LeapSecondsExpiryEntry() { return "KnownUntil"; }
    static constexpr char const* LastDocumentsEntry() { return "Doc_"; }
    static constexpr char const* ListViewFindDialogSearchFromBeginning() { return "SearchFromBeginning"; }
    static constexpr char const* ListViewFindDialogMatchWord() { return "MatchWord"; }
    static constexpr char const* ListViewFindDialogMatchCase() { return "MatchCase"; }
    static constexpr char const* ListViewFindDialogSearchAll() { return "SearchAll"; }
    static constexpr char const* ListViewFindDialogSearchString() { return "SearchString"; }
    static constexpr char const* ListViewSaveAsDlgIncludeHeader() { return "IncludeHeader"; }
    static constexpr char const* ListViewSaveAsDlgSaveWhat() { return "SaveWhat"; }
    static constexpr char const* ReportViewColWidth() { return "ColWidth"; }
    static constexpr char const* ReportViewColOrder() { return "ColOrder"; }
    static constexpr char const* ReportViewSortState() { return "SortState"; }
    static constexpr char const* SplitterViewColSize() { return "ColSize"; }
    static constexpr char const* SplitterViewRowSize() { return "RowSize"; }
    static constexpr char const* SplitterViewWidthOriginalCur() { return "WidthOriginalCur"; }
    static constexpr char const* SplitterViewWidthOriginalMin() { return "WidthOriginalMin"; }
    static constexpr char const* SplitterViewCollapsed() { return "Collapsed"; }
    static constexpr char const* MessageBoxDialogSettings() { return "@TovMessageBox/"; }
    static constexpr char const* MessageBoxDoNotPromptInFuture() { return "DoNotPromptInFuture"; }
    static constexpr char const* MessageBoxDefaultValue() { return "defaultvalue"; }
    static constexpr char const* UnitSettingsDistanceSection() { return "CTovUnitSettingsDistance"; }
    static constexpr char const* UnitSettingsDistanceEntryFormatNumber() {
        return "UnitDistance Format (###)";
    }
    static constexpr char const* UnitSettingsDistanceEntryFormatString() {
        return "UnitDistance Format (str)";
    }
    static constexpr char const* UnitSettingsAngleSection() { return "CTovUnitSettingsAngle"; }
    static constexpr char const* UnitSettingsAngleLatLonSection() { return "CTovUnitSettingsAngleLatLon"; }
    static constexpr char const* UnitSettingsAngleEntryFormatNumber() { return "UnitAngle Format (###)"; }
    static constexpr char const* UnitSettingsAngleEntryFormatString() { return "UnitAngle Format (str)"; }
    static constexpr char const* SelectFilenameEntryWindowWidth() { return "Window Width"; }
    static constexpr char const* SelectFilenameEntryWindowHeight() { return "Window Height"; }
    static constexpr char const* SelectFilenameEntryLastFolder() { return "Last Folder"; }
    static constexpr char const* SelectFilenameEntryFileType() { return "FileType"; }
    static constexpr char const* FolderContentViewColWidth() { return "FCV_ColWidth"; }
    static constexpr char const* FolderContentViewSortState() { return "FCV_SortState"; }
    static constexpr char const* FolderContentViewViewStyle() { return "FCV_ViewStyle"; }
};

}  // namespace tov
