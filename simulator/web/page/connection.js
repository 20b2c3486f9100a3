// The WebSocket to the simulator. It comes back by itself; whoever listens gets the whole picture anew then.

const shortestPause = 250; // ms
const longestPause = 2000;
const patience = 5000; // a tunnel may accept and then say nothing

export class Connection extends EventTarget {
    #socket = null;
    #pause = shortestPause;
    #pending = new Map(); // id -> what waits for this result
    #nextId = 1;

    /// Calls back with every message of this type. "picture": an ArrayBuffer. "connection": {state, pause, reason},
    /// state "connecting", "open" or "lost".
    on(type, callback) {
        this.addEventListener(type, (event) => callback(event.detail));
    }

    open() {
        this.#tell('connection', { state: 'connecting' });
        const scheme = location.protocol === 'https:' ? 'wss:' : 'ws:';
        const socket = new WebSocket(`${scheme}//${location.host}/front`);
        socket.binaryType = 'arraybuffer';
        this.#socket = socket;
        const giveUp = setTimeout(() => socket.close(), patience);
        socket.onopen = () => {
            clearTimeout(giveUp);
            this.#tell('connection', { state: 'open' });
        };
        socket.onmessage = (event) => this.#receive(event.data);
        socket.onclose = (event) => {
            clearTimeout(giveUp);
            this.#lost(event);
        };
    }

    /// @return false where there is no connection: nothing is kept for later.
    send(message) {
        if (this.#socket?.readyState !== WebSocket.OPEN)
            return false;
        this.#socket.send(JSON.stringify(message));
        return true;
    }

    /// Sends a message that is answered by a result; a lost connection answers too.
    async ask(message) {
        const id = this.#nextId++;
        if (!this.send({ ...message, id }))
            return { ok: false, text: 'There is no connection to the simulator.' };
        return new Promise((resolve) => this.#pending.set(id, resolve));
    }

    /// A line of the console.
    command(line) {
        return this.ask({ type: 'command', line });
    }

    #receive(data) {
        if (typeof data !== 'string') {
            this.#tell('picture', data);
            return;
        }
        const message = JSON.parse(data);
        if (message.type === 'device')
            this.#pause = shortestPause; // it speaks, so the next loss is a new one
        const waiting = message.type === 'result' && this.#pending.get(message.id);
        if (waiting) {
            this.#pending.delete(message.id);
            waiting(message);
            return;
        }
        this.#tell(message.type, message);
    }

    #lost(event) {
        for (const resolve of this.#pending.values())
            resolve({ ok: false, text: 'The connection went before the answer came.' });
        this.#pending.clear();
        this.#tell('connection', { state: 'lost', pause: this.#pause, reason: reasonOf(event) });
        setTimeout(() => this.open(), this.#pause);
        this.#pause = Math.min(2 * this.#pause, longestPause);
    }

    #tell(type, detail) {
        this.dispatchEvent(new CustomEvent(type, { detail }));
    }
}

function reasonOf(event) {
    switch (event.code) {
    case 1013:
        return 'The simulator serves as many pages as it can.';
    case 1003:
    case 1007:
    case 1009:
        return `The simulator refused a message of this page${event.reason ? `: ${event.reason}` : ''}.`;
    default:
        return 'The connection to the simulator is lost.';
    }
}
