// Beside the knob: Escape, the latch, what is held, and the ports that the keyboard's rows stand for.

import { heldName } from './keynames.js';
import { makePressable } from './pressable.js';

export class FrontTools {
    #holds;
    #keyboard;
    #device = null;
    #escape = document.getElementById('escape');
    #latch = document.getElementById('latch');
    #releaseAll = document.getElementById('release-all');
    #held = document.getElementById('held');
    #bank = document.getElementById('bank');

    constructor(connection, holds, keyboard) {
        this.#holds = holds;
        this.#keyboard = keyboard;
        makePressable(this.#escape, 'escape', holds);
        connection.on('device', (device) => { this.#device = device; });
        connection.on('held', ({ keys }) => this.#showHeld(keys));
        this.#latch.addEventListener('click', () => {
            holds.latching = !holds.latching;
            this.#latch.setAttribute('aria-pressed', holds.latching);
        });
        this.#releaseAll.addEventListener('click', () => holds.releaseAll());
        holds.addEventListener('change', () => { this.#releaseAll.disabled = holds.latched.length === 0; });
        keyboard.addEventListener('bank', () => this.#showBank());
        document.getElementById('bank-down').addEventListener('click', () => keyboard.stepBank(-1));
        document.getElementById('bank-up').addEventListener('click', () => keyboard.stepBank(1));
        this.#showBank();
    }

    #showHeld(keys) {
        this.#held.textContent = keys.map((key) => heldName(key, this.#device)).join(', ') || 'nothing';
        this.#escape.toggleAttribute('data-held', keys.includes('escape'));
    }

    #showBank() {
        const { first, last } = this.#keyboard.bank;
        this.#bank.textContent = `${first}–${last}`;
    }
}
