#include "vesk/volume.h"

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

namespace tov {
namespace {

template <std::size_t n>
bool IsOneOf(std::string_view text, std::array<std::string_view, n> const& list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

// File systems of the system itself hold no files of anybody.
constexpr std::array<std::string_view, 24> systemTypes = {
    "autofs",     "bpf",       "binfmt_misc", "cgroup",   "cgroup2",     "configfs",
    "debugfs",    "devpts",    "devtmpfs",    "efivarfs", "fuse.portal", "fusectl",
    "hugetlbfs",  "mqueue",    "nsfs",        "proc",     "pstore",      "rpc_pipefs",
    "securityfs", "selinuxfs", "squashfs",    "sysfs",    "tracefs",     "fuse.gvfsd-fuse"};
constexpr std::array<std::string_view, 16> remoteTypes = {
    "9p",          "afs",       "ceph",       "cifs",      "coda", "davfs", "fuse.davfs2", "fuse.glusterfs",
    "fuse.rclone", "fuse.s3fs", "fuse.sshfs", "glusterfs", "nfs",  "nfs4",  "smb3",        "smbfs"};

// The table writes blanks and the like as "\040".
std::string Unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const digit = [&](std::size_t at) {
            return at < text.size() && text[at] >= '0' && text[at] <= '7';
        };
        if (text[i] == '\\' && digit(i + 1) && digit(i + 2) && digit(i + 3)) {
            plain +=
                static_cast<char>((text[i + 1] - '0') << 6 | (text[i + 2] - '0') << 3 | (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

VolumeKind KindOfVolume(std::string_view type, bool isRemovable) {
    if (type == "iso9660" || type == "udf") return VolumeKind::kCd;
    if (type == "tmpfs" || type == "ramfs") return VolumeKind::kRam;
    if (IsOneOf(type, remoteTypes)) return VolumeKind::kRemote;
    return isRemovable ? VolumeKind::kRemovable : VolumeKind::kFixed;
}

// The kernel tells of the whole disk; a partition stands in its folder. A disk on a USB port tells 0 but can
// be pulled out all the same.
bool IsRemovableDevice(std::string_view device) {
    std::string const folder = "/sys/dev/block/" + std::string(device);
    std::array<char, 4096> link;
    auto const length = ::readlink(folder.c_str(), link.data(), link.size());
    if (length > 0 && std::string_view(link.data(), static_cast<std::size_t>(length)).find("/usb") !=
                          std::string_view::npos)
        return true;
    for (char const* const file : {"/removable", "/../removable"}) {
        std::ifstream flag(folder + file);
        int value = 0;
        if (flag >> value) return value != 0;
    }
    return false;
}

std::string DeviceOf(dev_t device) {
    return std::to_string(major(device)) + ':' + std::to_string(minor(device));
}

// The root as the system tells of it where the mount table does not.
Volume RootVolume(std::string const& device) {
    constexpr std::array<std::pair<std::uint32_t, std::string_view>, 9> types = {
        {{ISOFS_SUPER_MAGIC, "iso9660"},
         {UDF_SUPER_MAGIC, "udf"},
         {TMPFS_MAGIC, "tmpfs"},
         {RAMFS_MAGIC, "ramfs"},
         {NFS_SUPER_MAGIC, "nfs"},
         {CIFS_SUPER_MAGIC, "cifs"},
         {SMB2_SUPER_MAGIC, "smb3"},
         {CEPH_SUPER_MAGIC, "ceph"},
         {V9FS_MAGIC, "9p"}}};
    struct statfs fs {};
    ::statfs("/", &fs);
    auto const type = std::find_if(types.begin(), types.end(), [&fs](auto const& known) {
        return known.first == static_cast<std::uint32_t>(fs.f_type);
    });
    return {"/", device,
            KindOfVolume(type != types.end() ? type->second : "",
                         !device.starts_with("0:") && IsRemovableDevice(device))};
}

}  // namespace

std::vector<Volume> ParseMounts(std::string_view table, bool (*isRemovable)(std::string_view device)) {
    std::vector<Volume> volumes;
    std::istringstream lines{std::string(table)};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string id, parent, device, root, folder, word, type;
        words >> id >> parent >> device >> root >> folder;
        while (words >> word && word != "-") {
        }
        if (!(words >> type)) continue;
        folder = Unescaped(folder);
        // What is mounted later in the same place hides what was there.
        std::erase_if(volumes, [&](Volume const& other) { return other.folder == folder; });
        bool const isKnown = std::any_of(volumes.begin(), volumes.end(),
                                         [&](Volume const& other) { return other.device == device; });
        bool const isSystems = IsOneOf(type, systemTypes) || folder.starts_with("/proc/") ||
                               folder.starts_with("/sys/") || folder.starts_with("/dev/") ||
                               folder == "/run" ||
                               (folder.starts_with("/run/") && !folder.starts_with("/run/media/"));
        if (isKnown || isSystems) continue;
        bool const isBlock = !device.starts_with("0:");
        volumes.push_back({folder, device, KindOfVolume(type, isBlock && isRemovable(device))});
    }
    return volumes;
}

std::vector<Volume> MountedVolumes() {
    std::ifstream file("/proc/self/mountinfo");
    std::string const table{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    auto volumes = ParseMounts(table, IsRemovableDevice);
    // A file can be mounted on a file; a drive has a folder.
    std::erase_if(volumes, [](Volume const& volume) {
        struct stat s;
        return ::stat(volume.folder.c_str(), &s) != 0 || !S_ISDIR(s.st_mode);
    });
    // A changed root ("chroot") need not be the place of a mount, and then the table does not tell of it.
    struct stat root;
    if (::stat("/", &root) == 0) {
        std::string const device = DeviceOf(root.st_dev);
        if (std::none_of(volumes.begin(), volumes.end(), [&device](Volume const& volume) {
                return volume.folder == "/" || volume.device == device;
            }))
            volumes.insert(volumes.begin(), RootVolume(device));
    }
    return volumes;
}

bool VolumeOf(std::string path, unsigned long& volume) {
    if (path.empty()) return false;
    struct stat s;
    while (::stat(path.c_str(), &s) != 0) {
        while (path.size() > 1 && path.back() == '/')
            path.pop_back();
        auto const separator = path.rfind('/');
        if (path == "/" || path == ".") return false;
        path = separator == std::string::npos ? "." : path.substr(0, separator + 1);
    }
    volume = s.st_dev;
    return true;
}

bool IsOnRemovableVolume(std::string const& path) {
    unsigned long volume = 0;
    if (!VolumeOf(path, volume)) return false;
    std::string const device = DeviceOf(volume);
    for (Volume const& mounted : MountedVolumes()) {
        if (mounted.device == device)
            return mounted.kind == VolumeKind::kRemovable || mounted.kind == VolumeKind::kCd;
    }
    return false;
}

std::string TemporaryFolderPath() {
    char const* const set = std::getenv("TMPDIR");
    struct stat s;
    if (set != nullptr && set[0] == '/' && ::stat(set, &s) == 0 && S_ISDIR(s.st_mode)) return set;
    return "/tmp";
}

bool MayRun(char const* path) {
    return ::access(path, X_OK) == 0;
}

}  // namespace tov
