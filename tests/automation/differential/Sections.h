// The parts of the printout. Each writes lines of fields parted by tabs: what was asked first, then "target=answer"
// fields; targets with the same answer share a field, "I1,I2=5".
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <oleauto.h>

namespace differential {

// A line under way.
class Line
{
public:
    explicit Line(std::string question);
    void add(const std::string& target, const std::string& answer);
    // The result's name and, after a blank, what is said once the result is there.
    void add(const std::string& target, HRESULT result, const std::function<std::string()>& rest);
    // Writes it to standard output.
    void print() const;

private:
    std::string m_question;
    std::vector<std::string> m_answers; // in the order in which they came first
    std::map<std::string, std::string> m_targets;
};

// VariantChangeType and VariantChangeTypeEx.
void printConversions();
// SafeArray functions.
void printArrays();
// BSTR functions, ids as texts, variants that are cleared and copied.
void printTexts();
// Late-bound calls; the folder holds the type library.
void printCalls(const std::string& folder);

} // namespace differential
