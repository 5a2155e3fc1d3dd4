// How a check of a host ends: by returning, which is "ok", or by throwing one of these.
#pragma once

#include <string>
#include <utility>

namespace zul::host::check {

/// What every way to end says: one line of UTF-8 for the host's author.
struct Verdict
{
    std::string text;
};

/// The host does not keep the contract. The text says what is wrong and what the component would do with it.
struct Breach : Verdict
{
    Breach(const std::string& wrong, const std::string& consequence)
        : Verdict{wrong + "; the component: " + consequence}
    {}
};

/// The host does not keep the contract, and nothing comes to harm by it. The text is that of a breach.
struct Warning : Verdict
{
    Warning(const std::string& wrong, const std::string& consequence)
        : Verdict{wrong + "; the component: " + consequence}
    {}
};

/// Something optional is missing. The text says what takes its place.
struct StandIn : Verdict
{
    explicit StandIn(std::string instead)
        : Verdict{std::move(instead)}
    {}
};

/// Not tried. The text says why.
struct Skipped : Verdict
{
    explicit Skipped(std::string why)
        : Verdict{std::move(why)}
    {}
};

} // namespace zul::host::check
