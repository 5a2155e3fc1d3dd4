// What the operator clicks and types while a run holds the window.
#pragma once

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

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QWidget> m_form;
};

} // namespace zul
