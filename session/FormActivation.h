// When a form's activate handler runs.
#pragma once

#include <QObject>
#include <functional>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// Runs the handler each time the form becomes the active one: when it is shown, and when a message or another
/// window of the process that was active meanwhile has gone. A menu of the form, and another program that was in
/// front for a while, leave the form the active one: who comes back from copying a password elsewhere finds
/// the focus where it was.
class FormActivation : public QObject
{
public:
    /// Owned by the form.
    FormActivation(QWidget* form, std::function<void()> activate);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* m_form;
    std::function<void()> m_activate;
    bool m_wasElsewhere = true; ///< another window of the process was active, or the form was not shown
};

} // namespace zul
