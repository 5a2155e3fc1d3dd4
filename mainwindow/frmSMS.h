// The main window: criteria, customers found, send type, preparation. It holds its controls and one handler
// per control event; what a handler decides or builds stands beside it, in selection/ and messages/.
#pragma once

#include "hostlib/Host.h"
#include "messages/Recipients.h"
#include "messages/SendChoices.h"
#include "selection/Criteria.h"
#include "session/ComponentObject.h"

#include <QDialog>
#include <memory>

namespace Ui {
class frmSMS;
}

namespace zul {

class DateField;
class SelectorField;

class frmSMS : public QDialog
{
    Q_OBJECT

public:
    frmSMS();
    ~frmSMS() override;

    /// The object that showed the form: asked for the user id and for filling lookup grids.
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
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // Set-up.
    void Form_Load();
    void Form_Resize();
    void arrangeGridCommands();
    void setupLook();
    void connectCriteria();
    void connectSending();
    void connectLookup(SelectorField* field, const QString& control, const QString& table, bool takesId,
                       bool exactOk);
    void LoadPeriodoAcq_Auto();

    // Search.
    Criteria criteria() const;
    bool testFiltri(const Criteria& chosen);
    void cmdElabora_Click();
    void CaricaGriglia();
    void GrdAllSelectedValue(bool value);
    void saveLayout(int kind);
    void cmd_Ricerca_Avanzata_Click();

    // Lookup fields.
    void requestSelection(SelectorField* field, const QString& table, bool takesId, bool exactOk);
    void clearSelection(SelectorField* field, bool takesId);

    // Sending.
    SendChoices choices() const;
    bool somebodyIsMarked() const;
    void cmdProsegui2_Click();
    void PreparaInvioMessaggi();
    /// False when a run broke off, or failed and is in the log.
    bool CreateSMS(bool clearMarks);
    bool CreateMAIL(bool clearMarks);
    bool preparePush();
    void cmdNuovoTestoSMS_Click(int index);
    void toggleSmsEditor();
    void savePushTemplate();
    void showSmsEditor(bool show);
    void showKeyboard(QWidget* field);

    std::unique_ptr<Ui::frmSMS> m_ui;
    ComponentObject* m_SmsCreator = nullptr;
    std::unique_ptr<hostlib::AdvancedSearch> m_frmRicercaAvanzata; ///< created on first use
    QString m_parametriRicercaAvanzata;
    bool m_showRicorrenze = true;
    bool m_showClassificazioni = true;
    bool m_showSms = true;
    bool m_showMail = true;
    std::size_t m_gridCommandColumns = 0; ///< 0: not arranged yet
    bool m_somethingPrepared = false;     ///< a preparation of this showing ended well
};

} // namespace zul
