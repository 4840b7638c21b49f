// links: objects
#include "vesk/volume.h"

#include <gtest/gtest.h>

namespace tov {
namespace {

using enum VolumeKind;

TEST(Volume, TheMountTableIsReadAsDrives) {
    auto const volumes = ParseMounts(
        "22 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
        "23 22 0:21 / /proc rw - proc proc rw\n"
        "24 22 0:22 / /tmp rw master:3 propagate_from:2 - tmpfs tmpfs rw,size=4g\n"
        "25 22 8:17 / /media/usb\\040stick rw - vfat /dev/sdb1 rw\n"
        "26 22 0:40 / /mnt/share rw - nfs4 host:/data rw\n"
        "27 22 11:0 / /media/cd ro - iso9660 /dev/sr0 ro\n"
        "28 22 8:2 /home/user /srv/again rw - ext4 /dev/sda2 rw\n"
        "29 22 8:5 / /old rw - xfs /dev/sda5 rw\n"
        "30 22 8:6 / /old rw - btrfs /dev/sda6 rw\n"
        "31 22 0:25 / /run/lock rw - tmpfs tmpfs rw\n"
        "32 22 8:33 / /run/media/me/pen rw - exfat /dev/sdc1 rw\n"
        "33 22 0:26 / /dev/shm rw - tmpfs tmpfs rw\n"
        "half a line\n\n"
        "34 22 8:7 / /none rw -\n"
        "35 22 0:50 / /odd\\134name\\0 rw - fuse.sshfs me@host: rw",
        [](std::string_view device) { return device == "8:17" || device == "8:33"; });
    std::vector<Volume> const expected = {{"/", "8:2", kFixed},
                                          {"/tmp", "0:22", kRam},
                                          {"/media/usb stick", "8:17", kRemovable},
                                          {"/mnt/share", "0:40", kRemote},
                                          {"/media/cd", "11:0", kCd},
                                          {"/old", "8:6", kFixed},
                                          {"/run/media/me/pen", "8:33", kRemovable},
                                          {"/odd\\name\\0", "0:50", kRemote}};
    ASSERT_EQ(volumes.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(volumes[i], expected[i]) << volumes[i].folder;
}

}  // namespace
}  // namespace tov
