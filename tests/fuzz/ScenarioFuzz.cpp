// The text of a scenario: lines and words come out within their bounds, and words that are quoted again are read as
// they were.
#include "host/player/LineSource.h"
#include "host/player/ScenarioParser.h"
#include "tests/fuzz/Input.h"

#include <QStringList>
#include <sstream>

using namespace zul::host;
using zul::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zul::fuzz::Input input(data, size);
    const LineLimits limits{.line = 1 + input.number<std::uint8_t>(), .text = input.number<std::uint16_t>()};
    std::istringstream stream{std::string(input.rest())};
    LineSource source(stream, limits);
    int lines = 0;
    qint64 characters = 0;
    while (const auto line = source.next()) {
        require(source.number() == ++lines, "lines are counted from 1");
        require(!line->contains(u'\n'), "a line has no end in it");
        require(line->size() <= limits.line, "a line in its bound");
        characters += line->size();
        require(characters <= limits.text, "a text in its bound");
        const ParsedLine parsed = splitWords(*line);
        if (const auto* error = std::get_if<ParseError>(&parsed)) {
            require(!error->why.isEmpty(), "an error says why");
            continue;
        }
        QStringList again;
        for (const Word& word : std::get<std::vector<Word>>(parsed)) {
            require(word.quoted || !word.text.isEmpty(), "only a quoted word is empty");
            again.append(quoted(word.text));
        }
        const ParsedLine read = splitWords(again.join(u' '));
        const auto* words = std::get_if<std::vector<Word>>(&read);
        require(words != nullptr && words->size() == static_cast<std::size_t>(again.size()),
                "quoted words are read again");
        for (std::size_t i = 0; i < words->size(); ++i) {
            require((*words)[i].quoted && (*words)[i].text == std::get<std::vector<Word>>(parsed)[i].text,
                    "a quoted word is what it was");
        }
    }
    require(!source.next(), "the end stays the end");
    return 0;
}
