#include "ftp/FtpErrors.h"

#include "ftp/LocalFile.h"

#include <gtest/gtest.h>
#include <set>

namespace zul::test {
namespace {

using namespace ftp;

TEST(FtpErrorsTest, TheNumbersAreThePlatforms)
{
    EXPECT_EQ(InvalidHandle, 6U);
    EXPECT_EQ(NoMoreFiles, 18U);
    EXPECT_EQ(TimedOut, 12002U);
    EXPECT_EQ(ExtendedError, 12003U);
    EXPECT_EQ(NameNotResolved, 12007U);
    EXPECT_EQ(IncorrectPassword, 12014U);
    EXPECT_EQ(LoginFailure, 12015U);
    EXPECT_EQ(CannotConnect, 12029U);
    EXPECT_EQ(ConnectionAborted, 12030U);
    EXPECT_EQ(InvalidCertificate, 12045U);
    EXPECT_EQ(SecureChannelFailed, 12157U);
    EXPECT_EQ(TransferInProgress, 12110U);
}

TEST(FtpErrorsTest, EveryCodeHasATextOfItsOwnThatEndsAsAFormatterLeavesIt)
{
    std::set<std::string> texts;
    for (const ErrorCode code : {Success,
                                 FileNotFound,
                                 ftp::PathNotFound,
                                 AccessDenied,
                                 InvalidHandle,
                                 NotEnoughMemory,
                                 NoMoreFiles,
                                 ReadFault,
                                 FileExists,
                                 InvalidParameter,
                                 ftp::DiskFull,
                                 InsufficientBuffer,
                                 FileTooLarge,
                                 TimedOut,
                                 ExtendedError,
                                 InternalError,
                                 NameNotResolved,
                                 IncorrectPassword,
                                 LoginFailure,
                                 CannotConnect,
                                 ConnectionAborted,
                                 TransferInProgress,
                                 InvalidServerResponse,
                                 InvalidCertificate,
                                 SecureChannelFailed}) {
        const std::string text = systemText(code);
        EXPECT_GT(text.size(), 10U) << code;
        EXPECT_LT(text.size(), 256U) << code;
        EXPECT_TRUE(text.ends_with(".\r\n")) << code;
        EXPECT_TRUE(texts.insert(text).second) << code;
    }
    EXPECT_EQ(systemText(4711), "");
}

TEST(FtpErrorsTest, RunTimeErrorsHaveTheClassicDescriptions)
{
    const std::pair<int, const char*> errors[] = {
        {5, "Invalid procedure call or argument"},
        {6, "Overflow"},
        {9, "Subscript out of range"},
        {13, "Type mismatch"},
        {53, "File not found"},
        {55, "File already open"},
        {57, "Device I/O error"},
        {61, "Disk full"},
        {75, "Path/File access error"},
        {76, "Path not found"},
        {457, "This key is already associated with an element of this collection"},
    };
    for (const auto& [number, text] : errors) {
        const RunTimeError error(number);
        EXPECT_EQ(error.number, number);
        EXPECT_STREQ(error.what(), text);
    }
}

TEST(FtpErrorsTest, LocalErrorsAreKnownToBothSides)
{
    EXPECT_EQ(runTimeNumber(LocalError::NoFile), 53);
    EXPECT_EQ(runTimeNumber(LocalError::NoFolder), 76);
    EXPECT_EQ(runTimeNumber(LocalError::Denied), 75);
    EXPECT_EQ(runTimeNumber(LocalError::Full), 61);
    EXPECT_EQ(runTimeNumber(LocalError::Fault), 57);
    EXPECT_EQ(errorCode(LocalError::None), 0U);
    EXPECT_EQ(errorCode(LocalError::NoFile), 2U);
    EXPECT_EQ(errorCode(LocalError::NoFolder), 3U);
    EXPECT_EQ(errorCode(LocalError::Denied), 5U);
    EXPECT_EQ(errorCode(LocalError::Full), 112U);
    EXPECT_EQ(errorCode(LocalError::Fault), 30U);
}

} // namespace
} // namespace zul::test
