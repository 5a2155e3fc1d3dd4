#include "ftp/FtpErrors.h"

namespace zul::ftp {

std::string systemText(ErrorCode code)
{
    switch (code) {
    case Success:
        return "The operation ended well.\r\n";
    case FileNotFound:
        return "The local file does not exist.\r\n";
    case PathNotFound:
        return "The folder of the local file does not exist.\r\n";
    case AccessDenied:
        return "Access to the local file was refused.\r\n";
    case InvalidHandle:
        return "There is no open handle for this operation.\r\n";
    case NotEnoughMemory:
        return "There is not enough memory for this operation.\r\n";
    case NoMoreFiles:
        return "There are no more files.\r\n";
    case ReadFault:
        return "The local file could not be read or written.\r\n";
    case FileExists:
        return "The local file exists already.\r\n";
    case InvalidParameter:
        return "A name or another argument of the operation is not valid.\r\n";
    case DiskFull:
        return "The disk of the local file is full.\r\n";
    case InsufficientBuffer:
        return "The answer is longer than the room for it.\r\n";
    case FileTooLarge:
        return "The file is larger than this client takes.\r\n";
    case TimedOut:
        return "The server did not answer in time.\r\n";
    case ExtendedError:
        return "The server refused the operation and gave its own reason.\r\n";
    case InternalError:
        return "The transfer library failed.\r\n";
    case NameNotResolved:
        return "The name of the server could not be resolved.\r\n";
    case IncorrectPassword:
        return "The server refused the login: the password is not correct.\r\n";
    case LoginFailure:
        return "The server refused the login.\r\n";
    case CannotConnect:
        return "A connection with the server could not be made.\r\n";
    case InvalidCertificate:
        return "The certificate of the server cannot be trusted.\r\n";
    case SecureChannelFailed:
        return "A secure connection with the server could not be made.\r\n";
    case ConnectionAborted:
        return "The connection with the server broke off.\r\n";
    case TransferInProgress:
        return "A transfer is still open on this connection.\r\n";
    case InvalidServerResponse:
        return "The server sent an answer that cannot be understood.\r\n";
    default:
        return {};
    }
}

namespace {

const char* description(int number)
{
    switch (number) {
    case InvalidProcedureCall:
        return "Invalid procedure call or argument";
    case Overflow:
        return "Overflow";
    case SubscriptOutOfRange:
        return "Subscript out of range";
    case TypeMismatch:
        return "Type mismatch";
    case LocalFileNotFound:
        return "File not found";
    case FileAlreadyOpen:
        return "File already open";
    case DeviceIoError:
        return "Device I/O error";
    case LocalDiskFull:
        return "Disk full";
    case PathFileAccessError:
        return "Path/File access error";
    case LocalPathNotFound:
        return "Path not found";
    case DuplicateKey:
        return "This key is already associated with an element of this collection";
    default:
        return "Application-defined or object-defined error";
    }
}

} // namespace

RunTimeError::RunTimeError(int errorNumber)
    : std::runtime_error(description(errorNumber))
    , number(errorNumber)
{}

} // namespace zul::ftp
