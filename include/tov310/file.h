// Files, directories and drives.
//
// Paths are UTF-8, take both "/" and "\" as separators and may be relative to the current directory. Null is
// an empty path, which names nothing. Names that come out of a listing are used as they stand, so that a file
// whose name holds a "\" is never taken for another.
//
// Functions answer 1 for success and 0 for failure where nothing else is said. They end in an optional pair:
// the code of system_error.h, and its text. Both are cleared at the beginning, and filled when the function
// fails.
#pragma once

#include <tov310/export.h>
#include <tov310/find_data.h>
#include <tov310/resources.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

// What a file is opened for; any sum. 0 allows to ask for the size.
inline constexpr unsigned long TOV_FILE_READ = 0x80000000;
inline constexpr unsigned long TOV_FILE_WRITE = 0x40000000;

// What others may do with the file meanwhile. 0 keeps out everybody who opens it with these functions, in any
// process; with any other value all those may come in. The lock belongs to the handle and is advisory:
// programs that do not ask for it are not held up, and volumes without locks have none.
inline constexpr unsigned long TOV_SHARE_NONE = 0;
inline constexpr unsigned long TOV_SHARE_READ = 1;
inline constexpr unsigned long TOV_SHARE_WRITE = 2;
inline constexpr unsigned long TOV_SHARE_DELETE = 4;

// What is done when the file is there, and when it is not.
inline constexpr unsigned long TOV_CREATE_NEW = 1;     // fails with 80 | made
inline constexpr unsigned long TOV_CREATE_ALWAYS = 2;  // emptied | made
inline constexpr unsigned long TOV_OPEN_EXISTING = 3;  // opened | fails with 2
inline constexpr unsigned long TOV_OPEN_ALWAYS = 4;    // opened | made
inline constexpr unsigned long TOV_TRUNCATE_EXISTING =
    5;  // emptied, which takes TOV_FILE_WRITE | fails with 2

// Opens a file, by default one that is there for reading. `attributes` (TOV_ATTRIBUTE_ in find_data.h) count
// for a new file only: a read-only one can be written through this handle alone. A file that is locked by
// another handle gives 32, and is not emptied. Null on failure. The handle is to be closed.
TOV_CORE_API void* TovFileCreate(char const* path, unsigned long access, unsigned long share,
                                 unsigned long disposition, unsigned long attributes,
                                 unsigned long* error = nullptr, CString* message = nullptr);

// The same under the name that readers look for.
TOV_CORE_API void* TovFileOpen(char const* path, unsigned long access, unsigned long share,
                               unsigned long disposition, unsigned long attributes,
                               unsigned long* error = nullptr, CString* message = nullptr);

// Closes a handle. Some volumes tell here, and only here, that what was written is lost.
TOV_CORE_API int TovFileClose(void* file, unsigned long* error = nullptr, CString* message = nullptr);

// Reads exactly so many bytes. At an early end of the file the answer is 0 with error 0, and what was there
// stands in the buffer.
TOV_CORE_API int TovFileRead(void* file, void* buffer, unsigned long length, unsigned long* error = nullptr,
                             CString* message = nullptr);

// Writes all of the bytes; null with a length gives 87. When that fails the file gets back the length, and
// the handle the position, that it had before.
TOV_CORE_API int TovFileWrite(void* file, void const* bytes, unsigned long length,
                              unsigned long* error = nullptr, CString* message = nullptr);

// Writes a text without its closing zero.
TOV_CORE_API int TovFileWrite(void* file, char const* text, unsigned long* error = nullptr,
                              CString* message = nullptr);

TOV_CORE_API int TovFileSeekEnd(void* file, unsigned long* error = nullptr, CString* message = nullptr);

// Sets the position in bytes from the beginning; a negative one gives 87.
TOV_CORE_API int TovFileSeek(void* file, long position, unsigned long* error = nullptr,
                             CString* message = nullptr);

// Size in bytes; -1 on failure.
TOV_CORE_API long TovFileSize(void* file, unsigned long* error = nullptr, CString* message = nullptr);
TOV_CORE_API long TovFileSize(char const* path, unsigned long* error = nullptr, CString* message = nullptr);

// Whether there is such a file. A directory is none. The name may hold the wildcards of a file search
// (file_list.h).
TOV_CORE_API int TovFileFind(char const* path, unsigned long* error = nullptr, CString* message = nullptr);

// A file is hidden by its name: 1 when that begins with a dot, otherwise 0 with error 50. Nothing is renamed.
TOV_CORE_API int TovFileHide(char const* path, unsigned long* error = nullptr, CString* message = nullptr);

// Gives a file another path. Never overwrites: a target that is there gives 183. To another volume the
// contents are copied, and the source goes when all of it is safe there; a directory gives 17.
TOV_CORE_API int TovFileMove(char const* from, char const* to, unsigned long* error = nullptr,
                             CString* message = nullptr);

// Begins a listing of the entries, directories included but not "." and "..", that match the last part of the
// path, and gives the first. Null when there is none (2) and on failure. The handle is to be closed.
TOV_CORE_API void* TovDirectoryFind(char const* path, WIN32_FIND_DATAA* data, unsigned long* error = nullptr,
                                    CString* message = nullptr);

