// What all objects of one fake host share: its scripts, its failures, and what it wrote down.
#pragma once

#include "tests/support/FakeHost.h"
#include "tests/support/fake/Values.h"

namespace zul::test {

struct FakeHost::State
{
    struct Failure
    {
        HRESULT code;
        std::u16string description;
    };

    std::string connectionString = "Provider=Fake;Data Source=memory";
    std::string userName = "operatore";
    std::vector<std::pair<std::string, Rows>> answers;
    std::map<std::string, Variant> lookups;
    std::map<std::string, std::optional<std::string>> settings;
    bool rowReader = false;

    std::set<Service> services;
    std::map<long, FakeCustomer> customers;
    std::vector<bool> saveAnswers;
    std::vector<std::string> searchAnswers;
    std::vector<std::string> connectorErrors;
    std::function<bool(const std::string&)> isValidEmail = [](const std::string&) { return true; };
    long nextId = 1;

    std::map<std::pair<std::string, int>, Failure> nth;
    std::vector<std::pair<std::string, Failure>> where;
    std::map<int, Failure> rowFailures;
    int rowsAsked = 0;
    std::vector<long> fieldCounts;
    std::map<std::string, int> counts;
    std::vector<std::pair<std::string, std::function<void()>>> actions;

    std::vector<std::string> operations;
    std::vector<std::pair<std::string, Variant>> setValues;
    std::vector<FilledRecord> savedRecords;
    int openRowSets = 0;
    std::map<Service, int> made;

    static HRESULT fail(const Failure& failure);

    /// Counts an operation and says whether it fails; writes it down when it is told in words.
    HRESULT perform(const std::string& kind, const std::optional<std::string>& words = std::string());

    /// Counts a row that a row set is asked for, and says whether it fails.
    HRESULT row();

    /// The first of a queue of answers, taken from it; the other one when it is used up.
    template <class T>
    static T next(std::vector<T>& queue, T otherwise)
    {
        if (queue.empty()) {
            return otherwise;
        }
        T first = queue.front();
        queue.erase(queue.begin());
        return first;
    }
};

using StatePtr = std::shared_ptr<FakeHost::State>;

/// The key of a statement that reads one setting, or nothing.
std::optional<std::string> settingsKey(const std::string& sql);

} // namespace zul::test
