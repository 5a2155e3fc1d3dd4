// How much a transfer of a whole file may cost, whatever the server does.
#pragma once

#include <chrono>
#include <cstdint>

namespace zul::ftp {

/// The defaults let pass millions of lines over a slow line, and end what has no end.
struct TransferLimits
{
    /// Bytes that a download may write to its local file; more are FileTooLarge.
    std::uint64_t largestFile = 67'108'864;
    /// Bytes a second, on average over slowestFor; a transfer that is slower is TimedOut. 0: no such limit.
    std::uint32_t lowestSpeed = 50;
    /// A minute lets a line recover; at least a second.
    std::chrono::seconds slowestFor{60};
    /// From the request to the server's last word; a transfer that takes longer is TimedOut.
    std::chrono::milliseconds longestTime{600'000};
};

} // namespace zul::ftp
