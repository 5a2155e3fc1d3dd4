#include "controls/access/FieldButtonAccessible.h"

#include <QAccessibleWidget>
#include <QToolButton>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* pressedLater = "zulPressedLater";

class FieldButtonAccessible : public QAccessibleWidget
{
public:
    explicit FieldButtonAccessible(QToolButton* button)
        : QAccessibleWidget(button, QAccessible::Button)
    {}

    QStringList actionNames() const override
    {
        return widget()->isEnabled() ? QStringList{pressAction()} : QStringList();
    }

    void doAction(const QString& action) override
    {
        if (actionNames().contains(action)) {
            static_cast<QToolButton*>(widget())->animateClick();
        }
    }
};

QAccessibleInterface* makeFieldButtonAccessible(const QString& className, QObject* object)
{
    if (className != u"QToolButton"_s || !object->property(pressedLater).toBool()) {
        return nullptr;
    }
    return new FieldButtonAccessible(static_cast<QToolButton*>(object));
}

} // namespace

void pressLater(QToolButton* button)
{
    static const bool installed = [] {
        QAccessible::installFactory(makeFieldButtonAccessible);
        return true;
    }();
    Q_UNUSED(installed)
    button->setProperty(pressedLater, true);
}

} // namespace zul
