// What the forms ask of the public object that showed them.
#pragma once

#include <QString>
#include <QStringList>

namespace zul {

class ReportGrid;

/// The layout texts that go with a query when the host fills a grid. Their grammar is the host's business.
struct GridRequest
{
    QString sql;
    QString visibility;
    QString iconIndex;
    QString editMask;
    QString sizable;
    QString buttonType;
    QString preFormat;
    QString preFormatQta;
    QString preFormatColore;
    QStringList captions;
};

class ComponentObject
{
public:
    virtual ~ComponentObject() = default;

    /// The operator's user id.
    virtual qint32 idUtente() const = 0;
    /// Has the host fill a grid: raises CaricaGriglia and returns when the host has done so.
    virtual void EventoGrd_CaricaGrd(ReportGrid& grid, const GridRequest& request) = 0;
};

} // namespace zul
