#include "vesk/error_codes.h"

#include <tov310/system_error.h>

#include <cerrno>
#include <cstring>

namespace tov {

unsigned long VeskErrorCode(int systemError, VeskOperation operation) {
    switch (systemError) {
        case 0:
            return TOV_ERROR_NONE;
        case ENOENT:
            return operation == VeskOperation::kPath ? TOV_ERROR_PATH_NOT_FOUND : TOV_ERROR_NOT_FOUND;
        case ENOTDIR:
            return TOV_ERROR_PATH_NOT_FOUND;
        case EMFILE:
            return TOV_ERROR_TOO_MANY_OPEN_FILES;
        case EACCES:
        case EPERM:
        case EISDIR:
            return TOV_ERROR_ACCESS_DENIED;
        case EBADF:
            return TOV_ERROR_INVALID_HANDLE;
        case ENOMEM:
            return TOV_ERROR_NOT_ENOUGH_MEMORY;
        case EXDEV:
            return TOV_ERROR_NOT_SAME_VOLUME;
        case EROFS:
            return TOV_ERROR_WRITE_PROTECTED;
        case EBUSY:
        case EAGAIN:
        case ETXTBSY:
            return TOV_ERROR_IN_USE;
        case ENOTSUP:
            return TOV_ERROR_NOT_SUPPORTED;
        case EEXIST:
            return operation == VeskOperation::kCreate ? TOV_ERROR_EXISTS : TOV_ERROR_FILE_EXISTS;
        case EINVAL:
            return TOV_ERROR_INVALID_PARAMETER;
        case ENOSPC:
        case EDQUOT:
            return TOV_ERROR_DISK_FULL;
        case ENOTEMPTY:
            return TOV_ERROR_NOT_EMPTY;
        case ENAMETOOLONG:
            return TOV_ERROR_NAME_TOO_LONG;
        case EIO:
            return TOV_ERROR_IO;
        default:
            return TOV_ERROR_SYSTEM_BASE + static_cast<unsigned long>(systemError);
    }
}

char const* VeskSystemErrorWords(int systemError) {
    return strerrordesc_np(systemError);
}

}  // namespace tov
