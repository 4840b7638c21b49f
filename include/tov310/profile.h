// The one gateway to everything that the library remembers between runs.
//
// A path chooses the store at each call: a path whose upper-cased text contains ".INI" or ":\", or that begins
// with a separator, is an initialisation file; any other path is the name of a branch of the registry, kept in
// an SQLite file in the user's configuration folder. A bare file name stands in that folder too.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <map>
#include <vector>

namespace tov {

class CWinApp;

// Roots of the registry tree. The values are the platform-neutral names of the roots; only the current user and
// the local machine hold branches of the library.
enum class HKEY : std::uint32_t {};
inline constexpr HKEY HKEY_CLASSES_ROOT{0x80000000};
inline constexpr HKEY HKEY_CURRENT_USER{0x80000001};
inline constexpr HKEY HKEY_LOCAL_MACHINE{0x80000002};
inline constexpr HKEY HKEY_USERS{0x80000003};

// The profile path: what the short family below uses. A trailing separator is removed; an empty path means the
// default one, Tov310.INI in the user's configuration folder.
TOV_CORE_API void TovSetProfilePath(char const* path);

// Never empty. The text is valid until the path is set again.
TOV_CORE_API char const* TovGetProfilePath();

// The profile path becomes the default one with the prefix and "." in front of the file name.
TOV_CORE_API void TovSetProfilePrefix(char const* prefix);

// The root under which registry branches lie: HKEY_CURRENT_USER (default) or HKEY_LOCAL_MACHINE. Any other
// value is ignored.
TOV_CORE_API void TovSetRegistryProfileRoot(HKEY root);
TOV_CORE_API HKEY TovGetRegistryProfileRoot();

// Sections, entries and their values. Names fold ASCII case. Reads answer the default where nothing can be read;
// writes answer 1, or 0 when nothing was written.
class TOV_CORE_API CTovProfileEntries {
   public:
    // Fills the buffer with "name=value" texts, each with a closing zero, and one more zero behind the last; at
    // most `size` bytes with all zeros. What does not fit is left out whole.  Answers 1, or 0 when there is no
    // such section or no buffer.
    static int ReadProfileSection(char const* path, char const* section, char* buffer, unsigned long size);

    // Writes such a list: the file store replaces the section, the registry store adds to it.
    static int WriteProfileSectionA(char const* path, char const* section, char const* buffer);

    static unsigned int ReadProfileInt(char const* path, char const* section, char const* entry, int defaultValue);
    static int WriteProfileInt(char const* path, char const* section, char const* entry, int value);

    static CString ReadProfileString(char const* path, char const* section, char const* entry,
                                     char const* defaultValue);

    // A null value deletes the entry, a null entry the section. Deleting what is not there is a success. A name
    // or value with a line end in it is refused.
    static int WriteProfileStringA(char const* path, char const* section, char const* entry, char const* value);

    // Vectors are stored as text, every number followed by ";". Empty pieces and a number without ";" behind
    // it are skipped.
    static void ReadProfileIntVector(char const* path, char const* section, char const* entry,
                                     std::vector<int>& values);
    static int WriteProfileIntVector(char const* path, char const* section, char const* entry,
                                     std::vector<int> const& values);

    // The same in the store of an application.
    static void ReadProfileIntVector(CWinApp& app, char const* section, char const* entry,
                                     std::vector<int>& values);
    static int WriteProfileIntVector(CWinApp& app, char const* section, char const* entry,
                                     std::vector<int> const& values);

    // Names of all sections. Answers 1, or 0 when there is no such store.
    static int ReadSectionNames(char const* path, std::vector<CString>& names);

    // All entries of a registry section; the path is the name of a branch whatever it looks like.
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
    static void ReadTovProfileIntVector(char const* section, char const* entry, std::vector<int>& values);
    static int WriteTovProfileIntVector(char const* section, char const* entry, std::vector<int> const& values);
};

}  // namespace tov
