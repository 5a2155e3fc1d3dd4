#include "session/IgnoredInput.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace zul {

namespace {

using namespace Qt::StringLiterals;

class IgnoredInputTest : public ::testing::Test
{
protected:
    class Paints : public QObject
    {
    public:
        int count = 0;

        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    };

    IgnoredInputTest()
        : m_label(new QLabel(u"prima"_s))
    {
        (new QVBoxLayout(&m_form))->addWidget(m_label);
        m_form.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_form));
        QApplication::processEvents();
        m_label->installEventFilter(&m_paints);
    }

    QWidget m_form;
    QLabel* m_label;
    Paints m_paints;
};

TEST_F(IgnoredInputTest, WhatChangedMeanwhileIsDrawnAfterwards)
{
    {
        const IgnoredInput ignored(&m_form);
        m_label->setText(u"dopo"_s);
    }
    EXPECT_EQ(m_paints.count, 0) << "drawn while the form may be disabled";
    QTest::qWait(50);
    EXPECT_GE(m_paints.count, 1);
}

TEST_F(IgnoredInputTest, TheFormGoesOnBeingDrawn)
{
    {
        const IgnoredInput ignored(&m_form);
        m_label->setText(u"dopo"_s);
    }
    QTest::qWait(50);
    const int before = m_paints.count;
    m_label->setText(u"più tardi"_s);
    QTest::qWait(50);
    EXPECT_GT(m_paints.count, before);
}

} // namespace

} // namespace zul
