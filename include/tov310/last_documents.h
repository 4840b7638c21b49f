// The documents that were used last, as menus and edits offer them.
#pragma once

#include <tov310/export.h>
#include <tov310/menu.h>
#include <tov310/object.h>
#include <tov310/resources.h>
#include <tov310/types.h>

#include <optional>
#include <utility>
#include <vector>

namespace tov {

// A list kept in the profile, the newest document first, and its entries in menus. The list has no life of
// its own in memory: every operation reads and writes the profile, so several objects can show the same list.
//
// A document is a text. What stands before its first ";" says which document it is (a path, say); the rest is
// the host's and goes with it. One without ";" gets it at its end.
//
//     CTovLastDocuments files(nullptr, 8);
//     files.Section("Recent files");
//     files.AddDocument("/home/me/site.svy");
//     int command = ID_FILE_RECENT;                     // with the 7 behind it
//     files.CreateLastDocItem(&command, fileMenu, position);
//     ...
//     CString path;
//     if (files.GetCurrentDocument(chosen, path)) Open(path);
//
// Nothing throws. When the store cannot be written the list stays as it was.
class TOV_CORE_API CTovLastDocuments : public CObject {
    TOV_DYNCREATE(CTovLastDocuments, CObject)
 public:
    // What stands behind one entry of a menu: its command and the document as it was when the entry was made.
    struct CLastDocItem {
        unsigned int command = 0;
        CString document;
    };

    // How entries of menus are written.
    enum eItemStyle {
        eItemNumbered = 1,  // number, tab, prefix, text, suffix
        eItemPlain = 4,     // prefix, text, suffix
    };

    // The path is as CTovProfileEntries understands it, by default the profile path of now. A capacity of 0
    // is 4.
    explicit CTovLastDocuments(char const* storePath = nullptr, unsigned int capacity = 0);
    ~CTovLastDocuments() override;

    unsigned int GetCapacity() const { return m_capacity; }

    // Where the list is: the path, the section (at first the name of the class, also for an empty text), and
    // what stands before the number in the name of each entry ("Doc_").
    virtual void IniFile(char const* storePath);
    CString const& IniFile() const { return m_storePath; }
    virtual void Section(char const* section);
    CString const& Section();
    virtual void Entry(char const* prefix);
    CString const& Entry() const { return m_entry; }

    // Puts the document first. The same one further down goes; the others keep their order, and what has no
    // room is gone. A line feed becomes U+00B0 and any other control character a blank. 1, or 0 for null, an
    // empty text and a store that cannot be written.
    virtual int AddDocument(char const* document);

    // Takes a document out, and closes the list up. The text is taken as AddDocument takes it, so a missing
    // ";" stands at its end. With the flag only what stands before the ";" is compared, on both sides. 1 when
    // there was such a document and it is gone.
    virtual int RemoveDocument(char const* document, int compareFirstPartOnly);

    // 1, or 0 when the store cannot be written.
    virtual int RemoveAllDocuments();

    // The document with the number, from 1, as it is stored; empty where there is none. Valid until the next
    // call.
    virtual CString& GetDocument(unsigned int number);

    // The document behind an entry of a menu as it was when the entry was made, whatever the list holds now:
    // what stands before the ";" and, if wanted, what stands behind it. 0 for a command that is none of the
    // list's. The second takes the command from a WM_COMMAND message and answers 0 for every other one.
    virtual int GetCurrentDocument(unsigned int command, CString& document, CString* rest = nullptr) const;
    virtual int GetCurrentDocument(tagMSG const& message, CString& document, CString* rest = nullptr) const;

    // Puts one entry for each document in front of a position of the menu, or behind the last entry, and
    // answers how many. Their commands count from *command, which moves on by the capacity, since the list
    // can grow. 0 where there is nothing to put in, and for null.
    virtual int CreateLastDocItem(int* command, CMenu* menu, unsigned int position = tovNoMenuItem);

    // The same in a popup of its own with the text; no popup without documents.
    virtual int CreateLastDocMenu(int* command, CMenu* menu, char const* text,
                                  unsigned int position = tovNoMenuItem);
    virtual int CreateLastDocMenu(HINSTANCE module, unsigned int textId, int* command, CMenu* menu,
                                  unsigned int position = tovNoMenuItem);

    // Brings the entries that were made from this first command up to date with the list: texts change, new
    // ones come behind, and those without a document go. Answers how many there are now, 0 also when the menu
    // and its popups have none with this command.
    virtual int ModifyLastDocItem(unsigned int command, CMenu* menu);

    // Writes one entry anew; the flags say what the place is. For hosts that want more in it than a text.
    virtual int ModifyMenuA(CMenu* menu, unsigned int place, unsigned int flags, unsigned int command,
                            char const* text);

    // What stands before and behind the text of an entry, as it is, by the number of the entry from 1. Number
    // 0 sets it for all, whatever they had.
    virtual void SetMenuPrompt(char const* prefix, char const* suffix);
    virtual void SetMenuPrompt(unsigned int number, char const* prefix, char const* suffix);
    virtual void SetMenuPrompt(HINSTANCE module, unsigned int prefixId, unsigned int suffixId);
    virtual CString GetMenuPromptPrefix(unsigned int number) const;
    virtual void SetMenuPromptPrefix(unsigned int number, char const* prefix);
    virtual CString GetMenuPromptSuffix(unsigned int number) const;
    virtual void SetMenuPromptSuffix(unsigned int number, char const* suffix);

    // The most characters of a document's text in a menu (64); a longer one loses its middle and keeps the
    // name of the file. Answers the earlier value.
    virtual unsigned int SetMenuItemLength(unsigned int characters);
    unsigned int GetMenuItemLength() const { return m_itemLength; }

    // Blanks between number and text (2).
    virtual void SetTab(unsigned int blanks);
    virtual unsigned int GetTab() const;

    virtual void SetItemStyle(eItemStyle style);
    eItemStyle GetItemStyle() const { return m_itemStyle; }

 protected:
    // One entry of the store, by number. A text that begins or ends in a blank or a quote is put in quotes
    // where the store would lose them. What changes the list hands every entry that changes to the second,
    // which collects them then: they reach the store together at the end, or not at all where it answers 0.
    virtual CString GetProfileStringA(int number);
    virtual int WriteProfileStringA(int number, char const* text);

    // The text of an entry in a menu, "&" doubled.
    virtual CString MenuText(unsigned int number, CString const& document) const;

 private:
    std::vector<CString> ReadAll();
    int Write(std::vector<CString> const& before, std::vector<CString> const& after);
    std::vector<CString> Documents();
    void Remember(unsigned int command, std::vector<CString> const& documents);
    bool Refresh(unsigned int command, CMenu& menu, std::vector<CString> const& documents);

    unsigned int m_capacity;
    CString m_storePath;
    CString m_section;
    CString m_entry;
    eItemStyle m_itemStyle = eItemNumbered;
    unsigned int m_itemLength = 64;
    std::vector<CLastDocItem> m_items;
    std::vector<CString> m_promptPrefixes;  // the first is that of all entries without one of their own
    std::vector<CString> m_promptSuffixes;
    unsigned int m_tab = 2;
    CString m_text;
    std::optional<std::vector<std::pair<CString, CString>>> m_change;  // collected entries, during a change
};

}  // namespace tov
