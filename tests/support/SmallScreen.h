// Whether a window stands on the screen, and all that is on it can be reached.
#pragma once

#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QWidget>
#include <gtest/gtest.h>

namespace zul::test {

inline void expectOnScreen(const QWidget& window)
{
    const QRect room = window.screen()->availableGeometry();
    EXPECT_LE(window.frameGeometry().width(), room.width());
    EXPECT_LE(window.frameGeometry().height(), room.height());
}

/// The button can be brought into sight, whole.
inline void expectReachable(QPushButton* button)
{
    for (QWidget* around = button->parentWidget(); around != nullptr; around = around->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(around)) {
            area->ensureWidgetVisible(button);
        }
    }
    EXPECT_EQ(button->visibleRegion().boundingRect(), button->rect()) << button->objectName().toStdString();
}

} // namespace zul::test
