// The host's own objects, which are optional, and the event that fills a pick list.
#include "automation/ErrorInfo.h"
#include "automation/ServiceAnswer.h"
#include "host/check/Checks.h"
#include "host/check/StandInGrid.h"
#include "host/check/Verdict.h"

#include <Zul_Host.h>
#include <Zul_MessageBuilder.h>

#include <array>

namespace zul::host::check {

namespace {

/// What the host gives for an id; null where it has nothing, which `code` then says.
ComPtr<IUnknown> serviceOf(const Subject& subject, const IID& iid, HRESULT& code)
{
    ComPtr<IServiceProvider> provider;
    code = subject.object()->QueryInterface(iidOf<IServiceProvider>(), provider.putVoid());
    if (FAILED(code)) {
        provider.detach();
        return nullptr;
    }
    ComPtr<IUnknown> object;
    code = provider->QueryService(iid, iid, object.putVoid());
    if (FAILED(code)) {
        if (object.detach() != nullptr) {
            throw Warning("QueryService fails and leaves something other than null", "takes its stand-in");
        }
        forgetErrors();
        return nullptr;
    }
    if (!object) {
        throw Warning("QueryService succeeds and gives null", "takes its stand-in");
    }
    return object;
}

void checkService(const Subject& subject, const IID& iid, const std::string& instead)
{
    HRESULT code = S_OK;
    const ComPtr<IUnknown> object = serviceOf(subject, iid, code);
    if (!object && !meansNoService(code)) {
        throw Breach("QueryService fails with " + Failure{code, {}}.text() +
                         " where E_NOINTERFACE says that there is none",
                     "ends what needs it, with a line in the log");
    }
    if (!object) {
        throw StandIn(instead);
    }
    ComPtr<IUnknown> same;
    if (FAILED(object->QueryInterface(iid, same.putVoid()))) {
        same.detach();
    }
    if (!same) {
        throw Breach("the object does not answer to the interface that it was asked by",
                     "calls it by that interface all the same");
    }
}

void checkEvent(Subject& subject)
{
    HRESULT code = S_OK;
    const ComPtr<IUnknown> given = serviceOf(subject, iidOf<__SmsCreator>(), code);
    const auto sink = given.as<IDispatch>();
    if (!sink) {
        throw Skipped("not tried: the connection object gives no sink by QueryService; the component "
                      "is advised of one later");
    }
    const auto grid = makeCom<StandInGrid>();
    const auto captions = makeCom<StandInCaptions>(std::vector<std::u16string>{u"Codice", u"Descrizione"});
    IDispatch* gridArgument = grid.get();
    IDispatch* captionsArgument = captions.get();
    std::array<Bstr, 9> texts;
    texts[0] = Bstr(u"SELECT 1 AS Id, 'uno' AS Descrizione UNION ALL SELECT 2, 'due'");
    for (std::size_t i = 1; i < texts.size(); ++i) {
        texts[i] = Bstr(i == 1 || i == 4 ? u"1,1" : u"0,0");
    }
    // In reverse order, as arguments of a late-bound call stand.
    std::vector<Variant> arguments;
    arguments.push_back(Variant::ref(&captionsArgument));
    for (auto text = texts.rbegin(); text != texts.rend(); ++text) {
        arguments.push_back(Variant::ref(text->inOut()));
    }
    arguments.push_back(Variant::ref(&gridArgument));
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    EXCEPINFO exception{};
    UINT wrong = 0;
    const HRESULT result = sink->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                        nullptr, &exception, &wrong);
    const std::string consequence = "shows an empty pick list";
    if (FAILED(result)) {
        const ErrorDetails details = takeErrorDetails(result, exception);
        throw Breach("CaricaGriglia fails: " + Failure{details.code, details.description}.text(),
                     consequence);
    }
    if (grid->columns().size() != 2 || grid->records().size() != 2) {
        throw Breach("CaricaGriglia leaves a grid of " + std::to_string(grid->columns().size()) +
                         " columns and " + std::to_string(grid->records().size()) +
                         " rows instead of 2 and 2",
                     consequence);
    }
    Variant cell(grid->records()[1][1]);
    if (FAILED(cell.changeType(VT_BSTR)) || cell.text() != u"due") {
        throw Breach("the last cell of the grid holds " + shown(grid->records()[1][1]) +
                         " instead of \"due\"",
                     "shows what the grid holds");
    }
    if (!grid->isShown()) {
        throw Breach("Populate was not called behind the last row", consequence);
    }
}

template <typename Service>
Check serviceCheck(const char* name, const char* instead)
{
    return {std::string("services: ") + name, interfacesCheck,
            [instead](Subject& subject) { checkService(subject, iidOf<Service>(), instead); }};
}

} // namespace

void addServiceChecks(std::vector<Check>& checks)
{
    checks.push_back(serviceCheck<IIdGenerator>(
        "IIdGenerator", "the largest key and 1, read under an update lock in the transaction of the insert"));
    checks.push_back(serviceCheck<ICustomer>("ICustomer", "the columns of tabClienti"));
    checks.push_back(serviceCheck<IMessageRecord>("IMessageRecord", "a row of TMK_MailingList"));
    checks.push_back(serviceCheck<ITextParser>("ITextParser", "the text unchanged"));
    checks.push_back(serviceCheck<IAppConnector>(
        "IAppConnector", "every push notification fails with \"Connettore app non disponibile.\""));
    checks.push_back(serviceCheck<ICustomerFilterSql>(
        "ICustomerFilterSql", "none: a search by a sales-figure criterion fails, and the log says so"));
    checks.push_back(serviceCheck<IAdvancedSearch>("IAdvancedSearch", "an empty filter, as after a cancel"));
    checks.push_back(serviceCheck<IChangeTracker>("IChangeTracker", "nothing is told of added rows"));
    checks.push_back(serviceCheck<IEmailCheck>(
        "IEmailCheck", "one \"@\" between a name and a domain with a dot is a good address"));
    checks.push_back(serviceCheck<IProgramStarter>("IProgramStarter", "the system starts the program"));
    checks.push_back({"the event CaricaGriglia", interfacesCheck, checkEvent});
}

} // namespace zul::host::check
