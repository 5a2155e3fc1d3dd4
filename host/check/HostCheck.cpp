#include "host/check/HostCheck.h"

#include "host/check/Verdict.h"

#include <algorithm>
#include <exception>

namespace zul::host::check {

namespace {

constexpr const char* thrownAt =
    "ends the operator's command, with a line in its log; an exception out of Release ends the process";

Finding thrown(const Check& check, const std::string& what)
{
    return {Outcome::Breach, check.name, Breach("an exception came out of the host" + what, thrownAt).text};
}

Finding runCheck(const Check& check, Subject& subject)
{
    takeExceptionNote();
    try {
        check.run(subject);
        const std::string note = takeExceptionNote();
        return note.empty() ? Finding{Outcome::Ok, check.name, {}} : thrown(check, note);
    } catch (const Breach& breach) {
        return {Outcome::Breach, check.name, breach.text};
    } catch (const Warning& warning) {
        return {Outcome::Warning, check.name, warning.text};
    } catch (const StandIn& standIn) {
        return {Outcome::StandIn, check.name, standIn.text};
    } catch (const Skipped& skipped) {
        return {Outcome::Skipped, check.name, skipped.text};
    } catch (const std::exception& error) {
        return thrown(check, std::string(": ") + error.what());
    } catch (...) {
        return thrown(check, {});
    }
}

/// The subject as the checks before the course's first left it. What cannot be had again stands no more.
void restore(Subject& subject, std::set<std::string>& stands)
{
    try {
        if (stands.count(connectionCheck) != 0) {
            subject.connect();
        }
    } catch (...) {
        stands.clear();
    }
    try {
        if (stands.count(tableCheck) != 0) {
            subject.createTable();
        }
        if (stands.count(addCheck) != 0) {
            subject.foundToAddRows();
        }
    } catch (...) {
        stands.erase(tableCheck);
        stands.erase(addCheck);
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
    static constexpr const char* words[] = {"ok       ", "stand-in ", "BREACH   ", "warning  ", "skipped  "};
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
           (count(Outcome::Warning) == 0 ? "" : several(Outcome::Warning, "warning", "warnings") + ", ") +
           several(Outcome::Breach, "breach", "breaches") + ", " +
           several(Outcome::Skipped, "skipped", "skipped");
}

Report checkHost(_SqlConnection* object, const CheckOptions& options, Course course)
{
    Report report;
    Subject subject(object, options);
    restore(subject, course.stands);
    const std::vector<Check>& checks = allChecks();
    for (std::size_t i = course.first; i < checks.size(); ++i) {
        const Check& check = checks[i];
        Finding finding;
        if (!check.needs.empty() && course.stands.count(check.needs) == 0) {
            finding = {Outcome::Skipped, check.name, "needs \"" + check.needs + "\""};
        } else {
            if (course.begins) {
                course.begins(check.name);
            }
            finding = runCheck(check, subject);
        }
        if (finding.outcome == Outcome::Ok) {
            course.stands.insert(check.name);
        }
        if (course.told) {
            course.told(finding);
        }
        report.findings.push_back(std::move(finding));
    }
    if (course.begins) {
        course.begins(partingCheck);
    }
    return report;
}

Report checkHost(_SqlConnection* object, const CheckOptions& options,
                 const std::function<void(const Finding&)>& told)
{
    Course course;
    course.told = told;
    return checkHost(object, options, std::move(course));
}

} // namespace zul::host::check
