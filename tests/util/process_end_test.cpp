// Globals of a host are destroyed after what main has used; what they save in their destructors must not find
// the library's own state gone.
#include <tov310/angle.h>
#include <tov310/profile.h>
#include <tov310/window.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

struct SavesAtTheEnd {
    bool armed = false;
    ~SavesAtTheEnd() {
        if (!armed) return;
        tov::CTovValueAngle angle;
        tov::CString text;
        angle.GetString(text);
        int const saved = tov::CTovProfileEntries::WriteTovProfileString("End", "Text", "kept");
        bool const read = tov::CTovProfileEntries::ReadTovProfileString("End", "Text", "") == "kept";
        if (saved == 0 || !read || text.empty() || tov::TovRegisterMessage("at the end") == 0) std::_Exit(1);
    }
} atTheEnd;

TEST(ProcessEnd, GlobalsCanStillSave) {
    EXPECT_EXIT(
        {
            atTheEnd.armed = true;
            tov::TovSetProfilePath((tov::CString(tov::TovGetProfilePath()) + ".end.ini").c_str());
            tov::CTovValueAngle const first;
            std::exit(tov::TovRegisterMessage("in main") != 0 ? 0 : 2);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
