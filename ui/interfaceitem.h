#pragma once

/// Something that the highlight lights up: it looks normal, hovered or selected.
class InterfaceItem
{
public:
    InterfaceItem() = default;
    virtual ~InterfaceItem() = default;
    InterfaceItem(const InterfaceItem &) = delete;
    InterfaceItem &operator=(const InterfaceItem &) = delete;

    virtual void normal() = 0;
    virtual void hover() = 0;
    virtual void select() = 0;

protected:
    /// The dynamic property that style sheets ask for, and its values.
    static constexpr const char *stateProperty = "state";
    static constexpr const char *normalState = "normal";
    static constexpr const char *hoveredState = "hovered";
    static constexpr const char *selectedState = "selected";
};
