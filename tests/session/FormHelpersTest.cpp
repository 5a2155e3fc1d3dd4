#include "session/FormHelpers.h"

#include "controls/fields/DateField.h"
#include "controls/fields/SelectorField.h"
#include "tests/support/ComponentTest.h"

#include <QApplication>
#include <QLineEdit>
#include <QWidget>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class FormHelpersTest : public ComponentTest
{};

TEST_F(FormHelpersTest, IndexedControlsGetTheirParenthesesBack)
{
    QWidget form;
    QWidget first(&form);
    QWidget nested(&first);
    QWidget other(&form);
    first.setObjectName(u"cntrMessaggio_0_"_s);
    nested.setObjectName(u"cmdNuovoTestoSMS_12_"_s);
    other.setObjectName(u"Cmd_DeselezionaEvidenziati"_s);
    restoreIndexedNames(&form);
    EXPECT_EQ(first.objectName(), u"cntrMessaggio(0)"_s);
    EXPECT_EQ(nested.objectName(), u"cmdNuovoTestoSMS(12)"_s);
    EXPECT_EQ(other.objectName(), u"Cmd_DeselezionaEvidenziati"_s);
}

TEST_F(FormHelpersTest, AFieldTakesATextOfAnyLength)
{
    QWidget form;
    QLineEdit field(&form);
    SelectorField parts(&form);
    DateField date(&form);
    const QString text = QString(99999, u'à') + u"😀"_s;
    field.setText(text);
    ASSERT_NE(field.text(), text) << "this is what it is for";
    setUpForm(&form);
    field.setText(text);
    parts.setText(text);
    date.setText(text);
    EXPECT_EQ(field.text(), text);
    EXPECT_EQ(parts.text(), text);
    EXPECT_EQ(date.text(), text);
}

TEST_F(FormHelpersTest, TagsAreTextsAndEmptyAtFirst)
{
    QWidget form;
    EXPECT_EQ(tagOf(&form), QString());
    EXPECT_EQ(choiceOf(&form), FormChoice::None);
    for (const auto& [choice, tag] : {std::pair{FormChoice::Confirmed, u"OK"_s},
                                      {FormChoice::Cancelled, u"ESC"_s},
                                      {FormChoice::None, QString()}}) {
        setTag(&form, choice);
        EXPECT_EQ(tagOf(&form), tag);
        EXPECT_EQ(choiceOf(&form), choice);
    }
    form.setProperty("tag", u"ok"_s);
    EXPECT_EQ(choiceOf(&form), FormChoice::None) << "compared to the letter";
}

TEST_F(FormHelpersTest, MessagesHaveTheSystemsTitle)
{
    tellOperator(nullptr, u"a"_s);
    tellOperator(nullptr, u"b"_s, MessageIcon::Critical);
    answers = {Answer::No};
    EXPECT_FALSE(askOperator(nullptr, u"c"_s));
    EXPECT_TRUE(askOperator(nullptr, u"d"_s, MessageIcon::Exclamation));
    EXPECT_EQ(messages,
              (std::vector<OperatorMessage>{told(u"a"_s), told(u"b"_s, MessageIcon::Critical), asked(u"c"_s),
                                            asked(u"d"_s, MessageIcon::Exclamation)}));
    EXPECT_EQ(messages[0].title, u"Manager messaggi"_s);
}

TEST_F(FormHelpersTest, TheWaitCursorEndsWithItsScope)
{
    {
        const WaitCursor waiting;
        ASSERT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(FormHelpersTest, FifteenTwipsAreAPixelAndAPartCountsWhole)
{
    EXPECT_EQ(pixelsFromTwips(0), 0);
    EXPECT_EQ(pixelsFromTwips(15), 1);
    EXPECT_EQ(pixelsFromTwips(16), 2);
    EXPECT_EQ(pixelsFromTwips(8000), 534);
}

} // namespace
} // namespace zul
