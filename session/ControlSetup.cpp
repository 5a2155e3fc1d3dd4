#include "session/ControlSetup.h"

#include "controls/look/AppearanceRules.h"
#include "controls/look/Background.h"
#include "controls/look/CommonLook.h"
#include "controls/report/ReportGrid.h"
#include "session/modLogger.h"

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QRadioButton>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

void makeFlat(QWidget* control)
{
    // "Appearance" 0: no raised edge. The style sheet of the common look draws the edge of push buttons and
    // edits; what is left is the frame of plain frames.
    if (auto* frame = qobject_cast<QFrame*>(control);
        frame != nullptr && frame->frameShadow() != QFrame::Plain) {
        frame->setFrameShadow(QFrame::Plain);
    }
}

/// Only check boxes, option buttons and group boxes can let shine through what lies behind them; a label has no
/// such thing.
bool canBeTransparent(const QWidget* control)
{
    return qobject_cast<const QCheckBox*>(control) != nullptr ||
           qobject_cast<const QRadioButton*>(control) != nullptr ||
           qobject_cast<const QGroupBox*>(control) != nullptr;
}

void makeOpaque(QWidget* control)
{
    if (canBeTransparent(control)) {
        control->setAutoFillBackground(true);
    }
}

} // namespace

void setupReportControl(ReportGrid* grid) noexcept
{
    trapped(moduleProcedure(u"modSetup"_s, u"setupReportControl"_s), [&] {
        if (grid == nullptr) {
            throw Error(RunTime::ObjectNotSet);
        }
        grid->setEmptyText(u"Nessun elemento da visualizzare"_s);
        grid->setGroupHint(u"Trascinare qui l'intestazione di colonna per raggruppare per quella colonna"_s);
        grid->setSortCaptionPrefix(u"Ordina per: "_s);
        QFont font(u"Tahoma"_s);
        font.setPointSizeF(systemSized(8));
        grid->setGridFont(font);
        grid->setFlatHeader(true);
        grid->setRowLines(true);
        constexpr int Padding = 4;
        grid->setCellPadding(Padding);
        grid->setRowPadding(Padding);
    });
}

void SetupControlsAppearance(const QList<QWidget*>& controls) noexcept
{
    for (QWidget* control : controls) {
        try {
            makeFlat(control);
            makeOpaque(control);
            if (takesButtonFace(control->objectName())) {
                setBackground(control, control->palette().color(QPalette::Button));
            }
        } catch (...) {
            continue;
        }
    }
}

void SetupControlsAppearance(QWidget* form) noexcept
{
    SetupControlsAppearance(form->findChildren<QWidget*>());
}

} // namespace zul
