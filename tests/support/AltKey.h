// Alt with a letter, as a person presses it.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QTest>
#include <QWidget>
#include <algorithm>
#include <gtest/gtest.h>

namespace zul::test {

/// Returns when what the key pressed has worked: a button is drawn pressed for a moment before it acts.
inline void pressAlt(QWidget* window, Qt::Key letter)
{
    QTest::keyClick(window, letter, Qt::AltModifier);
    const auto isDown = [] {
        const QWidget* form = QApplication::activeWindow();
        if (form == nullptr) {
            return false;
        }
        const auto buttons = form->findChildren<QAbstractButton*>();
        return std::any_of(buttons.begin(), buttons.end(),
                           [](const auto* button) { return button->isDown(); });
    };
    constexpr int Longest = 5000;
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isDown(); }, Longest));
}

} // namespace zul::test
