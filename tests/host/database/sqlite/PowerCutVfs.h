#pragma once
// A disk whose power can be cut: what SQLite wrote and never synced is lost, in whole or in part.
#include <cstdint>
#include <string>

namespace zul::host {

/// While it lives, files that SQLite opens (through its default file system) go through it to the real one. What is
/// written stands in the files at once, for other readers too; cut() takes away what was not synced.
class PowerCutVfs
{
public:
    PowerCutVfs();
    ~PowerCutVfs();
    PowerCutVfs(const PowerCutVfs&) = delete;
    PowerCutVfs& operator=(const PowerCutVfs&) = delete;

    /// The power goes at the n-th write, truncation or sync from now on: it and everything behind it fails and changes
    /// nothing.
    void cutAt(std::uint64_t operation);
    bool isCut() const;

    /// Writes, truncations and syncs so far.
    std::uint64_t operations() const;

    /// Cuts the power now, if it was not, and takes from the files what was never synced: all of it, or with a seed
    /// other than 0 what chance says, sector by sector, as a disk that writes in an order of its own.
    void lose(std::uint32_t seed = 0);
};

} // namespace zul::host
