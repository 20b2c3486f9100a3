// The button panels: forty keys each, with their LEDs.

import { keyLabel, keyName, ledWords } from './keynames.js';
import { makePressable } from './pressable.js';

const columns = 8;

export class Panels {
    #area;
    #holds;
    #buttons = new Map(); // key -> {element, name}
    #shown = '';

    constructor(area, connection, holds) {
        this.#area = area;
        this.#holds = holds;
        area.addEventListener('contextmenu', (event) => event.preventDefault()); // a long touch is a long press
        connection.on('device', (device) => this.#show(device.panels));
        connection.on('leds', ({ panels }) => panels.forEach((values, panel) =>
            values.forEach((value, index) => this.#setLed(`${panel + 1}.${index + 1}`, value))));
        connection.on('led', ({ key, value }) => this.#setLed(key, value));
        connection.on('held', ({ keys }) => this.#showHeld(new Set(keys)));
    }

    #show(panels) {
        const wanted = JSON.stringify(panels);
        if (wanted === this.#shown)
            return; // the same front after a reconnection: the focus stays where it is
        this.#shown = wanted;
        this.#buttons.clear();
        this.#area.dataset.panels = panels.length;
        this.#area.replaceChildren(...panels.map((buttons, index) => this.#panel(buttons, index + 1)));
    }

    #panel(buttons, number) {
        const panel = document.createElement('div');
        panel.className = 'panel plate';
        panel.setAttribute('role', 'group');
        panel.setAttribute('aria-label', `Panel ${number}`);
        const grid = document.createElement('div');
        grid.className = 'grid';
        grid.append(...buttons.map((button) => this.#key(button)));
        panel.append(grid);
        walkWithArrows(grid);
        return panel;
    }

    #key(button) {
        const element = document.createElement('button');
        element.type = 'button';
        element.className = `key ${button.role}`;
        element.dataset.key = button.key;
        const led = document.createElement('span');
        led.className = 'led';
        const label = document.createElement('span');
        label.className = 'label';
        const { prefix, lines } = keyLabel(button);
        if (prefix)
            label.append(Object.assign(document.createElement('small'), { textContent: prefix }));
        label.append(...lines.map((line) => Object.assign(document.createElement('span'), { textContent: line })));
        label.classList.toggle('words', !prefix);
        element.append(led, label);
        makePressable(element, button.key, this.#holds);
        this.#buttons.set(button.key, { element, name: keyName(button) });
        this.#setLed(button.key, 0);
        return element;
    }

    #setLed(key, value) {
        const button = this.#buttons.get(key);
        if (!button)
            return;
        button.element.dataset.led = value;
        button.element.setAttribute('aria-label', `${button.name}, ${ledWords[value] ?? value}`);
    }

    #showHeld(keys) {
        for (const [key, { element }] of this.#buttons) {
            element.toggleAttribute('data-held', keys.has(key));
            if (keys.has(key))
                element.setAttribute('aria-description', 'held down');
            else
                element.removeAttribute('aria-description');
        }
    }
}

/// One stop of the Tab key for the whole panel; the arrow keys go from key to key.
function walkWithArrows(grid) {
    const keys = [...grid.children];
    const steps = { ArrowLeft: -1, ArrowRight: 1, ArrowUp: -columns, ArrowDown: columns, Home: -keys.length, End: keys.length };
    keys.forEach((key, index) => { key.tabIndex = index === 0 ? 0 : -1; });
    grid.addEventListener('focusin', (event) => {
        const focused = event.target.closest('.key');
        for (const key of keys)
            key.tabIndex = key === focused ? 0 : -1;
    });
    grid.addEventListener('keydown', (event) => {
        const step = steps[event.key];
        if (step === undefined)
            return;
        event.preventDefault();
        event.stopPropagation(); // not the knob's
        const from = keys.indexOf(event.target.closest('.key'));
        const to = from + step;
        if (Math.abs(step) === keys.length)
            keys[step < 0 ? 0 : keys.length - 1].focus();
        else if (to >= 0 && to < keys.length)
            keys[to].focus();
    });
}
