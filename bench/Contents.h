// Demonstration databases whose texts are of another make.
#pragma once

#include <string>

namespace zul::bench {

/// Makes the demonstration database of so many customers. `contents` says what then stands in the texts that the
/// result grid shows: "demo" what a shop's customers have; "distinct" in every column a text that comes only
/// once; "same" in every column one text for all; "long" 200 characters that come only once; "null" nothing.
/// Addresses and numbers stay so that everybody who could be written to still can, but for "null".
void makeDatabase(const std::string& path, int customers, const std::string& contents);

} // namespace zul::bench
