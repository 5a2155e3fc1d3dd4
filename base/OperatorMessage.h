// What is said to the operator, and what is answered: the values, without the box that shows them.
#pragma once

#include <QString>

namespace zul {

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

} // namespace zul
