// Dialogs of resource modules come from translators: any bytes are read or refused with a reason, and what
// was read keeps the bounds that the layer of the toolkit relies on.
#include "fuzz/expect.h"
#include "views/dialog_resource.h"

#include <cstdint>
#include <set>

namespace {

bool IsWithin(int value) {
    return value >= -0x7FFF && value <= 0x7FFF;
}

void CheckRect(tov::CRect const& rect) {
    Expect(IsWithin(rect.left) && IsWithin(rect.top));
    Expect(rect.right >= rect.left && IsWithin(rect.right - rect.left));
    Expect(rect.bottom >= rect.top && IsWithin(rect.bottom - rect.top));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    tov::CTovDialogTemplate dialog;
    dialog.name = "d";
    std::vector<std::string> faults;
    bool const isGood =
        tov::ParseDialogTemplate({reinterpret_cast<char const*>(data), size}, nullptr, dialog, faults);
    Expect(isGood == faults.empty());
    for (std::string const& fault : faults)
        Expect(fault.starts_with("d: "));
    if (!isGood) return 0;
    CheckRect(dialog.rect);
    Expect(dialog.fontSize == 0 || (dialog.fontSize >= 1 && dialog.fontSize <= 200));
    std::set<unsigned> ids;
    for (tov::CTovControlTemplate const& control : dialog.controls) {
        CheckRect(control.rect);
        Expect(!control.className.empty() && control.id <= 0xFFFF);
        Expect(control.id == 0 || ids.insert(control.id).second);
        Expect(control.text.find('\0') == control.text.npos);
    }
    return 0;
}
