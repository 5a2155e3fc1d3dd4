// The folder chooser of the options dialog.
#pragma once

#include <QDialog>
#include <memory>

QT_BEGIN_NAMESPACE
namespace Ui {
class frmShowPath;
}
QT_END_NAMESPACE

namespace zul {

/// Shown modally; tag "OK" with a folder selected, "ESC" after Cancel or Escape. It keeps its selection between
/// showings.
class frmShowPath : public QDialog
{
    Q_OBJECT

public:
    explicit frmShowPath(QWidget* parent);
    ~frmShowPath() override;

    /// Opens the tree down to the folder and selects it. A folder that is not there changes nothing.
    void startAt(const QString& path);

    /// The selected folder; empty when none is.
    QString selectedPath() const;

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void Form_Load();
    void cmdOK_Click();
    void cmdCancella_Click();

    std::unique_ptr<Ui::frmShowPath> m_ui;
};

} // namespace zul
