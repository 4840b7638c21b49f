#pragma once

#include <tov310/resources.h>

namespace tov::test {

// The dialogs in tests/views/dialogs_module.
inline HINSTANCE DialogsModule() {
    static HINSTANCE const module = TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/tests/views/dialogs_module");
    return module;
}

}  // namespace tov::test
