// One entry of a remote directory, as a search hands it out.
#pragma once

#include <cstdint>
#include <string>

namespace zul::ftp {

inline constexpr std::uint32_t AttributeReadOnly = 0x1;
inline constexpr std::uint32_t AttributeHidden = 0x2;
inline constexpr std::uint32_t AttributeSystem = 0x4;
inline constexpr std::uint32_t AttributeDirectory = 0x10;
inline constexpr std::uint32_t AttributeArchive = 0x20;
inline constexpr std::uint32_t AttributeNormal = 0x80;
inline constexpr std::uint32_t AttributeTemporary = 0x100;
inline constexpr std::uint32_t AttributeCompressed = 0x800;
inline constexpr std::uint32_t AttributeOffline = 0x1000;

/// Times are file times: 100-nanosecond units since 1601-01-01 UTC; 0 when the server does not tell.
struct FindRecord
{
    std::uint32_t attributes = 0;
    std::uint64_t creationTime = 0;
    std::uint64_t lastAccessTime = 0;
    std::uint64_t lastWriteTime = 0;
    std::uint64_t size = 0;
    std::string name; ///< as the server sent it: data, never a local path
};

} // namespace zul::ftp
