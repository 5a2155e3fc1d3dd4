#include "tests/automation/differential/Sections.h"

#include "tests/automation/differential/Answer.h"

#include <cstdio>
#include <utility>

namespace differential {

Line::Line(std::string question)
    : m_question(std::move(question))
{}

void Line::add(const std::string& target, const std::string& answer)
{
    std::string& targets = m_targets[answer];
    if (targets.empty()) {
        m_answers.push_back(answer);
        targets = target;
    } else {
        targets += "," + target;
    }
}

void Line::add(const std::string& target, HRESULT result, const std::function<std::string()>& rest)
{
    add(target, nameOf(result) + " " + rest());
}

void Line::print() const
{
    std::string text = m_question;
    for (const std::string& answer : m_answers) {
        text += "\t" + m_targets.at(answer) + "=" + answer;
    }
    std::fputs((text + "\n").c_str(), stdout);
    std::fflush(stdout); // the last line before a crash is the one that counts
}

} // namespace differential
