#include "host/check/HostCheck.h"

#include "host/check/Verdict.h"

#include <algorithm>
#include <exception>
#include <set>

namespace zul::host::check {

namespace {

Finding runCheck(const Check& check, Subject& subject)
{
    try {
        check.run(subject);
        return {Outcome::Ok, check.name, {}};
    } catch (const Breach& breach) {
        return {Outcome::Breach, check.name, breach.text};
    } catch (const StandIn& standIn) {
        return {Outcome::StandIn, check.name, standIn.text};
    } catch (const Skipped& skipped) {
        return {Outcome::Skipped, check.name, skipped.text};
    } catch (const std::exception& error) {
        return {Outcome::Breach, check.name,
                std::string("an exception came out of the host: ") + error.what()};
    } catch (...) {
        return {Outcome::Breach, check.name, "an exception came out of the host"};
    }
}

} // namespace

const std::vector<Check>& allChecks()
{
    static const std::vector<Check> all = [] {
        std::vector<Check> checks;
        addConnectionChecks(checks);
        addRowSetChecks(checks);
        addRowSetLifeChecks(checks);
        addChangeChecks(checks);
        addValueChecks(checks);
        addReaderCheck(checks);
        addFailureChecks(checks);
        addServiceChecks(checks);
        return checks;
    }();
    return all;
}

std::string Finding::line() const
{
    static constexpr const char* words[] = {"ok       ", "stand-in ", "BREACH   ", "skipped  "};
    std::string line = words[static_cast<std::size_t>(outcome)] + check + (text.empty() ? "" : ": " + text);
    // A description of a database may have several.
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c >= 0 && c < ' '; }, ' ');
    return line;
}

std::size_t Report::count(Outcome outcome) const
{
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [outcome](const Finding& finding) { return finding.outcome == outcome; }));
}

std::string Report::summary() const
{
    const auto several = [this](Outcome outcome, const char* one, const char* more) {
        const std::size_t number = count(outcome);
        return std::to_string(number) + ' ' + (number == 1 ? one : more);
    };
    return std::to_string(findings.size()) + " checks: " + several(Outcome::Ok, "ok", "ok") + ", " +
           several(Outcome::StandIn, "stand-in", "stand-ins") + ", " +
           several(Outcome::Breach, "breach", "breaches") + ", " +
           several(Outcome::Skipped, "skipped", "skipped");
}

Report checkHost(_SqlConnection* object, const CheckOptions& options,
                 const std::function<void(const Finding&)>& told)
{
    Report report;
    Subject subject(object, options);
    std::set<std::string> stands;
    for (const Check& check : allChecks()) {
        Finding finding;
        if (!check.needs.empty() && stands.count(check.needs) == 0) {
            finding = {Outcome::Skipped, check.name, "needs \"" + check.needs + "\""};
        } else {
            finding = runCheck(check, subject);
        }
        if (finding.outcome == Outcome::Ok) {
            stands.insert(check.name);
        }
        if (told) {
            told(finding);
        }
        report.findings.push_back(std::move(finding));
    }
    return report;
}

} // namespace zul::host::check
