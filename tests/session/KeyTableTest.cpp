#include "session/KeyTable.h"

#include "session/frmTasti.h"
#include "tests/support/ComponentTest.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class KeyTableTest : public ComponentTest
{};

TEST_F(KeyTableTest, RowsAreThoseOfTheTablesOfItsChapter)
{
    const std::vector<KeyTableSection> sections = readKeyTable(uR"(# Guida
| Non | qui |
| --- | --- |
| a | b |

## Tasti

Una frase.

### Ovunque

| Tasto | Che cosa fa |
| --- | --- |
| **F1**, `F2` | questa & quella à 😀 |
| **Esc** | chiude |
| rotta | una | cella di troppo |

### Vuota

## Altro

### Fuori
| Tasto | x |
| --- | --- |
| F9 | y |
)"_s);
    ASSERT_EQ(sections.size(), 2U);
    EXPECT_EQ(sections[0].title, u"Ovunque"_s);
    ASSERT_EQ(sections[0].rows.size(), 2U);
    EXPECT_EQ(sections[0].rows[0].keys, u"F1, F2"_s);
    EXPECT_EQ(sections[0].rows[0].action, u"questa & quella à 😀"_s);
    EXPECT_EQ(sections[0].rows[1].keys, u"Esc"_s);
    EXPECT_TRUE(sections[1].rows.empty());
}

TEST_F(KeyTableTest, AGuideWithoutTheChapterHasNoKeys)
{
    EXPECT_TRUE(readKeyTable(QString()).empty());
    EXPECT_TRUE(readKeyTable(u"# Guida\n### F1\n| a | b |\n"_s).empty());
}

TEST_F(KeyTableTest, TheGuideOfTheProgramListsTheKeysOfTheWindows)
{
    QStringList keys;
    for (const KeyTableSection& section : keyTable()) {
        EXPECT_FALSE(section.rows.empty()) << utf8(section.title);
        for (const KeyTableRow& row : section.rows) {
            keys.append(row.keys);
            EXPECT_FALSE(row.action.isEmpty()) << utf8(row.keys);
        }
    }
    const QString all = keys.join(u' ');
    for (const QString& key : {u"F1"_s, u"F3"_s, u"F4"_s, u"F5"_s, u"F6"_s, u"Esc"_s, u"Invio"_s, u"Alt"_s,
                               u"Ctrl+Invio"_s, u"Ctrl+PagGiù"_s, u"Ctrl+PagSu"_s, u"Canc"_s}) {
        EXPECT_TRUE(all.contains(key)) << utf8(key);
    }
    EXPECT_FALSE(all.contains(u'*'));
}

TEST_F(KeyTableTest, F1ShowsTheTableAndEscapeClosesIt)
{
    QWidget form;
    form.setObjectName(u"frmProva"_s);
    frmTasti::openByF1(&form);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    int opened = 0;
    QString text;
    onWindow(u"frmTasti"_s, [&](QWidget* window) {
        ++opened;
        EXPECT_EQ(window->windowTitle(), u"Tasti"_s);
        text = window->findChild<QTextBrowser*>()->toPlainText();
        QTest::keyClick(window->findChild<QTextBrowser*>(), Qt::Key_Escape);
        EXPECT_FALSE(window->isVisible());
    });
    QTest::keyClick(&form, Qt::Key_F1);
    EXPECT_EQ(opened, 1);
    QApplication::setActiveWindow(&form);
    EXPECT_TRUE(text.contains(u"Ctrl+PagGiù"_s));
    EXPECT_TRUE(text.contains(u"avvia la ricerca"_s));
    onWindow(u"frmTasti"_s, [&](QWidget* window) {
        ++opened;
        auto* close = window->findChild<QPushButton*>(u"cmdChiudi"_s);
        close->setFocus();
        QTest::keyClick(close, Qt::Key_Return);
        EXPECT_FALSE(window->isVisible());
    });
    QTest::keyClick(&form, Qt::Key_F1);
    EXPECT_EQ(opened, 2);
    EXPECT_TRUE(logged().isEmpty());
}

} // namespace
} // namespace zul
