// What a criterion's fields are told by themselves, before a search judges them.
#pragma once

#include <QLocale>
#include <QString>

namespace zul {

/// What a field of a criterion is to hold.
enum class FieldKind
{
    Number,
    Date,
    Other ///< a choice: there is nothing to judge
};

/// Why a search could not use what stands in a field; empty when it can, and for an empty field, which leaves its end
/// of the range open.
QString unusableNote(FieldKind kind, const QString& text, const QLocale& locale);

/// Says of a field that holds something that it does not count.
/// @param criterion the caption of the check box that is not ticked
QString ignoredNote(const QString& criterion);

/// What the mark of a criteria page says; empty for a page without ticked criteria.
QString tickedNote(int criteria);

} // namespace zul
