#include "controls/gridtools/OutcomeTools.h"

#include "controls/gridtools/CsvExport.h"
#include "controls/gridtools/WrapLayout.h"
#include "controls/look/Icons.h"
#include "controls/notices/OutcomeList.h"
#include "grid/CsvFile.h"

#include <QCheckBox>
#include <QToolButton>

#include <numeric>

namespace zul {

using namespace Qt::StringLiterals;

OutcomeTools::OutcomeTools(QWidget* parent)
    : QWidget(parent)
    , m_totals(new FactsLabel(this))
    , m_onlyFailures(new QCheckBox(u"Solo errori"_s, this))
    , m_copy(new QToolButton(this))
    , m_save(new QToolButton(this))
{
    m_totals->setObjectName(u"lblTotali"_s);
    m_totals->setAccessibleDescription(u"Totali dell'esito"_s);
    m_onlyFailures->setObjectName(u"chkSoloErrori"_s);
    m_copy->setObjectName(u"cmdCopiaEsito"_s);
    m_copy->setText(u"Copia"_s);
    m_copy->setToolTip(u"Copia le righe evidenziate, o tutte quelle mostrate"_s);
    m_save->setObjectName(u"cmdSalvaEsito"_s);
    m_save->setText(u"Salva…"_s);
    m_save->setIcon(icon(IconId::Save));
    m_save->setToolTip(u"Salva le righe mostrate in un file CSV"_s);
    for (QToolButton* button : {m_copy, m_save}) {
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setFocusPolicy(Qt::TabFocus);
    }
    auto* row = new WrapLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    for (QWidget* part : std::initializer_list<QWidget*>{m_totals, m_onlyFailures, m_copy, m_save}) {
        row->addWidget(part);
    }
}

void OutcomeTools::setList(OutcomeList* list)
{
    m_list = list;
    const QAbstractItemModel* lines = list->model();
    connect(lines, &QAbstractItemModel::rowsInserted, this, &OutcomeTools::refresh);
    connect(lines, &QAbstractItemModel::modelReset, this, &OutcomeTools::refresh);
    connect(list, &OutcomeList::linesCame, this, &OutcomeTools::refresh);
    connect(m_onlyFailures, &QCheckBox::toggled, list, &OutcomeList::setOnlyFailures);
    connect(m_copy, &QToolButton::clicked, list, &OutcomeList::copyLines);
    connect(m_save, &QToolButton::clicked, this, &OutcomeTools::saveLines);
    refresh();
}

void OutcomeTools::refresh()
{
    m_totals->tell(m_list->totals());
    m_copy->setEnabled(m_list->count() > 0);
    m_save->setEnabled(m_list->count() > 0);
}

void OutcomeTools::saveLines()
{
    const QString path = askCsvFile(window(), u"esito.csv"_s);
    if (path.isEmpty()) {
        return;
    }
    ColumnStore store;
    const int tag = store.addColumn();
    const int text = store.addColumn();
    const QStringList lines = m_list->shownLines();
    for (const QString& line : lines) {
        QString kind = line.left(outcomeTagLength);
        kind.chop(kind.endsWith(u"- ") ? 2 : 0);
        store.appendText16(tag, reinterpret_cast<const char16_t*>(kind.trimmed().utf16()),
                           static_cast<size_t>(kind.trimmed().size()));
        const QString rest = line.mid(outcomeTagLength);
        store.appendText16(text, reinterpret_cast<const char16_t*>(rest.utf16()),
                           static_cast<size_t>(rest.size()));
        store.endRow();
    }
    std::vector<uint32_t> records(store.rowCount());
    std::iota(records.begin(), records.end(), 0U);
    exportCsv(window(), path, {store, {{tag, u"Esito"_s}, {text, u"Descrizione"_s}}, records});
}

} // namespace zul
