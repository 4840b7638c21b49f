// The engine of edits for texts, for names of files and directories, and of edits that can become others.
#pragma once

#include <tov310/export.h>
#include <tov310/input_control.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

// Whether a text has at least and at most so many characters, and is not empty where it must not be. All but
// a valid text set the message, which may be null.
TOV_CORE_API CTovInputControl::eState TovValidateString(char const* text, unsigned minChars,
                                                        unsigned maxChars, int emptyAllowed,
                                                        CString* message);

// What a dialog that lets the user choose files or a directory is asked for.
struct CTovBrowseRequest {
    HWND owner;
    bool directory = false;  // a directory, not files
    bool multiple = false;   // several files may be chosen
    bool mustExist = false;  // only what is there may be chosen
    CString title;
    CString prompt;
    CString filter;              // "text|pattern;pattern|text|pattern||"; empty for directories
    bool addAllFiles = false;    // programs and libraries need no extension everywhere
    CString okText;              // of the OK button
    CString folder;              // where to begin; empty for the current directory
    std::vector<CString> names;  // those of the edit now
};

// A line of such a filter: the words without the patterns in brackets, and the patterns.
struct CTovFileFilter {
    CString text;
    std::vector<CString> patterns;
};

// The lines to offer; what has no patterns is none.
TOV_CORE_API std::vector<CTovFileFilter> TovFileFilters(CTovBrowseRequest const& request);

// Lets the user choose. Without one the toolkit's own dialog does; a host may put its own in the place, for
// all edits or for one.
class TOV_CORE_API ITovBrowseForFile {
 public:
    // Whether the user has chosen; the names are paths then.
    virtual bool Browse(CTovBrowseRequest const& request, std::vector<CString>& names) = 0;

 protected:
    ITovBrowseForFile() = default;
    ITovBrowseForFile(ITovBrowseForFile const&) = default;
    ITovBrowseForFile& operator=(ITovBrowseForFile const&) = default;
    virtual ~ITovBrowseForFile();
};

// The one for all edits, null without one; it stays the caller's. Setting answers the one before.
TOV_CORE_API ITovBrowseForFile* TovGetBrowseForFile();
TOV_CORE_API ITovBrowseForFile* TovSetBrowseForFile(ITovBrowseForFile* browse);

// What a host may override in an edit for file names.
class TOV_CORE_API CTovEditFilenameHost {
 public:
    enum eType {
        eTypeFile = 0,
        eTypeExecutable = 1,  // a program or a library
        eTypeProgram = 2,
        eTypeLibrary = 3,
        eTypeDirectory = 4,
    };

    enum eExistence {
        eExistenceNoTest = 0,  // nor of anything else
        eExistenceMust = 1,
        eExistenceMustNot = 2,
    };

    // Whether the file or directory is there, or is not, as it must; otherwise eStateInvalid with the
    // message.
    virtual CTovInputControl::eState CheckFileExistence(char const* name, int mustExist, CString* message);
    virtual CTovInputControl::eState CheckDirectoryExistence(char const* name, int mustExist,
                                                             CString* message);

    // Takes white space and the quotes around it off a name. Quotes of several names stay.
    virtual void TrimString(CString& name);

    // As TovPathIsValid.
    virtual int PathIsValid(char const* name, int noRemovable, int* removable);

 protected:
    CTovEditFilenameHost() = default;
    CTovEditFilenameHost(CTovEditFilenameHost const&) = default;
    CTovEditFilenameHost& operator=(CTovEditFilenameHost const&) = default;
    virtual ~CTovEditFilenameHost();
};

// Which names an edit takes. Where several are allowed they stand in double quotes, separated by blanks; a
// text without quotes is one name.
class TOV_CORE_API CTovFilenameRules {
 public:
    using eType = CTovEditFilenameHost::eType;
    using eExistence = CTovEditFilenameHost::eExistence;

    explicit CTovFilenameRules(CTovEditFilenameHost& host, eType type = eType::eTypeFile,
                               eExistence existence = eExistence::eExistenceNoTest, int singleName = 1)
        : m_host(host), m_type(type), m_existence(existence), m_singleName(singleName) {}

    eType Type() const { return m_type; }
    void Type(eType type) { m_type = type; }
    eExistence Existence() const { return m_existence; }
    void Existence(eExistence existence) { m_existence = existence; }
    int SingleName() const { return m_singleName; }
    void SingleName(int single) { m_singleName = single; }
    int NameWithoutPath() const { return m_nameWithoutPath; }
    void NameWithoutPath(int without) { m_nameWithoutPath = without; }
    int NoRemovableDrive() const { return m_noRemovableDrive; }
    void NoRemovableDrive(int none) { m_noRemovableDrive = none; }

    // Names that stand for a text which holds no name but its quotes.
    void OwnNames(std::vector<CString> names) { m_ownNames = std::move(names); }

    // As a new one.
    void Reset(eType type, eExistence existence, int singleName);

    // The names in a text, trimmed.
    std::vector<CString> Names(char const* text) const;
    // The text that holds the names.
    CString TextOf(std::vector<CString> const& names) const;

    // Checks the names in a text whose length and emptiness have been checked. Every name must pass; the
    // first that fails gives the message. Quotes with nothing in them give eStateEmpty.
    CTovInputControl::eState InternalValidate(char const* text, CString* message) const;

    // What to ask for when the button is pressed; title, prompt, filter and OK text replace those of the type
    // where they are not empty.
    CTovBrowseRequest Request(char const* text) const;
    void Texts(CString title, CString prompt, CString filter, CString okText);

    // Lets the user choose, with the given one or that for all edits, and gives the new text. 0 where he has
    // not chosen or there is nobody to ask.
    int Select(ITovBrowseForFile* browse, HWND owner, char const* text, CString& chosen) const;

 private:
    CTovInputControl::eState CheckForm(CString const& name, CString* message) const;
    CTovInputControl::eState CheckPresence(CString const& name, CString* message) const;
    CTovInputControl::eState CheckKind(CString const& name, CString* message) const;

    CTovEditFilenameHost& m_host;
    eType m_type;
    eExistence m_existence;
    int m_singleName;
    int m_nameWithoutPath = 0;
    int m_noRemovableDrive = 0;
    std::vector<CString> m_ownNames;
    CString m_title;
    CString m_prompt;
    CString m_filter;
    CString m_okText;
};

// What an edit that can become others can become.
enum eTovSwitchedType : int {
    eTovSwitchedString = 1,
    eTovSwitchedFilename = 2,  // one name of any file, without a test
    eTovSwitchedShort = 3,
    eTovSwitchedUshort = 4,
    eTovSwitchedLong = 5,
    eTovSwitchedUlong = 6,
    eTovSwitchedInt = 7,
    eTovSwitchedUint = 8,
    eTovSwitchedFloat = 9,
    eTovSwitchedDouble = 10,
    eTovSwitchedDistance = 11,
    eTovSwitchedAngle = 12,
    eTovSwitchedLatitude = 13,
    eTovSwitchedLongitude = 14,
};

struct CTovSwitchedEdit {
    eTovSwitchedType type;
    char const* className;  // the class of the edit
    int numberType;         // eType of an integer or floating edit, else -1
};

// Null for a type that is none.
TOV_CORE_API CTovSwitchedEdit const* TovSwitchedEdit(int type);

}  // namespace tov
