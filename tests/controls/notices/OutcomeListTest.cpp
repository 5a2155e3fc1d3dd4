#include "controls/notices/OutcomeList.h"
#include "controls/notices/OutcomeListProbe.h"

#include "controls/look/CommonLook.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

bool showsColour(QWidget* widget, const QRect& area, const QColor& colour)
{
    const QImage image = widget->grab(area).toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (qAbs(pixel.hslHue() - colour.hslHue()) < 12 && pixel.hslSaturation() > 100) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

TEST(OutcomeKindTest, IsToldByTheTag)
{
    EXPECT_EQ(zul::outcomeKind(u"OK     - Rossi"), zul::OutcomeKind::Success);
    EXPECT_EQ(zul::outcomeKind(u"ERRORE - Rossi"), zul::OutcomeKind::Failure);
    EXPECT_EQ(zul::outcomeKind(u"ERR    - Rossi"), zul::OutcomeKind::Failure);
    EXPECT_EQ(zul::outcomeKind(u"       - ****"), zul::OutcomeKind::Continuation);
    EXPECT_EQ(zul::outcomeKind(u""), zul::OutcomeKind::Continuation);
    EXPECT_EQ(zul::outcomeKind(u"OK - Rossi"), zul::OutcomeKind::Continuation);
}

TEST(OutcomeModelTest, AnnouncesLinesInBatches)
{
    zul::OutcomeModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 1000; ++i) {
        model.append(QString::number(i));
    }
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&model] { return model.rowCount() == 1000; }));
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(model.index(999).data().toString(), u"999"_s);
    model.append(u"x");
    model.clear();
    EXPECT_EQ(model.rowCount(), 0);
    model.append(u"y");
    model.announce();
    EXPECT_EQ(model.rowCount(), 1);
}

class OutcomeListTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        list.resize(500, 300);
        list.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&list));
    }

    zul::OutcomeList list;
};

TEST_F(OutcomeListTest, TellsItsLinesBeforeTheyAreShown)
{
    list.append(u"OK     - uno"_s);
    list.append(u"ERRORE - due"_s);
    EXPECT_EQ(list.count(), 2);
    int count = 0;
    QString text;
    EXPECT_EQ(list.findChild<zul::OutcomeListProbe*>(), nullptr) << "made for nobody";
    auto* probe = list.property("probe").value<QObject*>();
    ASSERT_NE(probe, nullptr);
    EXPECT_EQ(list.property("probe").value<QObject*>(), probe);
    ASSERT_TRUE(QMetaObject::invokeMethod(probe, "lineCount", Q_RETURN_ARG(int, count)));
    ASSERT_TRUE(QMetaObject::invokeMethod(probe, "lineText", Q_RETURN_ARG(QString, text), Q_ARG(int, 1)));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(text, u"ERRORE - due"_s);
    list.clear();
    EXPECT_EQ(list.count(), 0);
}

TEST_F(OutcomeListTest, IsMonospaced)
{
    EXPECT_EQ(list.font().family(), u"Courier New"_s);
    EXPECT_EQ(list.font().pointSize(), 10);
    EXPECT_EQ(list.fontMetrics().horizontalAdvance(u'i'), list.fontMetrics().horizontalAdvance(u'W'));
    zul::applyCommonLook(&list, false);
    EXPECT_EQ(list.font().pointSize(), 10);
    EXPECT_EQ(list.fontMetrics().horizontalAdvance(u'i'), list.fontMetrics().horizontalAdvance(u'W'));
}

TEST_F(OutcomeListTest, ColoursTheTags)
{
    list.append(u"OK     - uno"_s);
    list.append(u"ERR    - due"_s);
    list.append(u"       - tre"_s);
    list.flush();
    QWidget* view = list.viewport();
    const auto row = [this](int index) { return list.visualRect(list.model()->index(index, 0)); };
    EXPECT_TRUE(showsColour(view, row(0), QColor(0x1e, 0x7d, 0x34)));
    EXPECT_TRUE(showsColour(view, row(1), QColor(0xb7, 0x1c, 0x1c)));
    EXPECT_FALSE(showsColour(view, row(2), QColor(0xb7, 0x1c, 0x1c)));
    EXPECT_FALSE(showsColour(view, row(2), QColor(0x1e, 0x7d, 0x34)));
}

TEST_F(OutcomeListTest, CopiesTheSelectedLinesInTheirOrder)
{
    for (int i = 0; i < 5; ++i) {
        list.append(u"riga %1 €"_s.arg(i));
    }
    list.flush();
    const auto centre = [this](int row) { return list.visualRect(list.model()->index(row, 0)).center(); };
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, centre(3));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, centre(1));
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"riga 1 €\nriga 3 €\n"_s);
    QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().count(u'\n'), 5);
}

TEST_F(OutcomeListTest, ScrollsALongLineSideways)
{
    list.append(u"corta"_s);
    list.flush();
    QTest::qWait(0);
    EXPECT_EQ(list.horizontalScrollBar()->maximum(), 0);
    list.append(QString(10000, u'x'));
    list.flush();
    QTest::qWait(0);
    EXPECT_GT(list.horizontalScrollBar()->maximum(), 9000 * list.fontMetrics().averageCharWidth());
    list.horizontalScrollBar()->setValue(list.horizontalScrollBar()->maximum());
    EXPECT_FALSE(list.viewport()->grab().isNull());
}

TEST_F(OutcomeListTest, FollowsItsEndUntilTheReaderScrollsBack)
{
    for (int i = 0; i < 200; ++i) {
        list.append(QString::number(i));
    }
    list.flush();
    QTest::qWait(0);
    EXPECT_EQ(list.verticalScrollBar()->value(), list.verticalScrollBar()->maximum());
    EXPECT_GT(list.verticalScrollBar()->maximum(), 0);
    list.verticalScrollBar()->setValue(3);
    list.append(u"ancora"_s);
    list.flush();
    QTest::qWait(0);
    EXPECT_EQ(list.verticalScrollBar()->value(), 3);
}

TEST_F(OutcomeListTest, HoldsAMillionLinesWhileItIsShown)
{
    constexpr int million = 1000000;
    const QString line = u"OK     - Rossi Mario - Creato correttamente. %1"_s;
    for (int i = 0; i < million; ++i) {
        list.append(line.arg(i));
        if (i % 50000 == 0) {
            QCoreApplication::processEvents();
        }
    }
    list.flush();
    EXPECT_EQ(list.model()->rowCount(), million);
    EXPECT_EQ(list.line(million - 1), line.arg(million - 1));
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return list.indexAt(QPoint(10, list.viewport()->height() / 2)).row() > million - 20; }));
}
