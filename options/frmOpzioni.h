// The options dialog: the account of the SMS provider, two switches, and the folder of the sender program.
#pragma once

#include "options/SettingFields.h"

#include <QDialog>
#include <memory>
#include <utility>
#include <vector>

QT_BEGIN_NAMESPACE
namespace Ui {
class frmOpzioni;
}
QT_END_NAMESPACE

namespace zul {

class frmShowPath;

/// Nothing is written before Save. Tag: "OK" after Save, "ESC" after Cancel, empty after the close button.
class frmOpzioni : public QDialog
{
    Q_OBJECT

public:
    frmOpzioni();
    ~frmOpzioni() override;

    QString choice() const;

public Q_SLOTS:
    /// Escape: as Cancel.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void arrangeForTouch();
    void Form_Load();
    void Form_Activate();
    void loadSettings();
    std::vector<std::pair<const settings::Key*, QString>> fieldTexts() const;
    void cmdSalva_Click();
    void cmdAnnulla_Click();
    void cmdSelezionaPath_Click();
    void cmdSMS_TestSMSSender_Click();

    std::unique_ptr<Ui::frmOpzioni> m_ui;
    SettingFields m_settings;
    std::unique_ptr<frmShowPath> m_frmShowPath; ///< created on first use and kept
};

} // namespace zul
