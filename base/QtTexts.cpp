#include "base/QtTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// Finds the texts of a Qt that was built in a namespace too: a text's context is the name of its class.
class QtTexts final : public QTranslator
{
public:
    using QTranslator::QTranslator;

    QString translate(const char* context, const char* text, const char* comment, int n) const override
    {
        const QByteArray name(context);
        const QString found = QTranslator::translate(context, text, comment, n);
        const qsizetype at = name.lastIndexOf("::");
        return !found.isEmpty() || at < 0
                   ? found
                   : QTranslator::translate(name.mid(at + 2).constData(), text, comment, n);
    }
};

} // namespace

bool useItalianQtTexts(QCoreApplication& application, const QString& folder)
{
    auto texts = std::make_unique<QtTexts>(&application);
    for (const QString& place :
         {QString(folder + u"/translations"_s), QLibraryInfo::path(QLibraryInfo::TranslationsPath)}) {
        if (texts->load(u"qtbase_it"_s, place)) {
            return QCoreApplication::installTranslator(texts.release());
        }
    }
    return false;
}

} // namespace zul
