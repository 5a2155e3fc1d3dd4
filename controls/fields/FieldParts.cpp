#include "controls/fields/FieldParts.h"

#include "controls/look/Icons.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace zul {

QToolButton* makeFieldButton(QWidget* field, IconId iconId, const QString& objectName, const QString& toolTip)
{
    auto* button = new QToolButton(field);
    button->setObjectName(objectName);
    button->setIcon(icon(iconId));
    button->setIconSize(QSize(16, 16));
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setFocusPolicy(Qt::NoFocus);
    button->setProperty("fieldButton", true);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    return button;
}

void lendAccessibleName(const QWidget* field, QLineEdit* textBox)
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
    }
    textBox->setAccessibleDescription(field->toolTip());
}

} // namespace zul
