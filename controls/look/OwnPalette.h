// The palette of the component's windows, on every control in them.
#pragma once

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// Gives the common palette to every widget in a form, the ones that come later included, and to the menus, lists and
/// other windows that belong to them. A widget that a style sheet reaches takes nothing from its parent: what the
/// style sheet leaves out would come from the palette of the system, which may be dark. What a widget has set itself
/// stays.
class OwnPalette : public QObject
{
    Q_OBJECT

public:
    /// Once for a form; again, it does nothing.
    static void keep(QWidget* form);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit OwnPalette(QWidget* form);
    /// What is `made` has its palette at once; what is only being made gets it when it is first polished.
    void take(QObject* object, bool made);
};

} // namespace zul
