// The window behind F1: the keys of the windows.
#pragma once

#include <QDialog>

namespace zul {

/// Shows the guide's table of keys. Escape, Enter on its button and the button close it.
class frmTasti : public QDialog
{
    Q_OBJECT

public:
    explicit frmTasti(QWidget* parent);

    /// F1 anywhere in the form opens the window from now on.
    static void openByF1(QWidget* form);
};

} // namespace zul
