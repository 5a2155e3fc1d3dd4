#include "controls/notices/WaitNotice.h"

#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <gtest/gtest.h>

namespace {

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
    auto* notice = zul::WaitNotice::open(&line, QStringLiteral("Caricamento avviato..."),
                                         QStringLiteral("Attendere <b>il</b> caricamento & 100% à 😀"));
    EXPECT_TRUE(notice->isVisible());
    EXPECT_EQ(notice->parentWidget(), &window);
    EXPECT_TRUE(window.rect().contains(notice->geometry()));
    EXPECT_EQ(notice->property("heading").toString(), QStringLiteral("Caricamento avviato..."));
    EXPECT_EQ(notice->property("text").toString(),
              QStringLiteral("Attendere <b>il</b> caricamento & 100% à 😀"));
    EXPECT_TRUE(notice->property("zulNotice").toBool());
    EXPECT_FALSE(notice->isModal());
    EXPECT_TRUE(line.hasFocus());
    QTest::keyClicks(&line, QStringLiteral("x"));
    EXPECT_EQ(line.text(), QStringLiteral("x"));
}

TEST_F(WaitNoticeTest, GoesAwayByItself)
{
    const QPointer<zul::WaitNotice> notice = zul::WaitNotice::open(&window, {}, QStringLiteral("x"), 1);
    EXPECT_TRUE(goneSoon(notice));
}

TEST_F(WaitNoticeTest, GoesAwayWhenItIsClicked)
{
    const QPointer<zul::WaitNotice> notice =
        zul::WaitNotice::open(&window, QStringLiteral("a"), QStringLiteral("b"));
    QTest::mouseClick(notice, Qt::LeftButton);
    EXPECT_TRUE(goneSoon(notice));
    EXPECT_TRUE(line.hasFocus());
}

TEST_F(WaitNoticeTest, ANewOneTakesThePlaceOfTheEarlier)
{
    const QPointer<zul::WaitNotice> first = zul::WaitNotice::open(&window, QStringLiteral("1"), {});
    const QPointer<zul::WaitNotice> second = zul::WaitNotice::open(&window, QStringLiteral("2"), {});
    EXPECT_TRUE(goneSoon(first));
    ASSERT_FALSE(second.isNull());
    EXPECT_TRUE(second->isVisible());
}

TEST_F(WaitNoticeTest, GoesAwayWithItsOwner)
{
    const QPointer<zul::WaitNotice> hidden = zul::WaitNotice::open(&window, QStringLiteral("1"), {});
    window.hide();
    EXPECT_TRUE(goneSoon(hidden));
    auto* owner = new QWidget;
    owner->show();
    const QPointer<zul::WaitNotice> orphan = zul::WaitNotice::open(owner, QStringLiteral("2"), {});
    delete owner;
    EXPECT_TRUE(orphan.isNull());
}

TEST_F(WaitNoticeTest, WithoutAnOwnerItIsAWindowOfItsOwn)
{
    const QPointer<zul::WaitNotice> notice = zul::WaitNotice::open(nullptr, QStringLiteral("a"), {}, 1);
    EXPECT_TRUE(notice->isWindow());
    EXPECT_TRUE(goneSoon(notice));
}
