// The hourglass.
#pragma once

#include <tov310/export.h>

namespace tov {

// Shows the wait cursor for the length of a block. Blocks nest, also across threads; the last one to end lets
// the windows choose their cursor again.
class TOV_CORE_API CTovWaitCursor {
 public:
    // The id tells waits apart for code that looks at them; it has no meaning of its own.
    explicit CTovWaitCursor(unsigned int id = 0);
    CTovWaitCursor(CTovWaitCursor const&) = delete;
    CTovWaitCursor& operator=(CTovWaitCursor const&) = delete;
    virtual ~CTovWaitCursor();

    unsigned int Id() const { return m_id; }

    // 1 from the first wait cursor to the end of the last one. A host may set the flag by itself, for
    // instance to show another cursor while a dialog is up during a wait; the next wait cursor sets it again.
    static int Active();
    static void Active(int active);

 private:
    unsigned int m_id;
};

}  // namespace tov
