#include "controls/report/GridClipboard.h"

#include "controls/report/GridHighlights.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportHeader.h"

#include <QApplication>
#include <QClipboard>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

void appendCell(QString& line, QString text)
{
    for (QChar& c : text) {
        if (c == u'\t' || c == u'\n' || c == u'\r') {
            c = u' ';
        }
    }
    line += text;
}

} // namespace

QString highlightedText(const ReportGridView& view, CopyHeaders headers)
{
    const ReportGridModel& grid = view.grid();
    const std::vector<uint32_t> records = highlightedRecords(view);
    if (records.empty()) {
        return {};
    }
    const std::vector<int> columns = view.header()->shownColumns();
    QString text;
    bool first = true;
    const auto append = [&](auto cellOf) {
        text += first ? QString() : u"\n"_s;
        first = false;
        for (size_t i = 0; i < columns.size(); ++i) {
            if (i > 0) {
                text += u'\t';
            }
            appendCell(text, cellOf(columns[i]));
        }
    };
    if (headers == CopyHeaders::Yes) {
        append([&grid](int column) { return grid.columns()[static_cast<size_t>(column)].caption; });
    }
    for (const uint32_t record : records) {
        append([&grid, record](int column) { return grid.shownText(record, column); });
    }
    return text;
}

void copyHighlighted(const ReportGridView& view, CopyHeaders headers)
{
    const QString text = highlightedText(view, headers);
    if (!text.isEmpty()) {
        QApplication::clipboard()->setText(text);
    }
}

} // namespace zul
