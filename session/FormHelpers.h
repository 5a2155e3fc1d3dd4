// Small things that every form does alike.
#pragma once

#include "controls/notices/MessageSeam.h"
#include "session/FormChoice.h"
#include "session/modLogger.h"

#include <QString>
#include <utility>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// What every form needs first, once its controls are there: the names of indexed controls, an empty tag, text
/// fields without a limit, and a size that the screen has room for; what the form's own layout holds scrolls where
/// there is none.
void setUpForm(QWidget* form);

/// Designer's compiler cannot keep the parentheses of an indexed control's name: gives "cntrMessaggio_0_" its
/// name "cntrMessaggio(0)" back, and so on, for every child of the form.
void restoreIndexedNames(QWidget* form);

/// No field has a limit of its own: a text from the database comes back from its field as long as it was.
void liftTextLimits(QWidget* form);

/// Shows an operator message with one OK button and the title "Manager messaggi".
void tellOperator(QWidget* owner, const QString& text, MessageIcon icon = MessageIcon::Information);

/// Asks a Yes/No question under the same title. @return true for Yes
bool askOperator(QWidget* owner, const QString& text, MessageIcon icon = MessageIcon::Information);

/// Leaves a form's outcome in its tag, as a text: "OK", "ESC", or nothing.
void setTag(QWidget* form, FormChoice choice);
QString tagOf(const QWidget* form);
FormChoice choiceOf(const QWidget* form);

/// Keeps the wait cursor on the screen for the length of a run.
class WaitCursor
{
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

/// 15 twips are one pixel at 96 dpi; a part of a pixel counts as a whole one.
constexpr int pixelsFromTwips(int twips)
{
    return (twips + 14) / 15;
}

} // namespace zul
