#include "host/session/GridFillRoutine.h"

#include "automation/ErrorInfo.h"
#include "host/session/AutomationText.h"

namespace zul::host {
namespace {
bool isOn(const QStringList& list, LONG column)
{
    return column >= list.size() || list[column].trimmed() != QLatin1String("0");
}

VARIANT_BOOL asBoolean(bool value)
{
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}
} // namespace

void fillGrid(IReportGrid& grid, IRecordset& rows, const GridColumns& columns)
{
    const QStringList visibility = columns.visibility.split(QLatin1Char(','));
    const QStringList sizable = columns.sizable.split(QLatin1Char(','));
    throwIfFailed(grid.DeleteRecords());
    throwIfFailed(grid.DeleteColumns());
    LONG fields = 0;
    throwIfFailed(rows.get_FieldCount(&fields));
    for (LONG i = 0; i < fields; ++i) {
        Bstr field;
        throwIfFailed(rows.FieldName(i, field.put()));
        const Bstr caption = i < columns.captions.size() ? toBstr(columns.captions[i]) : Bstr(field.view());
        throwIfFailed(grid.AddColumn(field.get(), caption.get(), 0, asBoolean(isOn(sizable, i)),
                                     asBoolean(isOn(visibility, i))));
    }
    try {
        throwIfFailed(grid.FillFromRecordset(&rows));
    } catch (...) {
        // The rows that came before the others broke off are no answer to the query.
        grid.DeleteRecords();
        grid.Populate();
        throw;
    }
    throwIfFailed(grid.Populate());
}

QStringList captionTexts(_Collection* captions)
{
    QStringList texts;
    if (captions == nullptr) {
        return texts;
    }
    LONG count = 0;
    throwIfFailed(captions->Count(&count));
    for (LONG i = 1; i <= count; ++i) {
        Variant index = Variant::fromLong(i);
        Variant item;
        throwIfFailed(captions->Item(&index, item.put()));
        throwIfFailed(item.changeType(VT_BSTR));
        texts.append(toQString(item.text()));
    }
    return texts;
}
} // namespace zul::host
