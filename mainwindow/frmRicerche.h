// The window of the saved searches: an operator's own list, what stands in the criteria under a name, and back.
#pragma once

#include "selection/SavedSearch.h"
#include "selection/SearchStore.h"

#include <QDialog>
#include <optional>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QLineEdit)
QT_FORWARD_DECLARE_CLASS(QListWidget)
QT_FORWARD_DECLARE_CLASS(QPushButton)

namespace zul {

class frmRicerche : public QDialog
{
    Q_OBJECT

public:
    /// @param current what stands in the criteria now, for "Salva"
    /// @param offered see misfits
    frmRicerche(SearchStore& store, CriteriaTexts current, QMap<QString, QString> offered, QWidget* parent);

    /// The search that was chosen, which fits; nothing when the window was closed without a choice.
    const std::optional<SavedSearch>& chosen() const { return m_chosen; }

private:
    void build();
    void load(const QString& select);
    int selected() const;
    void showSelected();
    int found(const QString& name) const;
    void cmdCarica_Click();
    void cmdSalva_Click();
    void cmdElimina_Click();

    SearchStore& m_store;
    CriteriaTexts m_current;
    QMap<QString, QString> m_offered;
    std::vector<SearchStore::Entry> m_entries;
    std::vector<ReadSearch> m_searches; ///< one for each entry
    std::optional<SavedSearch> m_chosen;
    QListWidget* m_list;
    QLineEdit* m_name;
    QPushButton* m_load;
    QPushButton* m_save;
    QPushButton* m_remove;
};

} // namespace zul
