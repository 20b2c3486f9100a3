#pragma once

/// Something that the highlight lights up: it looks normal, hovered or selected.
class InterfaceItem
{
public:
    InterfaceItem() = default;
    virtual ~InterfaceItem() = default;
    InterfaceItem(const InterfaceItem &) = delete;
    InterfaceItem &operator=(const InterfaceItem &) = delete;

    /// The highlight is elsewhere.
    virtual void normal() = 0;
    /// The highlight is here.
    virtual void hover() = 0;
    /// The knob was pushed.
    virtual void select() = 0;

    /// The dynamic property that style sheets ask for, and its values.
    static constexpr const char *stateProperty = "state";
    static constexpr const char *normalState = "normal";
    static constexpr const char *hoveredState = "hovered";
    static constexpr const char *selectedState = "selected";
};
