#include "session/FormHelpers.h"

#include "session/ScreenFit.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QRegularExpression>
#include <QWidget>
#include <limits>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* TagProperty = "tag";

} // namespace

void setUpForm(QWidget* form)
{
    restoreIndexedNames(form);
    setTag(form, FormChoice::None);
    liftTextLimits(form);
    if (form->layout() != nullptr) {
        FormScroll::wrap(form);
    }
    new ScreenFit(form);
}

void restoreIndexedNames(QWidget* form)
{
    static const QRegularExpression indexed(u"^(.+)_(\\d+)_$"_s);
    const QList<QWidget*> children = form->findChildren<QWidget*>();
    for (QWidget* child : children) {
        const QRegularExpressionMatch match = indexed.match(child->objectName());
        if (match.hasMatch()) {
            child->setObjectName(match.captured(1) + u'(' + match.captured(2) + u')');
        }
    }
}

void liftTextLimits(QWidget* form)
{
    const QList<QLineEdit*> fields = form->findChildren<QLineEdit*>();
    for (QLineEdit* field : fields) {
        field->setMaxLength(std::numeric_limits<int>::max());
    }
}

void tellOperator(QWidget* owner, const QString& text, MessageIcon icon)
{
    ask(owner, notice(text, icon));
}

bool askOperator(QWidget* owner, const QString& text, MessageIcon icon)
{
    return ask(owner, question(text, icon)) == Answer::Yes;
}

void setTag(QWidget* form, FormChoice choice)
{
    form->setProperty(TagProperty, textOf(choice));
}

QString tagOf(const QWidget* form)
{
    return form->property(TagProperty).toString();
}

FormChoice choiceOf(const QWidget* form)
{
    return formChoice(tagOf(form));
}

WaitCursor::WaitCursor()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor()
{
    QGuiApplication::restoreOverrideCursor();
}

} // namespace zul
