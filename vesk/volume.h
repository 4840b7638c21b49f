// Mounted volumes, and where things of the system lie.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tov {

enum class VolumeKind { kRemovable = 2, kFixed = 3, kRemote = 4, kCd = 5, kRam = 6 };

struct Volume {
    std::string folder;  // where it is mounted
    std::string device;  // "major:minor"
    VolumeKind kind;

    friend bool operator==(Volume const&, Volume const&) = default;
};

// Reads a mount table (the form of /proc/self/mountinfo). Left out is what only the system uses, a volume
// that is hidden under another one, and the further places of a volume that is mounted more than once. Lines
// that are not understood are passed over. `isRemovable` is asked about block devices.
std::vector<Volume> ParseMounts(std::string_view table, bool (*isRemovable)(std::string_view device));

// The volumes that are mounted now.
std::vector<Volume> MountedVolumes();

// Which volume the path lies on; of one that is not there, the nearest directory above it counts. False when
// it cannot be told.
bool VolumeOf(std::string path, unsigned long& volume);

// Whether the volume can be taken out of the machine.
bool IsOnRemovableVolume(std::string const& path);

// The folder for temporary files.
std::string TemporaryFolderPath();

// Whether the user may run the file.
bool MayRun(char const* path);

}  // namespace tov
