// The main window under a dark palette of the system: it stays white, and what stands in it can be read.
#include "tests/mainwindow/SmsFormTest.h"

#include <QApplication>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class SmsFormLookTest : public SmsFormTest
{
protected:
    SmsFormLookTest()
    {
        QPalette dark(QColor(48, 50, 55), QColor(32, 34, 38));
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            dark.setColor(role, Qt::white);
        }
        QApplication::setPalette(dark);
    }
    ~SmsFormLookTest() override
    {
        form.reset();
        QApplication::setPalette(m_before);
    }

    /// Whether something dark stands in what the control draws: its text, whatever its palette says.
    static bool isRead(QWidget* control, int left)
    {
        const QImage drawn = control->grab().toImage();
        int dark = 0;
        for (int y = 4; y < drawn.height() - 4; ++y) {
            for (int x = left; x < drawn.width() - 4; ++x) {
                dark += drawn.pixelColor(x, y).lightness() < 128 ? 1 : 0;
            }
        }
        return dark > 4;
    }

private:
    const QPalette m_before = QApplication::palette();
};

TEST_F(SmsFormLookTest, EveryTextOfTheCriteriaIsReadUnderADarkPalette)
{
    open();
    for (int index = 0; index < tabs("TabControl1")->count(); ++index) {
        page("TabControl1", index);
        const QList<QWidget*> controls = tabs("TabControl1")->currentWidget()->findChildren<QWidget*>();
        int looked = 0;
        for (QWidget* control : controls) {
            auto* edit = qobject_cast<QLineEdit*>(control);
            auto* marked = qobject_cast<QAbstractButton*>(control);
            auto* label = qobject_cast<QLabel*>(control);
            // The dash between two fields is too little to be counted.
            const bool captioned = (label != nullptr && label->text().size() > 1) ||
                                   (marked != nullptr && marked->isCheckable() && !marked->text().isEmpty());
            if ((edit == nullptr && !captioned) || !control->isVisible()) {
                continue;
            }
            if (edit != nullptr && !edit->isReadOnly()) {
                edit->setText(u"MWMW"_s);
            } else if (edit != nullptr) {
                continue;
            }
            ++looked;
            const int indicator = marked != nullptr ? 24 : 4;
            EXPECT_TRUE(isRead(control, indicator)) << utf8(control->objectName());
        }
        EXPECT_GT(looked, 0) << index;
    }
}

} // namespace
} // namespace zul
