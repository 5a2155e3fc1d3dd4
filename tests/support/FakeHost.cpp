#include "tests/support/FakeHost.h"

#include "tests/support/fake/Connection.h"
#include "tests/support/fake/State.h"

namespace zul::test {

FakeHost::FakeHost()
    : m_state(std::make_shared<State>())
{}

FakeHost::~FakeHost() = default;

ComPtr<_SqlConnection> FakeHost::connection() const
{
    return makeSqlConnection(m_state);
}

std::string& FakeHost::connectionString()
{
    return m_state->connectionString;
}

std::string& FakeHost::userName()
{
    return m_state->userName;
}

void FakeHost::answer(const std::string& part, Rows rows)
{
    m_state->answers.emplace_back(part, std::move(rows));
}

void FakeHost::answerLookup(const std::string& condition, Variant value)
{
    m_state->lookups[condition] = std::move(value);
}

std::map<std::string, std::optional<std::string>>& FakeHost::settings()
{
    return m_state->settings;
}

void FakeHost::giveRowReader(bool give)
{
    m_state->rowReader = give;
}

void FakeHost::offer(Service service)
{
    m_state->services.insert(service);
}

void FakeHost::offerAll()
{
    for (int service = 0; service <= static_cast<int>(Service::ProgramStarter); ++service) {
        offer(static_cast<Service>(service));
    }
}

std::map<long, FakeCustomer>& FakeHost::customers()
{
    return m_state->customers;
}

std::vector<bool>& FakeHost::saveAnswers()
{
    return m_state->saveAnswers;
}

std::vector<std::string>& FakeHost::searchAnswers()
{
    return m_state->searchAnswers;
}

std::vector<std::string>& FakeHost::connectorErrors()
{
    return m_state->connectorErrors;
}

std::function<bool(const std::string&)>& FakeHost::isValidEmail()
{
    return m_state->isValidEmail;
}

long& FakeHost::nextId()
{
    return m_state->nextId;
}

void FakeHost::failNth(const std::string& kind, int n, HRESULT code, const std::u16string& description)
{
    m_state->nth[{kind, m_state->counts[kind] + n}] = {code, description};
}

void FakeHost::failWhere(const std::string& part, HRESULT code, const std::u16string& description)
{
    m_state->where.push_back({part, {code, description}});
}

void FakeHost::failAtRow(int n, HRESULT code, const std::u16string& description)
{
    m_state->rowFailures[m_state->rowsAsked + n] = {code, description};
}

std::vector<long>& FakeHost::fieldCounts()
{
    return m_state->fieldCounts;
}

void FakeHost::noFailures()
{
    m_state->nth.clear();
    m_state->where.clear();
    m_state->rowFailures.clear();
}

const std::vector<std::string>& FakeHost::operations() const
{
    return m_state->operations;
}

std::vector<std::string> FakeHost::operations(const std::string& kind) const
{
    std::vector<std::string> found;
    for (const std::string& line : m_state->operations) {
        if (line == kind || line.rfind(kind + " ", 0) == 0) {
            found.push_back(line);
        }
    }
    return found;
}

void FakeHost::forgetOperations()
{
    m_state->operations.clear();
    m_state->setValues.clear();
}

std::vector<Variant> FakeHost::valuesOf(const std::string& column) const
{
    std::vector<Variant> values;
    for (const auto& [name, value] : m_state->setValues) {
        if (name == column) {
            values.push_back(value);
        }
    }
    return values;
}

const std::vector<FilledRecord>& FakeHost::savedRecords() const
{
    return m_state->savedRecords;
}

int FakeHost::openRowSets() const
{
    return m_state->openRowSets;
}

int FakeHost::made(Service service) const
{
    const auto found = m_state->made.find(service);
    return found == m_state->made.end() ? 0 : found->second;
}

void FakeHost::during(const std::string& part, std::function<void()> action)
{
    m_state->actions.emplace_back(part, std::move(action));
}

} // namespace zul::test
