#pragma once
// The provinces of Italy and a choice of their communes, for the host's place tables.
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zul::host {

struct Province
{
    std::string_view code;     ///< "RM"
    std::string_view name;     ///< "Roma"
    std::string_view dialling; ///< "06"
    std::string_view communes; ///< joined by "|", the capital first
};

/// All 107, from north to south; a province's id is its position, from 1.
std::span<const Province> provinces();

struct Commune
{
    int code = 0; ///< the province's id × 1000 and a running number
    std::string_view name;
    std::string_view provinceCode;
    std::string_view dialling;
};

/// All communes, by code.
const std::vector<Commune>& communes();

} // namespace zul::host
