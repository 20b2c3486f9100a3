// What surrounds the frame: link, power, signals, presets. Controls show what the simulator says, not what was clicked.

import { quoted, setLine } from './commandline.js';
import { Health } from './health.js';

const lcd = '/SYS/CECU/LCD';
const power = '/MANAGEMENT/POWER';

/// A switch of the bench: its field of the `bench` message and the line that each position stands for.
const switches = {
    link: (on) => (on ? 'link restore' : 'link drop'),
    lock: (on) => setLine(`${lcd}.ControlLock`, on),
    autotake: (on) => setLine(`${lcd}.AutoTake`, on),
    standby: (on) => `call ${power}:${on ? 'standby' : 'wakeUp'}()`,
    psu1: (on) => setLine(`${power}.Psu1`, on ? 'running' : 'stopped'),
    psu2: (on) => setLine(`${power}.Psu2`, on ? 'running' : 'stopped'),
};

export class Bench {
    #connection;
    #answer = document.getElementById('answer');
    #frame = document.getElementById('frame');
    #upgrade = document.getElementById('upgrade-bar');
    #upgradeText = document.getElementById('upgrade-text');
    #presets = document.getElementById('presets');
    #row = 0;

    constructor(connection) {
        this.#connection = connection;
        connection.on('device', (device) => this.#showFrames(device));
        connection.on('bench', (state) => this.#show(state));
        this.#frame.addEventListener('change', () => {
            const row = Number(this.#frame.value);
            this.#frame.value = this.#row; // until the device has become another one
            connection.send({ type: 'frame', row });
        });
        for (const [field, line] of Object.entries(switches))
            this.#wireSwitch(document.getElementById(field), line);
        this.#wireForms();
        for (const id of ['inputs', 'outputs'])
            this.#wireSignals(document.getElementById(id));
        new Health((command) => this.#run(command));
    }

    /// Runs a line and shows its answer.
    async #run(line) {
        this.#answer.dataset.kind = 'busy';
        this.#answer.textContent = `Running: ${line}`;
        const result = await this.#connection.command(line);
        this.#showAnswer(result, line);
        return result;
    }

    #showAnswer({ ok, text }, line) {
        this.#answer.dataset.kind = ok ? 'good' : 'bad';
        this.#answer.textContent = text || (ok ? `Done: ${line}` : `Failed: ${line}`);
    }

    #showFrames({ row, frames }) {
        this.#row = row;
        if (this.#frame.options.length !== frames.length)
            this.#frame.replaceChildren(...frames.map((frame) => new Option(
                `${frame.row}: ${frame.partNumber}, ${frame.inputs} × ${frame.outputs}`, frame.row)));
        this.#frame.value = row;
    }

    #show(state) {
        for (const field of Object.keys(switches))
            document.getElementById(field).checked = state[field];
        const isUpgrading = state.upgrade >= 0;
        this.#upgrade.value = isUpgrading ? state.upgrade : 0;
        this.#upgradeText.textContent = isUpgrading ? `${state.upgrade} %` : 'none';
        this.#showPresets(state.presets);
        showSignals(document.getElementById('inputs'), 'Input', state.inputSignals);
        showSignals(document.getElementById('outputs'), 'Output', state.outputSignals);
    }

    #showPresets(names) {
        const shown = [...this.#presets.options].map((option) => option.value);
        if (JSON.stringify(names) === JSON.stringify(shown))
            return; // the list may be open
        const kept = this.#presets.value;
        this.#presets.replaceChildren(...names.map((name) => new Option(name, name)));
        this.#presets.value = names.includes(kept) ? kept : names[0] ?? '';
    }

    #wireSwitch(box, line) {
        box.addEventListener('click', (event) => {
            event.preventDefault(); // it moves when the device has changed
            this.#run(line(box.checked));
        });
    }

    #wireForms() {
        const field = (id) => document.getElementById(id).value;
        this.#onSubmit('upgrade-form', () => `upgrade ${Number(field('upgrade-seconds'))}`);
        this.#onSubmit('message-form', () => setLine(`${lcd}.Message`, field('message')));
        this.#onSubmit('preset-form', () => `preset add ${quoted(field('preset-name').trim())}`);
        this.#onSubmit('preset-list-form', () => `preset remove ${quoted(field('presets'))}`);
        this.#onSubmit('console-form', () => field('console'));
        document.getElementById('message-clear').addEventListener('click', () => {
            document.getElementById('message').value = '';
            this.#run(setLine(`${lcd}.Message`, ''));
        });
    }

    #onSubmit(id, line) {
        document.getElementById(id).addEventListener('submit', (event) => {
            event.preventDefault();
            this.#run(line());
        });
    }

    #wireSignals(area) {
        area.addEventListener('click', (event) => {
            const button = event.target.closest('button');
            if (!button)
                return;
            const isPresent = button.getAttribute('aria-pressed') === 'true';
            this.#run(setLine(`/MEDIA/PORTS/VIDEO/${button.dataset.port}/STATUS.SignalPresent`, !isPresent));
        });
    }
}

/// A small button for each port, pressed where a signal is.
function showSignals(area, word, signals) {
    if (area.childElementCount !== signals.length)
        area.replaceChildren(...signals.map((_, index) => {
            const button = document.createElement('button');
            button.type = 'button';
            button.textContent = index + 1;
            button.dataset.port = `${word[0]}${index + 1}`;
            button.setAttribute('aria-label', `${word} ${index + 1}: signal present`);
            return button;
        }));
    signals.forEach((isPresent, index) => area.children[index].setAttribute('aria-pressed', isPresent));
}
