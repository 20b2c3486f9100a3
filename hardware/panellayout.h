#pragma once

#include <array>
#include <span>

/// A run of neighbouring buttons on one panel that carry ascending port numbers.
struct PortRun
{
    int firstNumber; ///< Port number of the first button.
    int count;       ///< Buttons in the run.
    int panel;       ///< 1 to 3.
    int firstButton; ///< 1 to 40.
};

/// Where the buttons of one front sit. The LED of a button has the button's own number on its own panel.
struct PanelLayout
{
    int id; ///< FrameDescriptor::layoutId().
    int sourceCount, destinationCount;
    int take, loadPreset, savePreset; ///< Buttons of panel 1.
    bool endsAtLastPort;              ///< Port numbers past the last run have no LED; elsewhere the last run goes on.
    std::array<PortRun, 3> sources;   ///< Unused runs have count 0.
    std::array<PortRun, 3> destinations;

    static constexpr int controlLock = 39; ///< Button of panel 1, on every front.
    static constexpr int destinationLock = 40;
};

// clang-format off
inline constexpr std::array<PanelLayout, 6> panelLayouts{{
    // id src dst take load save ends    sources                                    destinations
    {1,   8,  8,  33,  34,  35, false, {{{1,  8, 1, 1}}},                               {{{1,  8, 1, 17}}}},
    {2,  16, 16,  33,  34,  35, false, {{{1, 16, 1, 1}}},                               {{{1, 16, 1, 17}}}},
    {3,  16, 20,  36,  37,  38, true,  {{{1,  8, 1, 1}, {9,  8, 1, 17}}},               {{{1,  8, 2, 1},  {9, 12, 2, 17}}}},
    {4,  24, 24,  33,  34,  35, false, {{{1,  8, 1, 1}, {9,  8, 1, 17}, {17, 8, 2, 1}}}, {{{1,  8, 2, 17}, {9,  8, 3, 1}, {17, 8, 3, 17}}}},
    {5,  32, 40,  33,  34,  35, false, {{{1, 32, 1, 1}}},                               {{{1, 32, 2, 1},  {33, 8, 3, 1}}}},
    {6,  48, 48,  33,  34,  35, false, {{{1, 32, 1, 1}, {33, 16, 2, 1}}},               {{{1, 16, 2, 17}, {17, 32, 3, 1}}}},
}};
// clang-format on

/// The layout with this id; the smallest front for an id that has none of its own (0).
constexpr const PanelLayout &panelLayout(int layoutId)
{
    for (const PanelLayout &layout : panelLayouts) {
        if (layout.id == layoutId)
            return layout;
    }
    return panelLayouts.front();
}

/// Qt key code of button 1 to 40 on panel 1 to 3: 704 to 823.
constexpr int panelKey(int panel, int button) { return 703 + 40 * (panel - 1) + button; }
static_assert(panelKey(1, 1) == 704 && panelKey(3, 40) == 823);
