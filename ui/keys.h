#pragma once

#include <QKeyEvent>

// What the keys mean to an item that has the keyboard, and to a screen that has it. The encoder posts D and A for a
// detent, E and Q for one of a fast turn.

/// How far a key turns a wheel: 1 or 10 steps, up or down; 0 for a key that turns nothing.
constexpr int wheelSteps(int key)
{
    switch (key) {
    case Qt::Key_D:
    case Qt::Key_Up: return 1;
    case Qt::Key_E:
    case Qt::Key_PageUp: return 10;
    case Qt::Key_A:
    case Qt::Key_Down: return -1;
    case Qt::Key_Q:
    case Qt::Key_PageDown: return -10;
    default: return 0;
    }
}

// In a list the turn that makes a number larger goes down; the arrows go where they point.
constexpr bool isNextKey(int key)
{
    return key == Qt::Key_Down || key == Qt::Key_PageDown || key == Qt::Key_D || key == Qt::Key_E;
}
constexpr bool isPreviousKey(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_PageUp || key == Qt::Key_A || key == Qt::Key_Q;
}

/// One of those that a fast turn posts, and the pages of a keyboard.
constexpr bool isFastKey(int key)
{
    return key == Qt::Key_E || key == Qt::Key_Q || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

/// The push of the knob, and the Enter of a keyboard.
constexpr bool isConfirm(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }
