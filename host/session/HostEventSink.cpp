#include "host/session/HostEventSink.h"

#include "automation/ErrorInfo.h"
#include "host/player/EventPrinter.h"
#include "host/player/ScenarioParser.h"
#include "host/session/AutomationText.h"

#include <utility>

namespace zul::host {
namespace {
QString textAt(const BSTR* place)
{
    return place == nullptr ? QString() : toQString(textOf(*place));
}
} // namespace

HostEventSink::HostEventSink(EventPrinter& printer, OpenRows openRows)
    : m_printer(printer)
    , m_openRows(std::move(openRows))
{}

HRESULT STDMETHODCALLTYPE HostEventSink::CaricaGriglia(IDispatch** grid, BSTR* sql, BSTR* visibility,
                                                       BSTR* icon, BSTR* mask, BSTR* sizable, BSTR* button,
                                                       BSTR* format, BSTR* formatQta, BSTR* formatColore,
                                                       _Collection** captions)
{
    return comGuard(u"zulhost", [&] {
        const QStringList texts = captionTexts(captions == nullptr ? nullptr : *captions);
        QString line = QStringLiteral("event CaricaGriglia");
        const std::pair<const char*, const BSTR*> parts[] = {
            {"sql", sql},       {"visibility", visibility}, {"icon", icon},
            {"mask", mask},     {"sizable", sizable},       {"button", button},
            {"format", format}, {"formatqta", formatQta},   {"formatcolore", formatColore},
        };
        for (const auto& [name, text] : parts) {
            line += QLatin1Char(' ') + QLatin1String(name) + QLatin1Char('=') + quoted(textAt(text));
        }
        m_printer.line(line + QStringLiteral(" captions=") + quotedList(texts));

        const ComPtr<IReportGrid> target = queryFor<IReportGrid>(grid == nullptr ? nullptr : *grid);
        if (!target) {
            throw ComError(E_INVALIDARG, u"CaricaGriglia was given no grid that can be filled");
        }
        // The query first: the grid keeps what it showed when it cannot be opened.
        const ComPtr<IRecordset> rows = m_openRows(textAt(sql));
        fillGrid(*target, *rows, {textAt(visibility), textAt(sizable), texts});
        throwIfFailed(rows->Close());
    });
}

const DispTable<HostEventSink>& HostEventSink::dispTable() const
{
    static const DispTable<HostEventSink> table{dispatch::method(
        "CaricaGriglia", 1, &HostEventSink::CaricaGriglia,
        {"grid", "SqlString", "strVisibility", "strIconIndex", "strEditMask", "strSizable", "strButtonType",
         "strPreFormat", "strPreFormatQta", "strPreFormatColore", "CaptionCollection"})};
    return table;
}
} // namespace zul::host
