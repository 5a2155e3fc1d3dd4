#include "tests/support/fake/State.h"

#include "automation/ErrorInfo.h"

namespace zul::test {

HRESULT FakeHost::State::fail(const Failure& failure)
{
    return reportError(failure.code, failure.description, u"FakeHost");
}

HRESULT FakeHost::State::perform(const std::string& kind, const std::optional<std::string>& words)
{
    const int n = ++counts[kind];
    const std::string line = words && !words->empty() ? kind + " " + *words : kind;
    if (words) {
        operations.push_back(line);
    }
    for (std::size_t i = 0; i < actions.size(); ++i) {
        if (!contains(line, actions[i].first)) {
            continue;
        }
        const auto action = actions[i].second;
        action();
    }
    if (const auto found = nth.find({kind, n}); found != nth.end()) {
        return fail(found->second);
    }
    for (const auto& [part, failure] : where) {
        if (contains(line, part)) {
            return fail(failure);
        }
    }
    return S_OK;
}

HRESULT FakeHost::State::row()
{
    const auto found = rowFailures.find(++rowsAsked);
    return found == rowFailures.end() ? S_OK : fail(found->second);
}

std::optional<std::string> settingsKey(const std::string& sql)
{
    static const std::string settingsRow = "SELECT * FROM tabImpostazioni WHERE descrizione='";
    if (sql.rfind(settingsRow, 0) != 0) {
        return std::nullopt;
    }
    return sql.substr(settingsRow.size(), sql.size() - settingsRow.size() - 1);
}

} // namespace zul::test
