#include "session/ControlSetup.h"

#include "controls/look/Background.h"
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "tests/support/ComponentTest.h"

#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

class ControlSetupTest : public test::ComponentTest
{
protected:
    template <class T>
    T* add(const QString& name)
    {
        auto* control = new T(&form);
        control->setObjectName(name);
        return control;
    }
    static bool isPainted(const QWidget* control) { return control->property("background").isValid(); }

    QWidget form;
};

TEST_F(ControlSetupTest, NamesDecideInAnyCaseWhoIsPainted)
{
    auto* check = add<QCheckBox>(u"CHKFOO"_s);
    auto* option = add<QRadioButton>(u"optX"_s);
    auto* frame = add<QFrame>(u"FrameX"_s);
    auto* shortName = add<QCheckBox>(u"ch"_s);
    auto* label = add<QLabel>(u"lblX"_s);
    auto* text = add<QLineEdit>(u"txtchk"_s);
    SetupControlsAppearance(&form);
    const QColor buttonFace = form.palette().color(QPalette::Button);
    for (const QWidget* painted : std::initializer_list<QWidget*>{check, option, frame}) {
        ASSERT_TRUE(isPainted(painted)) << painted->objectName().toStdString();
        EXPECT_EQ(effectiveBackground(painted), buttonFace);
    }
    for (const QWidget* left : std::initializer_list<QWidget*>{shortName, label, text}) {
        EXPECT_FALSE(isPainted(left)) << left->objectName().toStdString();
    }
}

TEST_F(ControlSetupTest, FramesBecomeFlat)
{
    auto* frame = add<QFrame>(u"x"_s);
    frame->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Raised));
    SetupControlsAppearance(&form);
    EXPECT_EQ(frame->frameShadow(), QFrame::Plain);
}

TEST_F(ControlSetupTest, NothingShinesThroughACheckBoxAnOptionButtonOrAGroupBox)
{
    // On a green panel, named so that no colour of their own reaches them.
    QWidget panel(&form);
    panel.resize(400, 200);
    panel.setStyleSheet(u".QWidget { background-color: #00ff00; } QGroupBox { border: none; }"_s);
    QCheckBox check(&panel);
    QRadioButton option(&panel);
    QGroupBox group(&panel);
    QLabel label(u"Etichetta"_s, &panel);
    int top = 0;
    const QList<QWidget*> controls{&check, &option, &group, &label};
    for (QWidget* control : controls) {
        control->setGeometry(0, top, 300, 40);
        top += 50;
    }
    const auto behind = [&panel](const QWidget& control) {
        return panel.grab().toImage().pixelColor(control.geometry().center() + QPoint(100, 0));
    };
    for (const QWidget* control : controls) {
        ASSERT_EQ(behind(*control), QColor(0, 255, 0)) << control->metaObject()->className();
    }
    SetupControlsAppearance(controls);
    const QColor own = form.palette().color(QPalette::Window);
    EXPECT_EQ(behind(check), own);
    EXPECT_EQ(behind(option), own);
    EXPECT_EQ(behind(group), own);
    EXPECT_EQ(behind(label), QColor(0, 255, 0)) << "a label has no such property";
    EXPECT_FALSE(label.autoFillBackground());
}

TEST_F(ControlSetupTest, ChosenControlsAloneAreTouched)
{
    auto* chosen = add<QCheckBox>(u"chkA"_s);
    auto* other = add<QCheckBox>(u"chkB"_s);
    SetupControlsAppearance(QList<QWidget*>{chosen});
    EXPECT_TRUE(isPainted(chosen));
    EXPECT_FALSE(isPainted(other));
}

TEST_F(ControlSetupTest, AGridThatIsNotThereIsLogged)
{
    setupReportControl(nullptr);
    EXPECT_EQ(logged(),
              QStringList{u"setupReportControl | Error 91 (Object variable or With block variable not "
                          "set) in procedure setupReportControl of Modulo modSetup | "_s});
}

TEST_F(ControlSetupTest, AGridIsSetUpWithoutAnError)
{
    ReportGrid grid;
    setupReportControl(&grid);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(ControlSetupTest, AGridGetsItsTextsAndItsFont)
{
    ReportGrid grid;
    grid.resize(600, 300);
    setupReportControl(&grid);
    grid.addColumn({.field = u"Cliente"_s, .caption = u"Ragione sociale"_s});
    grid.sortBy(0, false);
    EXPECT_EQ(probeOf(&grid)->groupBoxWidget()->accessibleDescription(),
              u"Trascinare qui l'intestazione di colonna per raggruppare per quella colonna. "
              "Ordina per: Ragione sociale"_s);
    const QWidget* list = probeOf(&grid)->bodyViewport()->parentWidget();
    EXPECT_EQ(list->font().family(), u"Tahoma"_s);
    EXPECT_EQ(list->font().pointSize(), 8);

    // The text of an empty list can only be seen.
    const QImage seen = grid.grab().toImage();
    grid.setEmptyText(u"Nessun elemento da visualizzare."_s);
    EXPECT_NE(grid.grab().toImage(), seen);
    grid.setEmptyText(u"Nessun elemento da visualizzare"_s);
    EXPECT_EQ(grid.grab().toImage(), seen);
}

} // namespace
} // namespace zul
