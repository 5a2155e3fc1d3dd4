#include "host/session/HostSession.h"

#include "host/player/CommandError.h"
#include "host/player/EventPrinter.h"
#include "host/session/AutomationText.h"
#include "host/session/HostDatabase.h"
#include "host/session/HostEventSink.h"

#include <QDir>
#include <Zul_MessageBuilder.h>
#include <optional>
#include <stdexcept>
#include <utility>

namespace zul::host {
namespace {
bool isMember(const QString& member, const char* name)
{
    return member.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}
} // namespace

HostSession::HostSession(EventPrinter& printer, const CommandLine& line, const HostDatabase& database)
    : m_database(database)
    , m_appDir(line.appDir.isEmpty() ? QDir::toNativeSeparators(componentFolder()) : line.appDir)
    , m_touch(line.touch)
    , m_creator(createSmsCreator(line.component.isEmpty() ? defaultLibraryFile() : line.component))
{
    database.requireTables();
    const ComPtr<HostEventSink> sink = makeCom<HostEventSink>(printer, [&database](const QString& sql) {
        return database.openRows(sql.toStdString(), CursorForwardOnly);
    });
    m_advised = std::make_unique<Advised>(m_creator.get(), DIID___SmsCreator, sink.get());
    require(QStringLiteral("idUtente"),
            putProperty(m_creator.get(), QStringLiteral("idUtente"), Variant::fromLong(line.user)));
    const auto introduce = [this](const QString& member, std::initializer_list<bool> flags) {
        std::vector<Variant> arguments;
        for (const bool flag : flags) {
            arguments.push_back(Variant::fromBool(flag));
        }
        require(member, callMember(m_creator.get(), member, std::move(arguments)));
    };
    introduce(QStringLiteral("InitWhatToShow"), {line.showSms, line.showMail, line.showPush});
    introduce(QStringLiteral("InitWhatToSearch"), {line.searchRicorrenze, line.searchClassificazioni});
}

HostSession::~HostSession() = default;

void HostSession::require(const QString& member, const CallOutcome& outcome) const
{
    if (FAILED(outcome.code)) {
        throw std::runtime_error(QStringLiteral("%1 failed: %2 %3")
                                     .arg(member, codeText(outcome.code), outcome.description)
                                     .toStdString());
    }
}

CallOutcome HostSession::invokeWithHostArguments(const QString& member, bool withFolder)
{
    // By reference, as the members declare them and compiled hosts pass them.
    IDispatch* connection = m_database.connection();
    Bstr folder = toBstr(m_appDir);
    VARIANT_BOOL touch = m_touch ? VARIANT_TRUE : VARIANT_FALSE;
    std::vector<Variant> arguments;
    arguments.push_back(Variant::ref(&connection));
    if (withFolder) {
        arguments.push_back(Variant::ref(folder.inOut()));
    }
    arguments.push_back(Variant::ref(&touch));
    return callMember(m_creator.get(), member, std::move(arguments));
}

CallOutcome HostSession::invoke(const QString& member, const std::vector<Word>& values)
{
    if (values.empty()) {
        if (isMember(member, "ShowForm") || isMember(member, "ShowOptions")) {
            return invokeWithHostArguments(member, true);
        }
        if (isMember(member, "ShowCheckErrorSMSSend")) {
            return invokeWithHostArguments(member, false);
        }
    }
    if (isMember(member, "idUtente") && values.size() == 1) {
        return putProperty(m_creator.get(), member, valueOf(values.front()));
    }
    std::vector<Variant> arguments;
    arguments.reserve(values.size());
    for (const Word& value : values) {
        arguments.push_back(valueOf(value));
    }
    return callMember(m_creator.get(), member, std::move(arguments));
}

QString HostSession::call(const QString& member, const std::vector<Word>& values)
{
    const CallOutcome outcome = invoke(member, values);
    if (FAILED(outcome.code)) {
        return QStringLiteral("failed %1 %2").arg(member, codeText(outcome.code));
    }
    return QStringLiteral("return %1 %2").arg(member, resultText(outcome.value));
}

QStringList HostSession::sql(const QString& statement)
{
    try {
        QStringList lines;
        for (const auto& row : m_database.run(statement.toStdString()).rows) {
            QString line = QStringLiteral("sql");
            for (const std::optional<std::string>& cell : row) {
                line += QLatin1Char(' ') +
                        (cell ? quoted(QString::fromStdString(*cell)) : QStringLiteral("NULL"));
            }
            lines.append(line);
        }
        return lines;
    } catch (const std::exception& error) {
        throw CommandError{QString::fromStdString(error.what())};
    }
}

void HostSession::show(StartWindow window)
{
    switch (window) {
    case StartWindow::Main:
        require(QStringLiteral("ShowForm"), invokeWithHostArguments(QStringLiteral("ShowForm"), true));
        require(QStringLiteral("DiscardForm"),
                callMember(m_creator.get(), QStringLiteral("DiscardForm"), {}));
        break;
    case StartWindow::Options:
        require(QStringLiteral("ShowOptions"), invokeWithHostArguments(QStringLiteral("ShowOptions"), true));
        require(QStringLiteral("DiscardOptionsForm"),
                callMember(m_creator.get(), QStringLiteral("DiscardOptionsForm"), {}));
        break;
    case StartWindow::Check:
        require(QStringLiteral("ShowCheckErrorSMSSend"),
                invokeWithHostArguments(QStringLiteral("ShowCheckErrorSMSSend"), false));
        break;
    }
}
} // namespace zul::host
