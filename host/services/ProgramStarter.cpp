#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/services/Services.h"

#include <QProcess>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.ProgramStarter";

QString toQString(std::u16string_view text)
{
    return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

class ProgramStarter final : public ComObject<Dispatching<IProgramStarter>>
{
public:
    explicit ProgramStarter(SessionPtr session)
        : m_session(std::move(session))
    {}

    HRESULT STDMETHODCALLTYPE Start(BSTR path, BSTR parameters) override
    {
        return hostGuard(sourceName, [&] {
            if (m_session->programStarted) {
                m_session->programStarted(utf8FromUtf16(textOf(path)), utf8FromUtf16(textOf(parameters)));
            }
            if (m_session->startsPrograms && !start(toQString(textOf(path)), toQString(textOf(parameters)))) {
                throw EngineError(ErrorCode::Unspecified,
                                  "the program cannot be started: " + utf8FromUtf16(textOf(path)));
            }
        });
    }

private:
    static bool start(const QString& path, const QString& parameters)
    {
        QProcess process;
        process.setProgram(path);
        // A program gets a list of arguments, and the parameter text is one of them: a connection string may hold
        // blanks and quotes, and the sender looks for its switch at the front.
        if (const QString argument = parameters.trimmed(); !argument.isEmpty()) {
            process.setArguments({argument});
        }
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        return process.startDetached();
    }

    const DispTable<IProgramStarter>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IProgramStarter> table{
            method("Start", 1, &IProgramStarter::Start, {"path", "parameters"}),
        };
        return table;
    }

    SessionPtr m_session;
};

} // namespace

ComPtr<IProgramStarter> makeProgramStarter(SessionPtr session)
{
    return makeCom<ProgramStarter>(std::move(session));
}

} // namespace zul::host
