// Error codes and their texts. The codes that functions give in an optional `unsigned long* error` are the
// library's own, the same on every platform.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

namespace tov {

inline constexpr unsigned long TOV_ERROR_NONE = 0;
inline constexpr unsigned long TOV_ERROR_NOT_FOUND = 2;       // file or key
inline constexpr unsigned long TOV_ERROR_PATH_NOT_FOUND = 3;  // a directory on the way
inline constexpr unsigned long TOV_ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr unsigned long TOV_ERROR_ACCESS_DENIED = 5;
inline constexpr unsigned long TOV_ERROR_INVALID_HANDLE = 6;
inline constexpr unsigned long TOV_ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr unsigned long TOV_ERROR_NOT_SAME_VOLUME = 17;
inline constexpr unsigned long TOV_ERROR_NO_MORE_FILES = 18;
inline constexpr unsigned long TOV_ERROR_WRITE_PROTECTED = 19;
inline constexpr unsigned long TOV_ERROR_IN_USE = 32;
inline constexpr unsigned long TOV_ERROR_NOT_SUPPORTED = 50;
inline constexpr unsigned long TOV_ERROR_FILE_EXISTS = 80;
inline constexpr unsigned long TOV_ERROR_INVALID_PARAMETER = 87;
inline constexpr unsigned long TOV_ERROR_DISK_FULL = 112;
inline constexpr unsigned long TOV_ERROR_MODULE_NOT_LOADED = 126;
inline constexpr unsigned long TOV_ERROR_SYMBOL_NOT_FOUND = 127;
inline constexpr unsigned long TOV_ERROR_NOT_EMPTY = 145;
inline constexpr unsigned long TOV_ERROR_EXISTS = 183;  // mutex, directory, target of a move
inline constexpr unsigned long TOV_ERROR_NAME_TOO_LONG = 206;
inline constexpr unsigned long TOV_ERROR_NO_MORE_KEYS = 259;
inline constexpr unsigned long TOV_ERROR_IO = 1117;
inline constexpr unsigned long TOV_ERROR_SYSTEM_BASE = 0x20000000;  // plus the number of the platform

// The text of a code, in the language of the library's resource module for the codes above and as the
// platform words it for those from TOV_ERROR_SYSTEM_BASE on. Codes 2100 to 2999 are asked of the resource
// module "netmsg" first. Writes UTF-8 without a line end and with a closing zero into at most `size` bytes,
// cut at a character. Answers the length in bytes; an unknown code gives 0 and an empty text.
TOV_CORE_API unsigned long TovFormatSystemError(unsigned long code, char* buffer, unsigned long size);

// The same as a text, limited to 259 bytes.
TOV_CORE_API CString TovSystemErrorText(unsigned long code);

}  // namespace tov
