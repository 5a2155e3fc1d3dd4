#include "base/ItalianTexts.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

TEST(ItalianTextsTest, SpeaksForQtsOwnControlsAndForNobodyElse)
{
    const ItalianTexts texts;
    EXPECT_EQ(texts.translate("QLineEdit", "&Paste"), u"&Incolla"_s);
    EXPECT_EQ(texts.translate("QWidgetTextControl", "Select All"), u"Seleziona tutto"_s);
    EXPECT_EQ(texts.translate("QScrollBar", "Page down"), u"Pagina in giù"_s);
    EXPECT_EQ(
        texts.translate("QFileDialog", "%1\nFile not found.\nPlease verify the correct file name was given."),
        u"%1\nIl file non c'è.\nVerificare il suo nome."_s);
    EXPECT_EQ(texts.translate("QFileSystemModel", "Date Modified"), u"Ultima modifica"_s);
    EXPECT_TRUE(texts.translate("QFileDialog", "something new").isNull()) << "left as it is";
    EXPECT_TRUE(texts.translate("HostWindow", "&Paste").isNull());
    EXPECT_TRUE(texts.translate(nullptr, "&Paste").isNull());
    EXPECT_TRUE(texts.translate("QLineEdit", nullptr).isNull());
    EXPECT_TRUE(texts.translate("QLineEdit", "").isNull());
    EXPECT_FALSE(texts.isEmpty());
}

} // namespace
} // namespace zul
