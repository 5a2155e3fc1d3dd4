#include "base/QtTexts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <QTranslator>
#include <gtest/gtest.h>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

QString copyText()
{
    return QCoreApplication::translate("QLineEdit", "&Copy");
}

class QtTextsTest : public ::testing::Test
{
protected:
    ~QtTextsTest() override
    {
        for (QTranslator* texts : qApp->findChildren<QTranslator*>()) {
            delete texts;
        }
    }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(QtTextsTest, AreItalianInAnyLanguageOfTheUser)
{
    ASSERT_EQ(copyText(), u"&Copy"_s);
    ASSERT_TRUE(useItalianQtTexts(*qApp, m_folder.path()));
    EXPECT_EQ(copyText(), u"&Copia"_s);
    EXPECT_EQ(QCoreApplication::translate("Own::QLineEdit", "&Copy"), u"&Copia"_s) << "Qt in a namespace";
    EXPECT_EQ(QCoreApplication::translate("Own::Other", "&Copy"), u"&Copy"_s);
}

TEST_F(QtTextsTest, AreTakenFromBesideTheLibraryFirst)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"translations"_s));
    ASSERT_TRUE(QFile::copy(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + u"/qtbase_it.qm"_s,
                            m_folder.filePath(u"translations/qtbase_it.qm"_s)));
    ASSERT_TRUE(useItalianQtTexts(*qApp, m_folder.path()));
    const auto* texts = qApp->findChild<QTranslator*>();
    ASSERT_NE(texts, nullptr);
    EXPECT_TRUE(texts->filePath().startsWith(m_folder.path())) << texts->filePath().toStdString();
}
