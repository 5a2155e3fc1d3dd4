// The two kinds of error of the FTP client.
//
//  * A failed network call is a number of the platform's Internet table (ErrorCode). cFtp never throws it: it
//    returns false and keeps a text built from the number and systemText().
//  * A failed conversion, a key in use, a position out of range or a local file that cannot be opened is a
//    RunTimeError, which cFtp lets through to its caller. The caller adapts it to its own error type.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace zul::ftp {

/// The outcome of a transport call: 0 for success, else one of the numbers below (or, with another transport,
/// any number of the platform).
using ErrorCode = std::uint32_t;

inline constexpr ErrorCode Success = 0;
inline constexpr ErrorCode FileNotFound = 2;
inline constexpr ErrorCode PathNotFound = 3;
inline constexpr ErrorCode AccessDenied = 5;
inline constexpr ErrorCode InvalidHandle = 6; ///< an operation without a connection
inline constexpr ErrorCode NotEnoughMemory = 8;
inline constexpr ErrorCode NoMoreFiles = 18;
inline constexpr ErrorCode ReadFault = 30;
inline constexpr ErrorCode FileExists = 80;
inline constexpr ErrorCode InvalidParameter = 87; ///< an empty name, or one with CR, LF or NUL
inline constexpr ErrorCode DiskFull = 112;
inline constexpr ErrorCode InsufficientBuffer = 122;
inline constexpr ErrorCode FileTooLarge = 223; ///< larger than the limit of the transfer
inline constexpr ErrorCode TimedOut = 12002;
inline constexpr ErrorCode ExtendedError = 12003; ///< the server said no: its own words are lastResponse()
inline constexpr ErrorCode InternalError = 12004;
inline constexpr ErrorCode NameNotResolved = 12007;
/// The server asked for the password and refused it (a refusal after its 331): what an operator can mend by
/// typing the password again.
inline constexpr ErrorCode IncorrectPassword = 12014;
/// The server refused the login before it asked for a password, or asks for more than a password.
inline constexpr ErrorCode LoginFailure = 12015;
inline constexpr ErrorCode CannotConnect = 12029;
inline constexpr ErrorCode InvalidCertificate =
    12045; ///< one that no known authority vouches for, or of another name
inline constexpr ErrorCode ConnectionAborted = 12030;
inline constexpr ErrorCode TransferInProgress = 12110; ///< a remote file is still open on the connection
/// The server does not offer TLS, or not of a kind that can be agreed on.
inline constexpr ErrorCode SecureChannelFailed = 12157;
/// A reply or a listing that is no FTP, or one without end.
inline constexpr ErrorCode InvalidServerResponse = 12152;

/// The system text of @p code, ending in CR LF as a message formatter leaves it; empty for a number that the
/// table does not have. Not more than 255 characters.
std::string systemText(ErrorCode code);

/// A classic run-time error: number and description.
struct RunTimeError : std::runtime_error
{
    /// The description is the classic one of @p errorNumber.
    explicit RunTimeError(int errorNumber);

    int number; ///< 5, 6, 9, 13, 53, 55, 57, 61, 75, 76 or 457
};

inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int LocalFileNotFound = 53;
inline constexpr int FileAlreadyOpen = 55;
inline constexpr int DeviceIoError = 57;
inline constexpr int LocalDiskFull = 61;
inline constexpr int PathFileAccessError = 75;
inline constexpr int LocalPathNotFound = 76;
inline constexpr int DuplicateKey = 457;

} // namespace zul::ftp
