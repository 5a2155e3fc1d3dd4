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

/// Whether a colour of the common palette is neither set on the control nor set otherwise.
bool lacksPalette(const QWidget& widget)
{
    const auto all = commonPalette().resolveMask();
    return (widget.palette().resolveMask() & all) != all;
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
    // Before the style's own polish, which puts the colours of the style sheet on top. A style that is taken off again, as
    // for another style sheet or another property, puts back what the control had before it: that may be the system's.
    if (watched->isWidgetType() &&
        (event->type() == QEvent::Polish ||
         (event->type() == QEvent::PaletteChange && lacksPalette(*static_cast<const QWidget*>(watched))))) {
        givePalette(static_cast<QWidget*>(watched));
    }
    if (event->type() == QEvent::ChildAdded) {
        take(static_cast<QChildEvent*>(event)->child(), false);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zul
