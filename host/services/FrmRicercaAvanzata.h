#pragma once
// The advanced search's window: rows of field, comparison and value, joined by "and" or "or".
#include "host/services/SearchRules.h"

#include <QDialog>

QT_FORWARD_DECLARE_CLASS(QComboBox)
QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QLineEdit)
QT_FORWARD_DECLARE_CLASS(QRadioButton)
QT_FORWARD_DECLARE_CLASS(QToolButton)
QT_FORWARD_DECLARE_CLASS(QVBoxLayout)

namespace zul::host {

/// Modal; its rows stay from one showing to the next. The controls of row N are cbbCampo(N), cbbConfronto(N),
/// txtValore(N) and cmdTogli(N), N from 0.
class FrmRicercaAvanzata final : public QDialog
{
    Q_OBJECT

public:
    explicit FrmRicercaAvanzata(QWidget* parent = nullptr);

    /// The sub-select of the last showing that was confirmed.
    QString sql() const { return m_sql; }

    void accept() override;

private:
    struct Row
    {
        QWidget* line = nullptr;
        QComboBox* field = nullptr;
        QComboBox* comparison = nullptr;
        QLineEdit* value = nullptr;
        QToolButton* remove = nullptr;
    };

    void addRow();
    void removeRow(QWidget* line);
    void nameRows();
    void offerComparisons(const Row& row);
    void adaptValue(const Row& row);
    SearchRow searchRow(const Row& row) const;

    std::vector<Row> m_rows;
    QVBoxLayout* m_lines = nullptr;
    QRadioButton* m_all = nullptr;
    QRadioButton* m_any = nullptr;
    QLabel* m_error = nullptr;
    QString m_sql;
};

} // namespace zul::host
