// links: objects
#include "vesk/error_codes.h"

#include <tov310/system_error.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

namespace tov {
namespace {

TEST(ErrorCodes, PlatformNumbersBecomeDocumentedCodes) {
    std::map<int, unsigned long> const documented = {
        {0, 0},        {ENOENT, 2},      {ENOTDIR, 3},        {EMFILE, 4},  {EACCES, 5},  {EPERM, 5},
        {EISDIR, 5},   {EBADF, 6},       {ENOMEM, 8},         {EXDEV, 17},  {EROFS, 19},  {EBUSY, 32},
        {ETXTBSY, 32}, {EAGAIN, 32},     {ENOTSUP, 50},       {EEXIST, 80}, {EINVAL, 87}, {ENOSPC, 112},
        {EDQUOT, 112}, {ENOTEMPTY, 145}, {ENAMETOOLONG, 206}, {EIO, 1117},
    };
    for (int number = 0; number < 134; ++number) {
        auto const found = documented.find(number);
        EXPECT_EQ(VeskErrorCode(number),
                  found != documented.end() ? found->second : 0x20000000u + static_cast<unsigned>(number));
    }
    EXPECT_EQ(VeskErrorCode(ENOENT, VeskOperation::kPath), 3u);
    EXPECT_EQ(VeskErrorCode(EEXIST, VeskOperation::kCreate), 183u);
}

// Codes 2100 to 2999 are asked of a module "netmsg" beside whatever holds the library's code; here that is
// this program.
TEST(ErrorCodes, NetworkCodesAreAskedOfTheirOwnModule) {
    namespace fs = std::filesystem;
    fs::path const folder = fs::read_symlink("/proc/self/exe").parent_path() / "netmsg";
    fs::create_directories(folder);
    std::ofstream(folder / "strings.json")
        << R"({"2": "not here", "2099": "below", "2100": "lowest", "2999": "highest", "3000": "above"})";
    EXPECT_EQ(TovSystemErrorText(2100), "lowest");
    fs::remove_all(folder);
    EXPECT_EQ(TovSystemErrorText(2999), "highest");
    for (unsigned long const code : {2500UL, 2099UL, 3000UL})
        EXPECT_EQ(TovSystemErrorText(code), "");
    EXPECT_NE(TovSystemErrorText(2), "not here");
}

}  // namespace
}  // namespace tov
