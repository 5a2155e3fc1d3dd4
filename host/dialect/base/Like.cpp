#include "host/dialect/base/Like.h"

#include "base/CaseFold.h"
#include "base/Utf8.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace zul::dialect {

namespace {

struct Element
{
    enum class Kind
    {
        Any,  // %
        One,  // _
        Char, // itself
        Set,
        Never
    };
    Kind kind = Kind::Char;
    char32_t character = 0;
    bool negated = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;

    bool accepts(char32_t c) const
    {
        if (kind == Kind::Char) {
            return lowerCharacter(c) == character;
        }
        if (kind == Kind::One) {
            return true;
        }
        if (kind != Kind::Set) {
            return false;
        }
        for (const auto& [from, to] : ranges) {
            for (const char32_t form : {c, lowerCharacter(c), upperCharacter(c)}) {
                if (form >= from && form <= to) {
                    return !negated;
                }
            }
        }
        return negated;
    }
};

Element characterElement(char32_t character)
{
    Element element;
    element.character = lowerCharacter(character);
    return element;
}

// Reads a set behind its '['; false when it has no end.
bool readSet(std::string_view pattern, std::size_t& at, std::optional<char32_t> escape, Element& set)
{
    set.kind = Element::Kind::Set;
    if (at < pattern.size() && pattern[at] == '^') {
        set.negated = true;
        ++at;
    }
    const auto read = [&](bool& escaped) {
        char32_t c = nextCharacter(pattern, at);
        escaped = escape && c == *escape && at < pattern.size();
        if (escaped) {
            c = nextCharacter(pattern, at);
        }
        return c;
    };
    bool first = true;
    while (at < pattern.size()) {
        bool escaped = false;
        const char32_t from = read(escaped);
        if (from == U']' && !escaped && !first) {
            return true;
        }
        first = false;
        if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']') {
            ++at;
            const char32_t to = read(escaped);
            set.ranges.emplace_back(from, to);
        } else {
            set.ranges.emplace_back(from, from);
        }
    }
    return false;
}

std::vector<Element> compile(std::string_view pattern, std::optional<char32_t> escape)
{
    std::vector<Element> elements;
    std::size_t at = 0;
    while (at < pattern.size()) {
        const char32_t c = nextCharacter(pattern, at);
        Element element;
        if (escape && c == *escape) {
            if (at >= pattern.size()) {
                element.kind = Element::Kind::Never;
            } else {
                element = characterElement(nextCharacter(pattern, at));
            }
        } else if (c == U'%') {
            if (!elements.empty() && elements.back().kind == Element::Kind::Any) {
                continue;
            }
            element.kind = Element::Kind::Any;
        } else if (c == U'_') {
            element.kind = Element::Kind::One;
        } else if (c == U'[') {
            if (!readSet(pattern, at, escape, element)) {
                element.kind = Element::Kind::Never;
            }
        } else {
            element = characterElement(c);
        }
        elements.push_back(std::move(element));
    }
    return elements;
}

// Only the last '%' met can need another try, so this is pattern times text at worst.
bool matches(const std::vector<Element>& elements, std::string_view text)
{
    std::size_t element = 0;
    std::size_t at = 0;
    bool retry = false;
    std::size_t retryElement = 0;
    std::size_t retryAt = 0;
    while (at < text.size()) {
        if (element < elements.size() && elements[element].kind == Element::Kind::Any) {
            retry = true;
            retryElement = ++element;
            retryAt = at;
            if (element == elements.size()) {
                return true;
            }
            continue;
        }
        std::size_t next = at;
        const char32_t c = nextCharacter(text, next);
        if (element < elements.size() && elements[element].accepts(c)) {
            ++element;
            at = next;
            continue;
        }
        if (!retry) {
            return false;
        }
        nextCharacter(text, retryAt);
        at = retryAt;
        element = retryElement;
    }
    while (element < elements.size() && elements[element].kind == Element::Kind::Any) {
        ++element;
    }
    return element == elements.size();
}

} // namespace

bool likeMatch(std::string_view pattern, std::string_view text, std::optional<char32_t> escape)
{
    // A statement asks the same pattern for every row.
    struct Compiled
    {
        std::string pattern;
        std::optional<char32_t> escape;
        std::vector<Element> elements;
    };
    thread_local Compiled last;
    if (last.pattern != pattern || last.escape != escape) {
        last = Compiled{std::string(pattern), escape, compile(pattern, escape)};
    }
    return matches(last.elements, text);
}

std::size_t patternIndex(std::string_view pattern, std::string_view text)
{
    const bool freeStart = !pattern.empty() && pattern.front() == '%';
    std::vector<Element> elements = compile(pattern, std::nullopt);
    if (!freeStart) {
        return matches(elements, text) ? 1 : 0;
    }
    elements.erase(elements.begin());
    std::size_t at = 0;
    for (std::size_t index = 1;; ++index) {
        if (matches(elements, text.substr(at))) {
            return elements.empty() ? 1 : index;
        }
        if (at >= text.size()) {
            return 0;
        }
        nextCharacter(text, at);
    }
}

} // namespace zul::dialect
