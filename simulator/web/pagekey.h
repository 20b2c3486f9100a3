#pragma once

#include "simulator/hardware/testbed.h"

#include <QString>

#include <compare>
#include <optional>

/// A key of the front that can be held down, as pages name it: "1.17", "push" (the knob) or "escape".
class PageKey
{
public:
    static std::optional<PageKey> named(const QString &name);
    static PageKey ofButton(int panel, int button) { return {panel, button}; }
    /// Nothing for a code that no page knows.
    static std::optional<PageKey> ofKeyboard(int code);

    QString name() const;
    bool isButton() const { return m_panel != 0; }
    int panel() const { return m_panel; }   ///< 1 to 3 for a button.
    int button() const { return m_number; } ///< 1 to 40 for a button.
    int code() const { return m_number; }   ///< For any other key: TestBed::pushKey or escapeKey.

    /// The key goes down or up.
    void set(TestBed &bed, bool pressed) const;

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes what the compiler makes of it for a null
    friend auto operator<=>(const PageKey &, const PageKey &) = default;

private:
    PageKey(int panel, int number)
        : m_panel(panel)
        , m_number(number)
    {
    }

    int m_panel;  // 0 for a key of the keyboard device
    int m_number; // button, or key code
};
