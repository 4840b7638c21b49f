// links: objects
#include "vesk/error_codes.h"

#include <tov310/system_error.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <set>

namespace tov {
namespace {

TEST(ErrorCodes, PlatformNumbersBecomeDocumentedCodes) {
    struct {
        int number;
        unsigned long code;
    } const rows[] = {
        {0, 0},        {ENOENT, 2},      {ENOTDIR, 3},        {EMFILE, 4},  {EACCES, 5},  {EPERM, 5},
        {EISDIR, 5},   {EBADF, 6},       {ENOMEM, 8},         {EXDEV, 17},  {EROFS, 19},  {EBUSY, 32},
        {ETXTBSY, 32}, {EAGAIN, 32},     {ENOTSUP, 50},       {EEXIST, 80}, {EINVAL, 87}, {ENOSPC, 112},
        {EDQUOT, 112}, {ENOTEMPTY, 145}, {ENAMETOOLONG, 206}, {EIO, 1117},
    };
    std::set<int> own;
    for (auto const& row : rows) {
        EXPECT_EQ(VeskErrorCode(row.number), row.code) << row.number;
        own.insert(row.number);
    }
    EXPECT_EQ(VeskErrorCode(ENOENT, VeskOperation::kPath), 3u);
    EXPECT_EQ(VeskErrorCode(EEXIST, VeskOperation::kCreate), 183u);
    for (int number = 1; number < 134; ++number) {
        if (own.contains(number)) continue;
        EXPECT_EQ(VeskErrorCode(number), 0x20000000u + static_cast<unsigned long>(number));
    }
}

// Codes 2100 to 2999 are asked of a module "netmsg" beside whatever holds the library's code; here that is
// this program.
TEST(ErrorCodes, NetworkCodesAreAskedOfTheirOwnModule) {
    namespace fs = std::filesystem;
    fs::path const folder = fs::read_symlink("/proc/self/exe").parent_path() / "netmsg";
    struct Remove {
        fs::path path;
        ~Remove() { fs::remove_all(path); }
    } const remove{folder};
    fs::create_directories(folder);
    std::ofstream(folder / "strings.json")
        << R"({"2": "not here", "2099": "below", "2100": "lowest", "2250": "no connection", "2999": "highest",
               "3000": "above"})";
    EXPECT_EQ(TovSystemErrorText(2250), "no connection");
    EXPECT_EQ(TovSystemErrorText(2100), "lowest");
    EXPECT_EQ(TovSystemErrorText(2999), "highest");
    EXPECT_EQ(TovSystemErrorText(2500), "");
    EXPECT_EQ(TovSystemErrorText(2099), "");
    EXPECT_EQ(TovSystemErrorText(3000), "");
    EXPECT_NE(TovSystemErrorText(2), "not here");
}

}  // namespace
}  // namespace tov
