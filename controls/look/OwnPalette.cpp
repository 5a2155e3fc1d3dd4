#include "controls/look/OwnPalette.h"

#include "controls/look/CommonLook.h"

#include <QEvent>
#include <QWidget>

namespace zul {

namespace {

void givePalette(QWidget* widget)
{
    const bool hasOwn = widget->testAttribute(Qt::WA_SetPalette);
    widget->setPalette(hasOwn ? widget->palette().resolve(commonPalette()) : commonPalette());
}

} // namespace

void OwnPalette::keep(QWidget* form)
{
    if (form->findChild<OwnPalette*>(QString(), Qt::FindDirectChildrenOnly) == nullptr) {
        new OwnPalette(form);
    }
}

OwnPalette::OwnPalette(QWidget* form)
    : QObject(form)
{
    take(form, true);
}

void OwnPalette::take(QObject* object, bool made)
{
    if (!object->isWidgetType()) {
        return;
    }
    auto* widget = static_cast<QWidget*>(object);
    widget->installEventFilter(this);
    if (made || widget->testAttribute(Qt::WA_WState_Polished)) {
        givePalette(widget);
    }
    for (QObject* child : widget->children()) {
        take(child, made);
    }
}

bool OwnPalette::eventFilter(QObject* watched, QEvent* event)
{
    // Before the style's own polish, which puts the colours of the style sheet on top.
    if (event->type() == QEvent::Polish && watched->isWidgetType()) {
        givePalette(static_cast<QWidget*>(watched));
    }
    if (event->type() == QEvent::ChildAdded) {
        take(static_cast<QChildEvent*>(event)->child(), false);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zul
