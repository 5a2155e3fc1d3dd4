// The modes of transfer, active and passive, in which a client is tried with a server of its own process.
#pragma once

#include "ftp/FtpTransport.h"
#include "tests/ftp/ScriptedServer.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zul::test {

/// None where it cannot be tried.
inline std::vector<std::uint32_t> activeMode()
{
    return ScriptedServer::knowsActiveMode() ? std::vector<std::uint32_t>{0} : std::vector<std::uint32_t>();
}

inline std::vector<std::uint32_t> modes()
{
    std::vector<std::uint32_t> all = activeMode();
    all.push_back(ftp::ModePassive);
    return all;
}

inline std::string modeName(const ::testing::TestParamInfo<std::uint32_t>& mode)
{
    return mode.param == ftp::ModePassive ? "Passive" : "Active";
}

} // namespace zul::test
