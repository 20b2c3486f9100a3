// panel-simulator as a test starts it: with its page on a free port, and the console at its standard input.

import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { createInterface } from 'node:readline';

const program = process.env.PANEL_SIMULATOR;

export class Simulator {
    /// @param frame model; @param port of the page, 0 for any free one.
    static async start(frame, port = 0) {
        const process = spawn(program, ['--frame', String(frame), '--http-port', String(port), '--no-open'],
            { stdio: ['pipe', 'pipe', 'inherit'] });
        const simulator = new Simulator();
        simulator.#process = process;
        for await (const line of createInterface({ input: process.stdout })) {
            simulator.address = /page: (http:\S+)/.exec(line)?.[1] ?? simulator.address;
            if (simulator.address)
                break;
        }
        if (!simulator.address)
            throw new Error('panel-simulator ended before it served its page');
        process.stdout.resume();
        await simulator.post('wait-ready');
        return simulator;
    }

    #process;
    address;

    get pid() { return this.#process.pid; }

    /// Runs console lines. @return the text of the last one.
    async post(...lines) {
        const response = await fetch(`${this.address}/command`, { method: 'POST', body: lines.join('\n') });
        const { ok, results } = await response.json();
        const last = results.at(-1);
        if (!ok)
            throw new Error(`${last.line}: ${last.text}`);
        return last.text;
    }

    async get(path) {
        return Buffer.from(await (await fetch(this.address + path)).arrayBuffer());
    }

    /// As a person who has seen enough. @return the exit code.
    async quit() {
        this.#process.stdin.end('quit\n');
        return this.#ended();
    }

    /// As the machine's power does.
    async kill() {
        this.#process.kill('SIGKILL');
        return this.#ended();
    }

    async #ended() {
        if (this.#process.exitCode === null && this.#process.signalCode === null)
            await once(this.#process, 'exit');
        return this.#process.exitCode;
    }
}
