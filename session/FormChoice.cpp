#include "session/FormChoice.h"

namespace zul {

using namespace Qt::StringLiterals;

QString textOf(FormChoice choice)
{
    switch (choice) {
    case FormChoice::Confirmed:
        return u"OK"_s;
    case FormChoice::Cancelled:
        return u"ESC"_s;
    case FormChoice::None:
        break;
    }
    return {};
}

FormChoice formChoice(const QString& text)
{
    for (const FormChoice choice : {FormChoice::Confirmed, FormChoice::Cancelled}) {
        if (text == textOf(choice)) {
            return choice;
        }
    }
    return FormChoice::None;
}

} // namespace zul
