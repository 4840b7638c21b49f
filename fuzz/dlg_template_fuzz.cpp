// Dialogs of older programs come as bytes from anywhere: whatever they are, nothing outside them is read, the
// walk and the size agree, and a dialog that was read keeps the bounds that the layer of the toolkit relies
// on.
#include "fuzz/expect.h"

#include <tov310/dialog_template.h>
#include <tov310/dlg_template.h>
#include <tov310/window.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace {

void CheckEdge(int from, int to) {
    Expect(from >= -0x7FFF && from <= 0x7FFF && to >= from && to - from <= 0x7FFF);
}

void CheckWalk(std::string_view bytes) {
    tov::CTovDlgTemplate dialog(bytes);
    std::size_t const size = dialog.GetTemplateSize();
    Expect(size <= bytes.size());
    Expect((dialog.CopyTemplate() != nullptr) == (size != 0));
    Expect(dialog.Copy() == bytes.substr(0, size));
    auto const* const first = reinterpret_cast<tov::DLGTEMPLATE const*>(bytes.data());
    unsigned const told = tov::CTovDlgTemplate::GetTemplateItemCount(first, bytes.size());
    unsigned found = 0;
    for (auto const* item = dialog.FindFirstDlgItem(); item != nullptr; item = dialog.FindNextDlgItem(item)) {
        auto const* const at = reinterpret_cast<char const*>(item);
        Expect(at > bytes.data() && at < bytes.data() + bytes.size());
        ++found;
    }
    Expect(size == 0 || found >= told || told == 0);
}

}  // namespace

// The first byte tells how many of the others are words for lists.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) return 0;
    std::size_t const ofWords = std::min<std::size_t>(data[0], size - 1);
    std::size_t const ofDialog = size - 1 - ofWords;
    auto const copy = std::make_unique<char[]>(ofDialog);  // nothing may be read behind it
    std::copy_n(data + 1, ofDialog, copy.get());
    std::string_view const bytes(copy.get(), ofDialog);
    std::string_view const words(reinterpret_cast<char const*>(data) + 1 + ofDialog, ofWords);
    CheckWalk(bytes);
    tov::TovSetFaultHandler([](char const*) {});
    tov::CTovDialogTemplate dialog;
    if (tov::TovReadDialogTemplate("d", bytes, words, dialog) == 0) return 0;
    CheckEdge(dialog.rect.left, dialog.rect.right);
    CheckEdge(dialog.rect.top, dialog.rect.bottom);
    Expect(dialog.fontSize == 0 || (dialog.fontSize >= 1 && dialog.fontSize <= 200));
    for (tov::CTovControlTemplate const& control : dialog.controls) {
        CheckEdge(control.rect.left, control.rect.right);
        CheckEdge(control.rect.top, control.rect.bottom);
        Expect(!control.className.empty() && control.id < 0xFFFF);
        Expect(control.text.find('\0') == control.text.npos);
    }
    return 0;
}
