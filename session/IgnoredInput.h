// What the operator clicks and types while a run holds the window.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace zul {

/// From its making to its end, clicks and keys meant for the form come to nothing, also those that waited in the
/// queue because the run let no event through: three clicks on "Ricerca" are one search, and what was pressed
/// meanwhile does not happen behind the operator's back when the run is over. Messages and other windows that the
/// run opens get their input. Closing the form is no input: it is carried out.
class IgnoredInput : public QObject
{
public:
    explicit IgnoredInput(QWidget* form);
    ~IgnoredInput() override;
    IgnoredInput(const IgnoredInput&) = delete;
    IgnoredInput& operator=(const IgnoredInput&) = delete;

    /// Whether Esc was pressed in the form since the making: for a long run that the operator may end. Looks at what
    /// waits in the queue, now and then only, however often it is asked; a close of the form that waits there is
    /// carried out when the run is over.
    bool isEscapePressed();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QWidget> m_form;
    QElapsedTimer m_sinceLooked;
    bool m_looks = false;
    bool m_escape = false;
    bool m_close = false;
};

} // namespace zul
