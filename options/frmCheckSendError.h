// The send-error check: fetches the provider's report of failed numbers, lists the customers they belong to,
// and disables the numbers.
#pragma once

#include "options/DatabaseWait.h"
#include "options/SettingFields.h"

#include <QDialog>
#include <memory>
#include <utility>
#include <vector>

QT_FORWARD_DECLARE_CLASS(QLineEdit)

QT_BEGIN_NAMESPACE
namespace Ui {
class frmCheckSendError;
}
QT_END_NAMESPACE

namespace zul {

class FailedNumbersReader;
class IgnoredInput;
class cFtp;

/// The four FTP fields are stored at every close, however caused (see SettingFields). Tag: "ESC" after Close, empty after the
/// close button.
class frmCheckSendError : public QDialog
{
    Q_OBJECT

public:
    frmCheckSendError();
    ~frmCheckSendError() override;

    /// A database object that runs the statements of this form asynchronously: each of them waits until it has
    /// stopped executing. Without one, as the form is shown by the component, a statement has ended when its
    /// call returns.
    void setDatabaseObject(StillExecuting database) { m_database = std::move(database); }

public Q_SLOTS:
    /// Escape: as Close.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void Form_Load();
    void Form_Activate();
    void Form_Unload();
    std::vector<std::pair<const settings::Key*, QLineEdit*>> settingFields() const;
    void cmdChiudi_Click();
    void cmdSMS_TestSMS_Click();
    void cmdSMS_ClearAccount_Click();
    void download(cFtp& ftp);
    void showFailedNumbers(FailedNumbersReader& report, IgnoredInput& input);
    void addColumns();
    void removeAll();

    std::unique_ptr<Ui::frmCheckSendError> m_ui;
    StillExecuting m_database;
    SettingFields m_settings;
};

} // namespace zul
