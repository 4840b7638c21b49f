// Keys that stand for commands.
#pragma once

#include <tov310/export.h>

#include <vector>

namespace tov {

// One key: its virtual key code, the modifiers that must be down with it, and the command.
struct ACCEL {
    static constexpr unsigned int eShift = 4;
    static constexpr unsigned int eControl = 8;
    static constexpr unsigned int eAlt = 16;

    unsigned int modifiers = 0;  // of the three above
    unsigned int key = 0;        // 13 for Enter, 'A' to 'Z' for letters, 0x70 for F1 ...
    unsigned int command = 0;

    friend bool operator==(ACCEL const&, ACCEL const&) = default;
};

// A table of such keys. It is a value: copies are independent. A key with its modifiers stands in it once.
class TOV_CORE_API HACCEL {
 public:
    HACCEL() = default;

    explicit operator bool() const { return !m_entries.empty(); }
    std::vector<ACCEL> const& Entries() const { return m_entries; }

    // 1, or 0 for command 0 and when the key with its modifiers is in the table already, which stays as it
    // is.
    int Add(ACCEL const& entry);

    // The command of a key with exactly these modifiers; 0 for none.
    unsigned int Command(unsigned int modifiers, unsigned int key) const;

    friend bool operator==(HACCEL const&, HACCEL const&) = default;

 private:
    std::vector<ACCEL> m_entries;
};

class TOV_CORE_API CTovAcceleratorHelper {
 public:
    // The keys of the library: Alt+Enter for WM_TOV_PROPERTIES.
    static HACCEL const GetTovAccelerators();

    // Adds them to the table of an application, which keeps the keys that it has. Answers how many were
    // added.
    static int AddTovAccelerators(HACCEL& table);
};

}  // namespace tov
