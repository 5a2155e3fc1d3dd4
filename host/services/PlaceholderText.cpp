#include "host/services/PlaceholderText.h"

namespace zul::host {

std::u16string fillPlaceholders(std::u16string_view text, const PlaceholderValue& valueOf)
{
    std::u16string filled;
    filled.reserve(text.size());
    while (!text.empty()) {
        const std::size_t open = text.find(u'{');
        filled += text.substr(0, open);
        if (open == std::u16string_view::npos) {
            break;
        }
        text.remove_prefix(open);
        const std::size_t end = text.find_first_of(u"{}", 1);
        if (end != std::u16string_view::npos && text[end] == u'}') {
            if (const auto value = valueOf(text.substr(1, end - 1))) {
                filled += *value;
                text.remove_prefix(end + 1);
                continue;
            }
        }
        // No placeholder: the brace is text, and what follows may hold one.
        filled += u'{';
        text.remove_prefix(1);
    }
    return filled;
}

} // namespace zul::host
