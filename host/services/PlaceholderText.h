#pragma once
// Fills the placeholders of a message text, "{Cliente}" and the like.
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zul::host {

/// Gives the text for a placeholder's name, without the braces; nothing when the name is not known.
using PlaceholderValue = std::function<std::optional<std::u16string>(std::u16string_view name)>;

/// Replaces every known "{Name}"; all else stays as it is, unknown names and lone braces included. Names are
/// compared with their case. What was filled in is not looked at again, so a customer named "{email}" stays so.
std::u16string fillPlaceholders(std::u16string_view text, const PlaceholderValue& valueOf);

} // namespace zul::host
