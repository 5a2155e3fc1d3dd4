#include "mainwindow/frmRicerche.h"

#include "base/OperatorText.h"
#include "controls/fields/ButtonKeys.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "session/FormHelpers.h"
#include "session/WindowMemory.h"
#include "session/frmTasti.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <utility>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* SearchesFormName = "frmRicerche";

Procedure searchesProcedure(const QString& name)
{
    return formProcedure(QLatin1String(SearchesFormName), name);
}

QPushButton* searchCommand(const QString& name, const QString& caption, const QIcon& picture)
{
    auto* made = new QPushButton(picture, caption);
    made->setObjectName(name);
    made->setAutoDefault(false);
    return made;
}

} // namespace

frmRicerche::frmRicerche(SearchStore& store, CriteriaTexts current, QMap<QString, QString> offered,
                         QWidget* parent)
    : QDialog(parent)
    , m_store(store)
    , m_current(std::move(current))
    , m_offered(std::move(offered))
    , m_list(new QListWidget)
    , m_name(new QLineEdit)
    , m_load(searchCommand(u"cmdCarica"_s, u"Ca&rica"_s, icon(IconId::Confirm, IconTone::OnAccent)))
    , m_save(searchCommand(u"cmdSalva"_s, u"&Salva"_s, icon(IconId::Save)))
    , m_remove(searchCommand(u"cmdElimina"_s, u"&Elimina"_s, icon(IconId::Clear)))
{
    setObjectName(QLatin1String(SearchesFormName));
    setWindowTitle(u"Ricerche salvate"_s);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    build();
    connect(m_list, &QListWidget::currentRowChanged, this, &frmRicerche::showSelected);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &frmRicerche::cmdCarica_Click);
    connect(m_load, &QPushButton::clicked, this, &frmRicerche::cmdCarica_Click);
    connect(m_save, &QPushButton::clicked, this, &frmRicerche::cmdSalva_Click);
    connect(m_remove, &QPushButton::clicked, this, &frmRicerche::cmdElimina_Click);
    load(QString());
    // Without any, a name is all that can be given yet.
    QWidget* first = m_list->count() == 0 ? static_cast<QWidget*>(m_name) : m_list;
    first->setFocus();
}

void frmRicerche::build()
{
    m_list->setObjectName(u"lstRicerche"_s);
    m_list->setAccessibleName(u"Ricerche salvate"_s);
    m_name->setObjectName(u"txtNome"_s);
    m_name->setPlaceholderText(u"Il nome sotto cui salvare questi criteri"_s);
    m_load->setProperty("primary", true);
    auto* nameLabel = new QLabel(u"&Nome:"_s);
    nameLabel->setBuddy(m_name);
    auto* close = searchCommand(u"cmdChiudi"_s, u"&Chiudi"_s, icon(IconId::Close));
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    auto* nameRow = new QHBoxLayout;
    nameRow->setSpacing(look::grid);
    nameRow->addWidget(nameLabel);
    nameRow->addWidget(m_name, 1);
    nameRow->addWidget(m_save);
    auto* commands = new QHBoxLayout;
    commands->setSpacing(look::grid);
    commands->addWidget(m_remove);
    commands->addStretch(1);
    commands->addWidget(close);
    commands->addWidget(m_load);
    constexpr int Margin = 12;
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(Margin, Margin, Margin, Margin);
    all->setSpacing(look::grid);
    all->addWidget(m_list, 1);
    all->addLayout(nameRow);
    all->addLayout(commands);
    setUpForm(this);
    new ButtonKeys(this);
    frmTasti::openByF1(this);
    applyCommonLook(this, parentWidget() != nullptr && parentWidget()->window()->property("touch").toBool());
    constexpr int Width = 420;
    constexpr int Height = 360;
    resize(qRound(systemSized(Width)), qRound(systemSized(Height)));
    new WindowMemory(this, WindowMemory::Keeps::Size);
}

void frmRicerche::load(const QString& select)
{
    m_entries = m_store.load();
    m_searches.clear();
    m_list->clear();
    for (const SearchStore::Entry& entry : m_entries) {
        m_searches.push_back(readSearch(entry.text));
        const ReadSearch& read = m_searches.back();
        m_list->addItem(read.error.isEmpty() ? read.search.name : u"(non leggibile)"_s);
    }
    m_list->setCurrentRow(found(select));
    showSelected();
}

int frmRicerche::selected() const
{
    return m_list->currentRow();
}

int frmRicerche::found(const QString& name) const
{
    for (std::size_t i = 0; i < m_searches.size(); ++i) {
        if (m_searches[i].error.isEmpty() &&
            m_searches[i].search.name.compare(name, Qt::CaseInsensitive) == 0) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void frmRicerche::showSelected()
{
    const int row = selected();
    m_load->setEnabled(row >= 0);
    m_remove->setEnabled(row >= 0);
    if (row >= 0) {
        m_name->setText(m_searches[static_cast<std::size_t>(row)].search.name);
    }
}

void frmRicerche::cmdCarica_Click()
{
    trapped(searchesProcedure(u"cmdCarica_Click"_s), [&] {
        if (selected() < 0) {
            return;
        }
        const ReadSearch& read = m_searches[static_cast<std::size_t>(selected())];
        const QString wrong = read.error.isEmpty() ? misfits(read.search, m_offered) : read.error;
        if (!wrong.isEmpty()) {
            tellOperator(this, wrong, MessageIcon::Exclamation);
            return;
        }
        m_chosen = read.search;
        accept();
    });
}

void frmRicerche::cmdSalva_Click()
{
    trapped(searchesProcedure(u"cmdSalva_Click"_s), [&] {
        const QString name = trimBlanks(m_name->text());
        if (name.isEmpty()) {
            tellOperator(this, u"Scrivere il nome della ricerca."_s);
            m_name->setFocus();
            return;
        }
        const int known = found(name);
        if (known >= 0 && !askOperator(this, u"Si desidera sostituire la ricerca «%1»?"_s.arg(name))) {
            return;
        }
        const QString key = known >= 0 ? m_entries[static_cast<std::size_t>(known)].key : m_store.newKey();
        if (!m_store.save({key, searchText({name, m_current})})) {
            tellOperator(this, u"La ricerca non è stata salvata: il motivo è nel file di log."_s,
                         MessageIcon::Exclamation);
            return;
        }
        load(name);
    });
}

void frmRicerche::cmdElimina_Click()
{
    trapped(searchesProcedure(u"cmdElimina_Click"_s), [&] {
        const int row = selected();
        if (row < 0 ||
            !askOperator(this, u"Si desidera eliminare la ricerca «%1»?"_s.arg(m_list->item(row)->text()))) {
            return;
        }
        if (!m_store.remove(m_entries[static_cast<std::size_t>(row)].key)) {
            tellOperator(this, u"La ricerca non è stata eliminata: il motivo è nel file di log."_s,
                         MessageIcon::Exclamation);
            return;
        }
        m_name->clear();
        load(QString());
    });
}

} // namespace zul
