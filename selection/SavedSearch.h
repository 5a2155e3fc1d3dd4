// A search that an operator keeps under a name: the criteria as they stand, as one text.
#pragma once

#include <QMap>
#include <QString>

namespace zul {

/// What stands in the criteria pages, by the names of the controls: "1" for a box or choice that is ticked, what was
/// typed for a number or a date, "ID|TEXT" for a selector. A field at its default is not in it.
using CriteriaTexts = QMap<QString, QString>;

struct SavedSearch
{
    QString name;
    CriteriaTexts fields;
};

/// The advanced filter, a sub-select of customer ids, is kept under this name beside the controls'.
inline constexpr const char* AdvancedFilterField = "parametriRicercaAvanzata";

QString searchText(const SavedSearch& search);

struct ReadSearch
{
    SavedSearch search;
    QString error; ///< for the operator; empty when the search could be read
};

/// Reads a kept text. One that is damaged, or that a later version wrote, gives an error and no fields.
ReadSearch readSearch(const QString& text);

/// Which fields of a search do not fit any more, for the operator; empty when all do.
/// @param offered every field there is, and the caption under which it is not offered now; an empty caption: it is
QString misfits(const SavedSearch& search, const QMap<QString, QString>& offered);

} // namespace zul
