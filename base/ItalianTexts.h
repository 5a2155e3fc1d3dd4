// Qt's own texts in Italian: those that an operator meets in menus of text fields, in scroll bars and in the file dialog.
#pragma once

#include <QTranslator>

namespace zul {

/// A translator that carries its texts with it: Qt's own files of translations need not be there. What it does not know
/// stays as it is.
class ItalianTexts : public QTranslator
{
public:
    using QTranslator::QTranslator;

    /// For the application that there is, as long as it lives. For programs of ours alone: in a program of somebody else Qt
    /// speaks the language that its author has chosen.
    static void install();

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char* disambiguation = nullptr,
                      int n = -1) const override;
};

} // namespace zul
