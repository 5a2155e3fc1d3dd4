// What is said to the operator, and what is answered: the values, without the box that shows them.
#pragma once

#include <QString>

namespace zul {

/// The application title: the main window's caption, and the title of messages that have none of their own.
inline constexpr const char* ApplicationTitle = "Zul_MessageBuilder";

/// Title of the messages that the windows show.
inline constexpr const char* MessageTitle = "Manager messaggi";

enum class MessageIcon
{
    None,
    Information,
    Exclamation,
    Critical,
    Question
};

enum class MessageButtons
{
    Ok,
    YesNo
};

enum class Answer
{
    Ok,
    Yes,
    No
};

struct OperatorMessage
{
    QString text; ///< plain text; line breaks are CR LF or LF
    MessageIcon icon = MessageIcon::None;
    QString title; ///< empty: the application's title
    MessageButtons buttons = MessageButtons::Ok;
};

/// A message with one OK button.
inline OperatorMessage notice(const QString& text, MessageIcon icon, const char* title = MessageTitle)
{
    return {.text = text, .icon = icon, .title = QString::fromLatin1(title), .buttons = MessageButtons::Ok};
}

/// A Yes/No question.
inline OperatorMessage question(const QString& text, MessageIcon icon)
{
    return {.text = text,
            .icon = icon,
            .title = QString::fromLatin1(MessageTitle),
            .buttons = MessageButtons::YesNo};
}

} // namespace zul
