#include "host/player/GridProbe.h"

#include "host/player/CommandError.h"
#include "host/player/ControlFinder.h"
#include "host/player/ScenarioParser.h"

#include <QMetaObject>
#include <QWidget>

namespace zul::host {

using namespace Qt::StringLiterals;

template <typename Result, typename... Arguments>
Result GridProbe::ask(const char* member, Arguments... arguments) const
{
    // Types by their run-time names: the usual macros would pass on the names of the template's parameters.
    Result result{};
    const bool answered = QMetaObject::invokeMethod(
        m_probe, member, Qt::DirectConnection,
        QReturnArgument<Result>(QMetaType::fromType<Result>().name(), result),
        QArgument<Arguments>(QMetaType::fromType<Arguments>().name(), arguments)...);
    if (!answered) {
        throw CommandError{u"\"%1\" does not answer %2"_s.arg(m_grid->objectName(), QLatin1String(member))};
    }
    return result;
}

GridProbe::GridProbe(QWidget* control)
    : m_grid(control)
    , m_probe(probeOf(control, "rowCells(int)"))
{
    if (m_probe == nullptr) {
        throw CommandError{u"\"%1\" is no grid"_s.arg(control->objectName())};
    }
}

int GridProbe::rowCount() const
{
    return ask<int>("visibleRowCount");
}

int GridProbe::columnCount() const
{
    return ask<int>("columnCount");
}

void GridProbe::checkRow(int row) const
{
    if (row < 0 || row >= rowCount()) {
        throw CommandError{u"\"%1\" has no row %2"_s.arg(m_grid->objectName(), QString::number(row))};
    }
}

void GridProbe::checkColumn(int column) const
{
    if (column < 0 || column >= columnCount()) {
        throw CommandError{u"\"%1\" has no column %2"_s.arg(m_grid->objectName(), QString::number(column))};
    }
    if (visiblePosition(column) < 0) {
        throw CommandError{
            u"column %1 of \"%2\" is hidden"_s.arg(QString::number(column), m_grid->objectName())};
    }
}

QRect GridProbe::rowRect(int row) const
{
    checkRow(row);
    return ask<QRect>("rowRect", row);
}

QRect GridProbe::checkRect(int row) const
{
    const QRect rect = checkRectOrNothing(row);
    if (rect.isEmpty()) {
        throw CommandError{
            u"row %1 of \"%2\" has no check box"_s.arg(QString::number(row), m_grid->objectName())};
    }
    return rect;
}

QRect GridProbe::checkRectOrNothing(int row) const
{
    checkRow(row);
    return ask<QRect>("checkRect", row);
}

QRect GridProbe::headerRect(int column) const
{
    checkColumn(column);
    const QRect rect = ask<QRect>("headerRect", column);
    if (rect.isEmpty()) {
        throw CommandError{
            u"column %1 of \"%2\" has no header"_s.arg(QString::number(column), m_grid->objectName())};
    }
    return rect;
}

int GridProbe::visiblePosition(int column) const
{
    return ask<int>("visiblePosition", column);
}

int GridProbe::columnAt(int visiblePosition) const
{
    for (int column = 0; column < columnCount(); ++column) {
        if (this->visiblePosition(column) == visiblePosition) {
            return column;
        }
    }
    return -1;
}

QWidget* GridProbe::body() const
{
    return ask<QWidget*>("bodyViewport");
}

QWidget* GridProbe::header() const
{
    return ask<QWidget*>("headerViewport");
}

QWidget* GridProbe::groupBox() const
{
    QWidget* box = ask<QWidget*>("groupBoxWidget");
    if (box == nullptr || !box->isVisible()) {
        throw CommandError{u"\"%1\" shows no group box"_s.arg(m_grid->objectName())};
    }
    return box;
}

void GridProbe::ungroupAll() const
{
    if (!QMetaObject::invokeMethod(m_probe, "ungroupAll", Qt::DirectConnection)) {
        throw CommandError{u"\"%1\" cannot be ungrouped"_s.arg(m_grid->objectName())};
    }
}

QString GridProbe::rowLine(int row) const
{
    if (ask<bool>("rowIsGroup", row)) {
        return u"group %1 %2"_s.arg(quoted(ask<QString>("groupCaption", row)),
                                    QString::number(ask<int>("groupCount", row)));
    }
    const auto texts = ask<QStringList>("rowTexts", row);
    const auto cells = ask<QVariantList>("rowCells", row);
    const int check = ask<int>("checkColumn");
    QString line = u"row %1"_s.arg(row);
    for (int column = 0; column < texts.size(); ++column) {
        line += u' ';
        if (column == check) {
            line += ask<int>("rowCheck", row) == 1 ? u"[x]"_s : u"[ ]"_s;
        } else if (column < cells.size() && !cells[column].isValid()) {
            line += u"NULL"_s;
        } else {
            line += quoted(texts[column]);
        }
    }
    return line;
}
} // namespace zul::host
