#include "controls/fields/FieldParts.h"

#include "controls/access/FieldButtonAccessible.h"
#include "controls/look/Icons.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* ownName = "zulOwnName";

} // namespace

QToolButton* makeFieldButton(QWidget* field, IconId iconId, const QString& objectName, const QString& name,
                             const QString& keys)
{
    auto* button = new QToolButton(field);
    pressLater(button);
    button->setObjectName(objectName);
    button->setIcon(icon(iconId));
    button->setIconSize(QSize(16, 16));
    button->setToolTip(name + u" ("_s + keys + u')');
    button->setAccessibleName(name);
    button->setProperty(ownName, name);
    button->setFocusPolicy(Qt::NoFocus);
    button->setProperty("fieldButton", true);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    return button;
}

void lendAccessibleName(const QWidget* field, QLineEdit* textBox, const QString& keys)
{
    QString name = field->accessibleName();
    if (name.isEmpty()) {
        const auto labels = field->window()->findChildren<QLabel*>();
        for (const QLabel* label : labels) {
            if (label->buddy() == field) {
                name = label->text().remove(u'&');
            }
        }
    }
    if (!name.isEmpty()) {
        textBox->setAccessibleName(name);
        const auto buttons = field->findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
        for (QToolButton* button : buttons) {
            button->setAccessibleName(button->property(ownName).toString() + u": "_s + name);
        }
    }
    textBox->setAccessibleDescription(field->toolTip().isEmpty() ? keys : field->toolTip() + u'\n' + keys);
}

} // namespace zul
