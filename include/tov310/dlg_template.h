// Dialogs as older programs carry them: a block of bytes that tells the dialog and then its controls one by
// one, little-endian, in a plain and in an extended form. Every length in it is checked against the size that
// comes along with the address: nothing is read outside, and of a damaged block the answer is null or 0.
//
// A host need not walk them to have its dialogs: dialogs/ID.dlg in a resource module is as good as
// dialogs/ID.json, and TovReadDialogTemplate (dialog_template.h) reads such a block from anywhere.
#pragma once

#include <tov310/export.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace tov {

// The first byte of a template, and of one control in it. Only addresses are handed round; they need not be
// aligned.
struct DLGTEMPLATE;
struct DLGITEMTEMPLATE;

class TOV_CORE_API CTovDlgTemplate {
 public:
    CTovDlgTemplate() = default;
    explicit CTovDlgTemplate(std::string_view bytes) { SetTemplate(bytes); }

    // The functions on addresses. `size` is the number of bytes from the address to the end of the block;
    // there may be more than the template needs.

    // Whether the template is of the extended form; 0 for null and where the block is too short to tell.
    static int IsDialogEx(DLGTEMPLATE const* dialog, std::size_t size);

    // The number of controls that the template tells it has; the block may be damaged behind that.
    static unsigned GetTemplateItemCount(DLGTEMPLATE const* dialog, std::size_t size);

    // The bytes of the whole template; 0 for null and a damaged one.
    static std::size_t GetTemplateSize(DLGTEMPLATE const* dialog, std::size_t size);

    // The first control of a template, and the one behind a control. Null where none can follow and where
    // what is passed over is damaged. The last control is the one with the number that GetTemplateItemCount
    // tells: bytes behind the template would be taken for one more.
    static DLGITEMTEMPLATE const* FindFirstDlgItem(DLGTEMPLATE const* dialog, int isEx, std::size_t size);
    static DLGITEMTEMPLATE const* FindNextDlgItem(DLGITEMTEMPLATE const* item, int isEx, std::size_t size);

    // The template that the functions below are about; null, or an empty block, for none. It stays the
    // caller's and must live as long as it is used. A copy of the one before is gone.
    void SetTemplate(DLGTEMPLATE const* dialog, std::size_t size);
    void SetTemplate(std::string_view bytes);

    // An exact copy, whose bytes may be changed; it lives as long as this object and until the next call of
    // this or of SetTemplate. Null without a template, and for a damaged one.
    DLGTEMPLATE* CopyTemplate();
    std::string_view Copy() const { return m_copy; }  // its bytes; empty for none

    // The bits of styles.h, wherever the form keeps them; writing goes into the copy. 0 without one.
    unsigned long CopyStyle() const;
    void CopyStyle(unsigned long style);

    // The same on addresses within the template set.
    std::size_t GetTemplateSize() const { return GetTemplateSize(m_dialog, m_size); }
    DLGITEMTEMPLATE const* FindFirstDlgItem() const;
    DLGITEMTEMPLATE const* FindNextDlgItem(DLGITEMTEMPLATE const* item) const;

 private:
    DLGTEMPLATE const* m_dialog = nullptr;
    std::size_t m_size = 0;
    std::string m_copy;
};

}  // namespace tov
