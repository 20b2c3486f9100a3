#include "frontpanel/basiclayout.h"

#include "frontpanel/controlpanelhandler.h"

#include <algorithm>

namespace {

constexpr int pressed = 1;
constexpr int released = 0;

bool isFunctionButton(FrontEvent event, int button, int value)
{
    return event.source == FrontEvent::Button && event.value == value && event.code == panelKey(1, button);
}

int firstKey(const PortRun &run) { return panelKey(run.panel, run.firstButton); }

bool isPortButton(FrontEvent event, const std::array<PortRun, 3> &runs)
{
    return event.source == FrontEvent::Button && event.value == pressed
        && std::any_of(runs.begin(), runs.end(), [&event](const PortRun &run) {
               return event.code >= firstKey(run) && event.code < firstKey(run) + run.count;
           });
}

/// The first run that does not end before what is looked for, else the last one.
template <typename EndsAfter> const PortRun &findRun(const std::array<PortRun, 3> &runs, EndsAfter endsAfter)
{
    const auto unused = std::find_if(runs.begin(), runs.end(), [](const PortRun &run) { return run.count == 0; });
    return *std::find_if(runs.begin(), std::prev(unused), endsAfter);
}

int portNumber(FrontEvent event, const std::array<PortRun, 3> &runs)
{
    const PortRun &run
        = findRun(runs, [&event](const PortRun &each) { return event.code < firstKey(each) + each.count; });
    return event.code - firstKey(run) + run.firstNumber;
}

} // namespace

BasicLayout::BasicLayout(const PanelLayout &table, const Panels &panels)
    : m_table(table)
    , m_panels(panels)
{
}

void BasicLayout::setTakeLed(int value) { m_panels[0]->setLed(m_table.take, value); }
void BasicLayout::setControlLockLed(int value) { m_panels[0]->setLed(PanelLayout::controlLock, value); }
void BasicLayout::setDestinationLockLed(int value) { m_panels[0]->setLed(PanelLayout::destinationLock, value); }
void BasicLayout::setLoadPresetLed(int value) { m_panels[0]->setLed(m_table.loadPreset, value); }
void BasicLayout::setSavePresetLed(int value) { m_panels[0]->setLed(m_table.savePreset, value); }
void BasicLayout::setInputLed(int input, int value) { setPortLed(m_table.sources, input, value); }
void BasicLayout::setOutputLed(int output, int value) { setPortLed(m_table.destinations, output, value); }

void BasicLayout::setPortLed(const Runs &runs, int number, int value)
{
    const PortRun &run
        = findRun(runs, [number](const PortRun &each) { return number < each.firstNumber + each.count; });
    const int index = number - run.firstNumber;
    if (m_table.endsAtLastPort && index >= run.count)
        return;
    m_panels[static_cast<size_t>(run.panel - 1)]->setLed(run.firstButton + index, value);
}

void BasicLayout::showProgress(int position)
{
    const int sources = m_table.sourceCount;
    for (int i = 1; i <= sources + m_table.destinationCount; ++i) {
        const int value = i < position ? 1 : i == position ? 2 : 0;
        if (i <= sources)
            setInputLed(i, value);
        else
            setOutputLed(i - sources, value);
    }
}

void BasicLayout::clearLeds(const Runs &runs)
{
    for (const PortRun &run : runs) {
        for (int i = 0; i < run.count; ++i)
            m_panels[static_cast<size_t>(run.panel - 1)]->setLed(run.firstButton + i, 0);
    }
}

void BasicLayout::clearInputLeds() { clearLeds(m_table.sources); }

void BasicLayout::clearPortLeds()
{
    clearLeds(m_table.sources);
    clearLeds(m_table.destinations);
}

bool BasicLayout::isControlLockPressed(FrontEvent event) const
{
    return isFunctionButton(event, PanelLayout::controlLock, pressed);
}

bool BasicLayout::isControlLockReleased(FrontEvent event) const
{
    return isFunctionButton(event, PanelLayout::controlLock, released);
}

bool BasicLayout::isTakePressed(FrontEvent event) const { return isFunctionButton(event, m_table.take, pressed); }
bool BasicLayout::isTakeReleased(FrontEvent event) const { return isFunctionButton(event, m_table.take, released); }

bool BasicLayout::isDestinationLockPressed(FrontEvent event) const
{
    return isFunctionButton(event, PanelLayout::destinationLock, pressed);
}

bool BasicLayout::isLoadPresetPressed(FrontEvent event) const
{
    return isFunctionButton(event, m_table.loadPreset, pressed);
}

bool BasicLayout::isSavePresetPressed(FrontEvent event) const
{
    return isFunctionButton(event, m_table.savePreset, pressed);
}

bool BasicLayout::isInputButton(FrontEvent event) const { return isPortButton(event, m_table.sources); }
bool BasicLayout::isOutputButton(FrontEvent event) const { return isPortButton(event, m_table.destinations); }
int BasicLayout::inputNumber(FrontEvent event) const { return portNumber(event, m_table.sources); }
int BasicLayout::outputNumber(FrontEvent event) const { return portNumber(event, m_table.destinations); }
