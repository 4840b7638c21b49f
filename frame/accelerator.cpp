#include <tov310/accelerator.h>

#include <tov310/messages.h>

#include <algorithm>

namespace tov {
namespace {

constexpr unsigned int keyEnter = 13;

constexpr ACCEL libraryKeys[] = {{ACCEL::eAlt, keyEnter, WM_TOV_PROPERTIES}};

}  // namespace

int HACCEL::Add(ACCEL const& entry) {
    if (entry.command == 0 || Command(entry.modifiers, entry.key) != 0) return 0;
    m_entries.push_back(entry);
    return 1;
}

unsigned int HACCEL::Command(unsigned int modifiers, unsigned int key) const {
    auto const found = std::ranges::find_if(m_entries, [modifiers, key](ACCEL const& entry) {
        return entry.modifiers == modifiers && entry.key == key;
    });
    return found != m_entries.end() ? found->command : 0;
}

HACCEL const CTovAcceleratorHelper::GetTovAccelerators() {
    HACCEL table;
    AddTovAccelerators(table);
    return table;
}

int CTovAcceleratorHelper::AddTovAccelerators(HACCEL& table) {
    int added = 0;
    for (ACCEL const& entry : libraryKeys)
        added += table.Add(entry);
    return added;
}

}  // namespace tov