// Gives the next entry; at the end 0 with error 18.
TOV_CORE_API int TovDirectoryFindNext(void* find, WIN32_FIND_DATAA* data, unsigned long* error = nullptr,
                                      CString* message = nullptr);
TOV_CORE_API void TovDirectoryFindClose(void* find);

// Whether there is such a directory.
TOV_CORE_API int TovDirectoryExist(char const* path, unsigned long* error = nullptr,
                                   CString* message = nullptr);

// Makes a directory. One that is there gives 183; a missing one above it 3.
TOV_CORE_API int TovDirectoryCreate(char const* path, unsigned long* error = nullptr,
                                    CString* message = nullptr);

// The number of files that match; of a search that fails those that it has found.
TOV_CORE_API unsigned int TovFileCount(char const* pattern, unsigned long* error = nullptr,
                                       CString* message = nullptr);

// Whether one of the files that match cannot be opened for writing without sharing, or cannot be reached any
// more. The pair tells of the search alone.
TOV_CORE_API int TovFileInUse(char const* pattern, unsigned long* error = nullptr,
                              CString* message = nullptr);

// Copies the files of a directory, but not its subdirectories, into another one, which is made where it is
// missing. With `failIfExists` a file that is there stays and ends the copying (80); without, it is replaced.
// Every file is copied whole or not at all; the first failure ends the copying, and files that were copied
// before it stay. A file onto itself gives 32. Links are copied as the files that they lead to, those that
// lead nowhere as links; pipes, sockets and devices give 50.
TOV_CORE_API int TovDirectoryCopy(char const* from, char const* to, int failIfExists,
                                  unsigned long* error = nullptr, CString* message = nullptr);

// Removes a directory with the files in it. One with subdirectories stays whole (145). Links are removed
// themselves, the given path included, and never what they lead to. A path that ends in "." or ".." gives 87,
// as it does in the moves.
TOV_CORE_API int TovDirectoryRemove(char const* path, unsigned long* error = nullptr,
                                    CString* message = nullptr);

// Gives a directory another path. Never overwrites: a target that is there gives 183. To another volume its
// files are copied and then removed, which a directory with subdirectories refuses before anything happens
// (145). When copying fails the target is taken away again; when removing fails every file stands at the
// target, in the source, or in both.
TOV_CORE_API int TovDirectoryMove(char const* from, char const* to, unsigned long* error = nullptr,
                                  CString* message = nullptr);

// Whether the file or directory is there.
TOV_CORE_API int TovPathExists(char const* path);

// Whether the file is a program, a loadable module, either. A program is a file with the right to run or the
// extension ".exe", a module one with the extension ".dll" or ".so", in either case; numbers may follow
// ".so" ("libm.so.6"). When the path names no such file the extension is added to the name (".EXE", ".exe"
// and ".DLL", ".dll", ".so"), and a name that is found that way is put in the argument. TovFileIsExecutable
// asks for the program first.
TOV_CORE_API int TovFileIsEXE(CString& path);
TOV_CORE_API int TovFileIsDLL(CString& path);
TOV_CORE_API int TovFileIsExecutable(CString& path);

// The system's directory for temporary files, with a separator at the end.
TOV_CORE_API CString TovTempDirectory();

// Makes an empty file with a new name, "prefix" + digits + ".tmp", readable by the user alone, and answers
// its path. No directory stands for the temporary one. Empty on failure, and for a prefix with a separator.
TOV_CORE_API CString TovTempFilename(char const* directory, char const* prefix);

// Kinds of drives, to be added up.
inline constexpr unsigned TOV_DRIVES_REMOVABLE = 1u << 2;
inline constexpr unsigned TOV_DRIVES_FIXED = 1u << 3;
inline constexpr unsigned TOV_DRIVES_REMOTE = 1u << 4;
inline constexpr unsigned TOV_DRIVES_CD = 1u << 5;
inline constexpr unsigned TOV_DRIVES_RAM = 1u << 6;

// The drives of the given kinds. A drive is a mounted volume, told by the directory where it is mounted, with
// a separator at the end; in the order of mounting, what only the system itself uses left out.
TOV_CORE_API void TovGetAvailableDrives(unsigned int types, std::vector<CString>& drives);

// Whether both paths lie on the same volume. Of a path that is not there the nearest directory above it that
// is there counts. An empty path lies nowhere.
TOV_CORE_API int TovDriveIsEqual(char const* a, char const* b);

// Drive letters and their numbers: 1 is "A:", 26 "Z:"; anything else gives an empty text and 0.
TOV_CORE_API CString TovGetDriveString(unsigned int drive);
TOV_CORE_API unsigned int TovGetDriveInteger(char const* path);

// The short form of a path, part by part. The short name of a file is its name, so only the separators become
// the platform's.
TOV_CORE_API CString TovBuildShortPathname(char const* path);

// The file that a resource module was loaded from, or its folder; the file of the library for the built-in
// module, the program's for null. Answers 1, or 0 with an empty path.
TOV_CORE_API int TovGetModulePath(HINSTANCE module, CString& path);

}  // namespace tov
