// The computer's keyboard as keys of the front. Keys are told by their place (`code`), so that every language's
// keyboard works alike.

const sourceCodes = ['Digit1', 'Digit2', 'Digit3', 'Digit4', 'Digit5', 'Digit6', 'Digit7', 'Digit8', 'Digit9', 'Digit0',
    'Minus', 'Equal'];
const destinationCodes = ['KeyQ', 'KeyW', 'KeyE', 'KeyR', 'KeyT', 'KeyY', 'KeyU', 'KeyI', 'KeyO', 'KeyP', 'BracketLeft',
    'BracketRight'];
const functionCodes = {
    Space: 'take',
    KeyL: 'load',
    KeyS: 'save',
    KeyK: 'panel-lock',
    KeyD: 'destination-lock',
};
const knobCodes = { Enter: 'push', NumpadEnter: 'push', Escape: 'escape' };
const bankSize = sourceCodes.length;

export class Keyboard extends EventTarget {
    #holds;
    #knob;
    #keys = new Map(); // "source 3" -> "1.3"
    #down = new Map(); // code -> the key of the front that it holds
    #ports = 0;
    #bank = 0;

    constructor(connection, holds, knob) {
        super();
        this.#holds = holds;
        this.#knob = knob;
        connection.on('device', (device) => this.#learn(device));
        document.addEventListener('keydown', (event) => this.#press(event));
        document.addEventListener('keyup', (event) => this.#release(event));
    }

    /// The ports that the two rows of keys stand for: {first, last}.
    get bank() {
        const first = this.#bank * bankSize + 1;
        return { first, last: Math.min(first + bankSize - 1, Math.max(this.#ports, first)) };
    }

    stepBank(by) {
        const banks = Math.max(1, Math.ceil(this.#ports / bankSize));
        this.#bank = (this.#bank + by + banks) % banks;
        this.dispatchEvent(new Event('bank'));
    }

    #learn(device) {
        const buttons = device.panels.flat();
        this.#keys = new Map(buttons.map(({ key, role, number }) => [number ? `${role} ${number}` : role, key]));
        this.#ports = Math.max(...buttons.map(({ number }) => number));
        this.stepBank(this.#bank * bankSize < this.#ports ? 0 : -this.#bank);
    }

    #press(event) {
        if (event.defaultPrevented || event.ctrlKey || event.altKey || event.metaKey || isBusy(event.target))
            return;
        if (event.key === '?') // before its place: on some keyboards it shares one with a source
            return;
        const onControl = event.target.closest?.('button, a, input, summary, [tabindex]:not(main)');
        if (!onControl && this.#knob.handleArrow(event))
            return;
        if (event.code === 'Comma' || event.code === 'Period') {
            if (!event.repeat)
                this.stepBank(event.code === 'Comma' ? -1 : 1);
            return;
        }
        if (onControl && (event.code === 'Space' || knobCodes[event.code] === 'push'))
            return; // they belong to the control that has the focus
        const key = this.#keyOf(event.code);
        if (!key)
            return;
        event.preventDefault();
        if (event.repeat)
            return;
        if (event.shiftKey || this.#holds.isLatched(key)) {
            this.#holds.toggleLatch(key);
            return;
        }
        this.#down.set(event.code, key);
        this.#holds.press(key, event.code);
    }

    #release(event) {
        const key = this.#down.get(event.code);
        this.#down.delete(event.code);
        if (key)
            this.#holds.release(key, event.code);
    }

    #keyOf(code) {
        if (knobCodes[code])
            return knobCodes[code];
        if (functionCodes[code])
            return this.#keys.get(functionCodes[code]);
        for (const [role, codes] of [['source', sourceCodes], ['destination', destinationCodes]]) {
            const index = codes.indexOf(code);
            if (index >= 0)
                return this.#keys.get(`${role} ${this.#bank * bankSize + index + 1}`);
        }
        return undefined;
    }
}

/// Typing there means text or a choice, not keys of the front.
function isBusy(target) {
    return Boolean(target.closest?.('select, textarea, dialog, input:not([type=checkbox])'));
}
