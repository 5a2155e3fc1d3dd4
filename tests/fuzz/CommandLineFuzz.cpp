// The command line of zulhost: an argument a line. What is taken lies in its range, what is not taken is told in one
// line, and no connection string stays where others can read it.
#include "host/player/CommandLine.h"
#include "tests/fuzz/Input.h"

#include <vector>

using namespace zul::host;
using zul::fuzz::require;

namespace {

void checkHidden(const std::vector<std::string>& given)
{
    std::vector<std::string> words{"zulhost"};
    for (const std::string& word : given) {
        words.emplace_back(word.c_str()); // an argument ends at its first zero
    }
    const std::vector<std::string> before = words;
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    hideSecrets(static_cast<int>(arguments.size()), arguments.data());
    for (std::size_t i = 0; i < words.size(); ++i) {
        require(words[i].size() == before[i].size(), "an argument keeps its length");
    }
    const CommandLine* line = nullptr;
    QStringList list;
    for (std::size_t i = 1; i < before.size(); ++i) {
        list.append(QString::fromLocal8Bit(before[i].c_str()));
    }
    const auto parsed = parseCommandLine(list);
    line = std::get_if<CommandLine>(&parsed);
    if (line == nullptr || !line->database.contains(u'=') || list.contains(u"--database-file")) {
        return;
    }
    // Where it stands by its option: the same text may be what another one was given.
    const std::string option = "--database";
    for (std::size_t i = 1; i < words.size(); ++i) {
        const bool joined = before[i].starts_with(option + '=');
        if (joined || before[i - 1] == option) {
            const std::string left = joined ? words[i].substr(option.size() + 1) : words[i];
            require(QString::fromLocal8Bit(left.c_str()) != line->database,
                    "a connection string is overwritten");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zul::fuzz::Input input(data, size);
    std::vector<std::string> words;
    QStringList arguments;
    while (!input.ended() && words.size() < 40) {
        words.emplace_back(input.line());
        arguments.append(QString::fromLocal8Bit(words.back().c_str()));
    }
    const auto parsed = parseCommandLine(arguments);
    if (const auto* error = std::get_if<CommandLineError>(&parsed)) {
        require(!error->message.isEmpty(), "a refusal says why");
    } else {
        const auto& line = std::get<CommandLine>(parsed);
        require(!line.createDemo || *line.createDemo >= 0, "a number of customers");
        require(line.appTimeOuts >= 0, "a number of time-outs");
        require(!line.readOnly || !line.checkHost.isEmpty(), "a switch where it belongs");
        require(!line.checkLimit || (*line.checkLimit >= 0 && !line.checkHost.isEmpty()),
                "a limit where it belongs");
        require(line.appUrl.isEmpty() || line.appUrl.startsWith(u"http"), "an address of the web");
    }
    checkHidden(words);
    return 0;
}
