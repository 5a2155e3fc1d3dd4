// The generic lookup dialog: shows the rows of a table that the host fills in, and keeps the chosen one.
#pragma once

#include "session/ComponentObject.h"

#include <QDialog>
#include <memory>

QT_BEGIN_NAMESPACE
namespace Ui {
class frmRicercaGenerica;
}
QT_END_NAMESPACE

namespace zul {

/// The caller sets the table with Init, shows the dialog modally and reads tag and chosen row afterwards:
/// tag "OK" after the OK button, "ESC" after the cancel button, empty after the close button.
class frmRicercaGenerica : public QDialog
{
    Q_OBJECT

public:
    /// @param filler the object that has the host fill the grid; not owned
    explicit frmRicercaGenerica(ComponentObject* filler, QWidget* parent = nullptr);
    ~frmRicercaGenerica() override;

    /// Takes the table name and loads its mode. A table that the dialog does not know leaves it empty and is
    /// logged.
    void Init(const QString& table);
    /// An extra filter, kept as " WHERE " and the text where that word is missing.
    void initFiltroRicercaCausali(const QString& filter);
    QString filtroRicercaCausali() const { return m_extraFilter; }
    /// A text that filters the rows as soon as the dialog shows; blanks only count as none.
    void FiltroRicercaVeloce(const QString& text);

    /// The chosen row; empty texts before a choice.
    QString GetIdAsString() const { return m_id; }
    /// The chosen id as a number; 0 before a choice. @throws Error 13 when it is no number, 6 when it does not fit
    qint32 GetId() const;
    QString GetDescrizione() const { return m_description; }
    QString GetCodice() const { return m_code; }

    /// Shows only the rows that hold the text of the quick-search box. No query runs again.
    void RicercaVeloce();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Form_Load();
    void Form_Activate();
    void caricaModalita(const QString& table);
    void cmdOK_Click();
    void cmdAnnulla_Click();
    /// How many rows are shown.
    void showStatus();
    void selectFirstHit();
    void goToRows();

    std::unique_ptr<Ui::frmRicercaGenerica> m_ui;
    ComponentObject* m_filler;
    QString m_extraFilter;
    QString m_presetFilter;
    bool m_rowClicked = false; ///< the mouse was released on a row since the last double-click
    QString m_id;
    QString m_description;
    QString m_code;
};

} // namespace zul
