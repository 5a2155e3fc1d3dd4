#include "ftp/LocalFile.h"

namespace zul::ftp {

int runTimeNumber(LocalError error)
{
    switch (error) {
    case LocalError::NoFile:
        return LocalFileNotFound;
    case LocalError::NoFolder:
        return LocalPathNotFound;
    case LocalError::Denied:
        return PathFileAccessError;
    case LocalError::Full:
        return LocalDiskFull;
    case LocalError::None:
    case LocalError::Fault:
        break;
    }
    return DeviceIoError;
}

ErrorCode errorCode(LocalError error)
{
    switch (error) {
    case LocalError::None:
        return Success;
    case LocalError::NoFile:
        return FileNotFound;
    case LocalError::NoFolder:
        return PathNotFound;
    case LocalError::Denied:
        return AccessDenied;
    case LocalError::Full:
        return DiskFull;
    case LocalError::Fault:
        break;
    }
    return ReadFault;
}

} // namespace zul::ftp
