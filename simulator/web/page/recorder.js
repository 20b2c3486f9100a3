// Turns what is pressed into a script that the simulator can replay.

import { saveFile, stampedName } from './save.js';

export class Recorder {
    #connection;
    #button = document.getElementById('record');
    #state = document.getElementById('record-state');
    #download = document.getElementById('record-save');
    #isOn = false;
    #script = '';

    /// @param complain shows a text to the person.
    constructor(connection, complain) {
        this.#connection = connection;
        connection.on('recording', ({ on, lines }) => this.#show(on, lines));
        this.#button.addEventListener('click', () => this.#toggle(complain));
        this.#download.addEventListener('click', () =>
            saveFile(new Blob([this.#script], { type: 'text/plain' }), stampedName('recorded', 'script')));
    }

    #show(on, lines) {
        this.#isOn = on;
        this.#button.textContent = on ? 'Stop recording' : 'Record a script';
        this.#button.toggleAttribute('data-on', on);
        this.#state.textContent = on ? `recording, ${lines} ${lines === 1 ? 'line' : 'lines'}` : '';
    }

    async #toggle(complain) {
        if (!this.#isOn) {
            this.#connection.send({ type: 'start-recording', id: 0 }); // answered by `recording`
            return;
        }
        const { ok, text } = await this.#connection.ask({ type: 'stop-recording' });
        if (ok) {
            this.#script = text;
            this.#download.hidden = false;
        } else {
            complain(text);
        }
    }
}
