// Texts of paths. Every function takes both "/" and "\" as separators; where it adds one it is the platform's
// ("/" here). What stands in a path already is left as it is.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

namespace tov {

// Adds the platform's separator behind a path that is not empty and does not end in a separator.
TOV_CORE_API void TovEnsureTrailingBackslash(CString& path);

// Removes one separator at the end, but not that of the root.
TOV_CORE_API void TovRemoveTrailingBackslash(CString& path);

// Cuts a path into drive ("C:", or empty), directory with its last separator, name, and extension with its
// dot. Joined they give the path again. A name whose only dot is its first character has no extension, nor
// has "..". Null is an empty path. The outputs may share their text with the path.
TOV_CORE_API void TovSplitPath(char const* path, CString& drive, CString& directory, CString& name,
                               CString& extension);

// Joins the parts, any of which may be null or empty. A missing separator behind the directory and a missing
// dot before the extension are added; of the drive only the letter counts.
TOV_CORE_API CString TovMakePath(char const* drive, char const* directory, char const* name,
                                 char const* extension);

// Whether a name (no path) can be given to a file here and on the usual foreign volumes: UTF-8 of at most 255
// bytes, no control characters and none of / \ : * ? " < > |, no blank or dot at the end, no name of a device
// (CON, PRN, AUX, NUL, COM1 to COM9, LPT1 to LPT9) with or without an extension. 0 for null and empty.
TOV_CORE_API int TovFilenameIsValid(char const* name);

// Whether a path can be: what of it is there, is, and every further part is a valid name. With `noRemovable`
// a path on a volume that can be taken out is not valid either, and `removable`, if given, tells that this is
// why.
TOV_CORE_API int TovPathIsValid(char const* path, int noRemovable, int* removable);

// Replaces what makes a name invalid, except its length, and answers the number of characters that were
// replaced. Where the replacement would itself make an invalid name "_" stands for it.
TOV_CORE_API unsigned int TovReplaceInvalidFilenameCharacters(CString& name, char replacement);

}  // namespace tov
