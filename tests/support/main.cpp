// Every test program runs in a configuration folder of its own, so that nothing is read from or written to
// the user's, and fails on a fault that the library reports and the test did not ask for.
#include "support/faults.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <tov310/export.h>

#include <cstdlib>

// The C library keeps what it reads for a locale; the leak sanitizer, where it is linked, asks here.
extern "C" TOV_EXPORT char const* __lsan_default_suppressions();
extern "C" char const* __lsan_default_suppressions() {
    return "leak:__argz_add_sep\n";
}

// FreeImage is loaded on one thread and unloaded on another, under a lock of the loader's that the thread
// sanitizer does not see.
extern "C" TOV_EXPORT char const* __tsan_default_suppressions();
extern "C" char const* __tsan_default_suppressions() {
    return "race:libfreeimage.so\n";
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    tov::test::TemporaryFolder const configuration;
    setenv("XDG_CONFIG_HOME", configuration.path().c_str(), 1);
    testing::UnitTest::GetInstance()->listeners().Append(new tov::test::FaultListener);
    return RUN_ALL_TESTS();
}
