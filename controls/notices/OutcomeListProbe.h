// What a program that drives the window asks of an outcome list.
#pragma once

#include "controls/notices/OutcomeList.h"

namespace zul {

/// All lines of the list, those included that it will show with its next batch, for programs that know it through
/// Qt's meta-object system alone: they get this object from the list's property "probe" and call its members by
/// name. The list makes it when the property is first read and owns it.
class OutcomeListProbe : public QObject
{
    Q_OBJECT

public:
    explicit OutcomeListProbe(OutcomeList* list)
        : QObject(list)
        , m_list(list)
    {}

    Q_INVOKABLE int lineCount() const { return m_list->count(); }
    /// Empty for an index out of range; the first line is 0.
    Q_INVOKABLE QString lineText(int index) const { return m_list->line(index); }

private:
    OutcomeList* m_list;
};

} // namespace zul
