#pragma once
// How the server orders and compares texts: without regard to case, with regard to accents, blanks at the end not
// counted. Accents, apostrophes and hyphens decide only between texts that are the same without them: "La Spezia"
// stands before "L'Aquila", "Forlì" before "Forlimpopoli".
#include <string_view>

namespace zul::tds {

/// Less than 0, 0 or more, as the first text stands before the second, is the same to the server, or behind it.
int compareTexts(std::string_view a, std::string_view b);

} // namespace zul::tds
