// The main window: criteria, customers found, send type, preparation. It holds its controls and the handlers of
// the search; what else its controls do stands in files of their own beside it, and what a handler decides or
// builds in selection/ and messages/.
#pragma once

#include "hostlib/Host.h"
#include "selection/Criteria.h"
#include "session/ComponentObject.h"

#include <QDialog>
#include <QPointer>
#include <memory>

QT_BEGIN_NAMESPACE
namespace Ui {
class frmSMS;
}
QT_END_NAMESPACE

namespace zul {

class CriteriaFields;
class CriteriaMarks;
class FormScroll;
class GridCommands;
class GridMemory;
class LookupFields;
class Previews;
class SendPages;
class TemplateEditors;

class frmSMS : public QDialog
{
    Q_OBJECT

public:
    frmSMS();
    ~frmSMS() override;

    /// The object that showed the form: asked for the user id and for filling lookup grids; not owned.
    void setRefToClass(ComponentObject* object);

    /// Which message kinds the send page offers.
    void InitTipoMessaggio(bool showSendSms, bool showSendMail, bool showPushNotify);
    /// Whether the recurrence criteria are offered.
    void InitRicercaRicorrenze(bool show);
    /// Whether the classification criterion is offered.
    void InitRicercaClassificazioni(bool show);
    void setTouchMode(bool touch);

    /// Starts a search from outside, as a press of "Ricerca" does.
    void avviaRicerca();

    /// "OK" when at least one preparation of this showing ended well, else "ESC"; empty before the form was
    /// closed.
    QString choice() const;

    void done(int result) override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // Set-up.
    void Form_Load();
    void Form_Resize();
    void setupLook();
    void connectSearch();
    void connectKeys();
    void changePanel();
    void turnPage(int step);
    void addLookupFields();

    // Search.
    Criteria criteria() const;
    bool testFiltri(const Criteria& chosen);
    void cmdElabora_Click();
    void search(const Criteria& chosen);
    void CaricaGriglia();
    void GrdAllSelectedValue(bool value);
    void saveLayout(int kind);
    void cmd_Ricerca_Avanzata_Click();
    void cmdRicerche_Click();

    std::unique_ptr<Ui::frmSMS> m_ui;
    FormScroll* m_content; ///< in the resizer area; owned by it
    // Each works on the controls that its name says; all are children of the form.
    ComponentObject* m_SmsCreator = nullptr;
    CriteriaFields* m_criteria;
    CriteriaMarks* m_marks;
    LookupFields* m_lookups;
    GridCommands* m_gridCommands;
    GridMemory* m_memory;
    SendPages* m_sendPages;
    TemplateEditors* m_templateEditors;
    Previews* m_previews;
    std::unique_ptr<hostlib::AdvancedSearch> m_frmRicercaAvanzata; ///< created on first use
    QString m_parametriRicercaAvanzata;
    QPointer<QWidget> m_leftCriterion; ///< from which one went to the rows
};

} // namespace zul
