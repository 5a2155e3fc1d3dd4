#include "options/frmShowPath.h"

#include "controls/fields/ButtonKeys.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"
#include "session/ControlSetup.h"
#include "session/FormHelpers.h"
#include "session/Session.h"
#include "session/frmTasti.h"
#include "ui_frmShowPath.h"

#include <QCloseEvent>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int ImageConfirm = 9; ///< numbers of the shared image list
constexpr int ImageCancel = 1;

Procedure procedure(const QString& name)
{
    return formProcedure(u"frmShowPath"_s, name);
}

} // namespace

frmShowPath::frmShowPath(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmShowPath>())
{
    m_ui->setupUi(this);
    setUpForm(this);
    frmTasti::openByF1(this);
    new ButtonKeys(this);
    applyCommonLook(this, session().ShowTouchMode);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmShowPath::cmdOK_Click);
    connect(m_ui->cmdCancella, &QPushButton::clicked, this, &frmShowPath::cmdCancella_Click);
    Form_Load();
}

frmShowPath::~frmShowPath() = default;

void frmShowPath::startAt(const QString& path)
{
    m_ui->FolderTreeview1->selectPath(path);
}

QString frmShowPath::selectedPath() const
{
    return m_ui->FolderTreeview1->selectedPath();
}

void frmShowPath::Form_Load()
{
    trapped(procedure(u"Form_Load"_s), [&] {
        m_ui->cmdOK->setIcon(imageListIcon(ImageConfirm, IconTone::OnAccent));
        m_ui->cmdCancella->setIcon(imageListIcon(ImageCancel));
        SetupControlsAppearance(this);
    });
}

void frmShowPath::cmdOK_Click()
{
    trapped(procedure(u"cmdOK_Click"_s), [&] {
        if (selectedPath().isEmpty()) {
            tellOperator(this, u"Selezionare un percorso!"_s, MessageIcon::Critical);
            return;
        }
        setTag(this, FormChoice::Confirmed);
        hide();
    });
}

void frmShowPath::cmdCancella_Click()
{
    trapped(procedure(u"cmdCancella_Click"_s), [&] {
        setTag(this, FormChoice::Cancelled);
        hide();
    });
}

void frmShowPath::reject()
{
    cmdCancella_Click();
}

void frmShowPath::closeEvent(QCloseEvent* event)
{
    // The close button leaves the tag empty.
    event->accept();
}

} // namespace zul
