// Message texts with placeholders: the bytes of a text in UTF-16, behind the values of three names.
#include "host/services/PlaceholderText.h"
#include "tests/fuzz/Input.h"

#include <array>

using zul::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zul::fuzz::Input input(data, size);
    const std::array<std::u16string_view, 3> names{u"Cliente", u"email", u""};
    const std::array<std::u16string, 3> values{input.text16(), input.text16(), input.text16()};
    const std::string_view rest = input.rest();
    std::u16string text;
    // Letters of one byte, so that an input that a person can read is one for the target too.
    for (const char c : rest) {
        text += static_cast<unsigned char>(c);
    }

    const auto nothing = [](std::u16string_view) { return std::optional<std::u16string>(); };
    require(zul::host::fillPlaceholders(text, nothing) == text, "unknown names stay");
    const auto itself = [](std::u16string_view name) {
        std::u16string whole(u"{");
        whole += name;
        return std::optional(whole += u'}');
    };
    require(zul::host::fillPlaceholders(text, itself) == text, "the rest of a text stays");

    std::size_t expected = text.size();
    std::size_t asked = 0;
    const std::u16string filled =
        zul::host::fillPlaceholders(text, [&](std::u16string_view name) -> std::optional<std::u16string> {
            ++asked;
            require(name.find_first_of(u"{}") == std::u16string_view::npos, "a name without braces");
            for (std::size_t i = 0; i < names.size(); ++i) {
                if (name == names[i]) {
                    expected += values[i].size() - (name.size() + 2);
                    return values[i];
                }
            }
            return std::nullopt;
        });
    require(filled.size() == expected, "a value stands where its name stood, and is not looked at again");
    require(asked <= static_cast<std::size_t>(std::count(rest.begin(), rest.end(), '}')),
            "each closing brace is asked about once");
    return 0;
}
