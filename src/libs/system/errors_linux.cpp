#include "libs/system/errors_linux.h"

namespace zr5 {

FsStatus StatusOf(int error) {
    switch (error) {
    case 0:
        return FsStatus::Ok;
    case ENOENT:
    case ENOTDIR:
        return FsStatus::NotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
        return FsStatus::NotPermitted;
    case EEXIST:
    case ENOTEMPTY:
        return FsStatus::AlreadyExists;
    case ENOSPC:
    case EDQUOT:
        return FsStatus::NoSpace;
    case EFBIG:
        return FsStatus::TooLarge;
    case EISDIR:
    case ELOOP: // a link where no link is followed
    case ENXIO: // a pipe that nobody reads
        return FsStatus::NotRegularFile;
    default:
        return FsStatus::IoError;
    }
}

bool IsRealFailure(int error) {
    return StatusOf(error) == FsStatus::NoSpace || error == EIO;
}

} // namespace zr5
