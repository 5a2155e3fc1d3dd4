#include "controls/notices/WaitNotice.h"

#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class WaitNoticeTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window.resize(600, 400);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        line.setFocus();
    }

    static bool goneSoon(const QPointer<zul::WaitNotice>& notice)
    {
        return QTest::qWaitFor([&notice] { return notice.isNull(); });
    }

    QWidget window;
    QLineEdit line{&window};
};

} // namespace

TEST_F(WaitNoticeTest, ShowsHeadingAndTextOverItsOwnerAndTakesNothing)
{
    auto* notice = zul::WaitNotice::open(&line, u"Caricamento avviato..."_s,
                                         u"Attendere <b>il</b> caricamento & 100% à 😀"_s);
    EXPECT_TRUE(notice->isVisible());
    EXPECT_EQ(notice->parentWidget(), &window);
    EXPECT_TRUE(window.rect().contains(notice->geometry()));
    EXPECT_EQ(notice->property("heading").toString(), u"Caricamento avviato..."_s);
    EXPECT_EQ(notice->property("text").toString(), u"Attendere <b>il</b> caricamento & 100% à 😀"_s);
    EXPECT_TRUE(notice->property("zulNotice").toBool());
    EXPECT_FALSE(notice->isModal());
    EXPECT_TRUE(line.hasFocus());
    QTest::keyClicks(&line, u"x"_s);
    EXPECT_EQ(line.text(), u"x"_s);
}

TEST_F(WaitNoticeTest, StandsAboveAControlThatIsToStayFree)
{
    QWidget buttons(&window);
    buttons.setGeometry(0, 350, 600, 40);
    buttons.show();
    auto* notice = zul::WaitNotice::open(&window, QStringLiteral("a"), QStringLiteral("b"));
    EXPECT_TRUE(notice->geometry().intersects(buttons.geometry()));
    notice->standAbove(&buttons);
    EXPECT_FALSE(notice->geometry().intersects(buttons.geometry()));
    EXPECT_TRUE(window.rect().contains(notice->geometry()));
}

TEST_F(WaitNoticeTest, GoesAwayByItself)
{
    const QPointer<zul::WaitNotice> notice = zul::WaitNotice::open(&window, {}, u"x"_s, 1);
    EXPECT_TRUE(goneSoon(notice));
}

TEST_F(WaitNoticeTest, GoesAwayWhenItIsClicked)
{
    const QPointer<zul::WaitNotice> notice = zul::WaitNotice::open(&window, u"a"_s, u"b"_s);
    QTest::mouseClick(notice, Qt::LeftButton);
    EXPECT_TRUE(goneSoon(notice));
    EXPECT_TRUE(line.hasFocus());
}

TEST_F(WaitNoticeTest, ANewOneTakesThePlaceOfTheEarlier)
{
    const QPointer<zul::WaitNotice> first = zul::WaitNotice::open(&window, u"1"_s, {});
    const QPointer<zul::WaitNotice> second = zul::WaitNotice::open(&window, u"2"_s, {});
    EXPECT_TRUE(goneSoon(first));
    ASSERT_FALSE(second.isNull());
    EXPECT_TRUE(second->isVisible());
}

TEST_F(WaitNoticeTest, GoesAwayWithItsOwner)
{
    const QPointer<zul::WaitNotice> hidden = zul::WaitNotice::open(&window, u"1"_s, {});
    window.hide();
    EXPECT_TRUE(goneSoon(hidden));
    auto* owner = new QWidget;
    owner->show();
    const QPointer<zul::WaitNotice> orphan = zul::WaitNotice::open(owner, u"2"_s, {});
    delete owner;
    EXPECT_TRUE(orphan.isNull());
}

TEST_F(WaitNoticeTest, WithoutAnOwnerItIsAWindowOfItsOwn)
{
    const QPointer<zul::WaitNotice> notice = zul::WaitNotice::open(nullptr, u"a"_s, {}, 1);
    EXPECT_TRUE(notice->isWindow());
    EXPECT_TRUE(goneSoon(notice));
}
