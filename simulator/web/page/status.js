// How it stands with the connection and with the program.

export class Status {
    #line = document.getElementById('state');
    #notice = document.getElementById('notice');
    #end = document.getElementById('program-end');
    #endText = document.getElementById('program-text');
    #restart = document.getElementById('restart');
    #connection = 'connecting';
    #program = null;

    constructor(connection) {
        connection.on('connection', (change) => this.#connectionChanged(change));
        connection.on('program', (program) => {
            this.#program = program;
            this.#showProgram();
        });
        connection.on('result', ({ ok, text }) => {
            if (!ok)
                this.complain(text); // of a message that asked for no answer
        });
        this.#restart.addEventListener('click', async () => {
            this.#restart.disabled = true; // it is busy until the answer comes
            const { ok, text } = await connection.command('restart');
            this.#restart.disabled = false;
            if (!ok)
                this.complain(text);
        });
        document.getElementById('notice-close').addEventListener('click', () => this.complain(''));
    }

    /// Shows what went wrong until it is closed; an empty text takes it away.
    complain(text) {
        this.#notice.hidden = !text;
        document.getElementById('notice-text').textContent = text;
    }

    #connectionChanged({ state, pause, reason }) {
        if (state === 'connecting' && this.#connection === 'lost')
            return; // "lost" says already that it tries again
        this.#connection = state;
        document.body.dataset.connection = state;
        if (state === 'lost')
            this.#say(`${reason} Trying again every ${pause / 1000} s.`, 'bad');
        else if (state === 'connecting')
            this.#say('Connecting…', 'busy');
        else
            this.#showProgram();
    }

    #showProgram() {
        const { state, text = '' } = this.#program ?? {};
        this.#end.hidden = state !== 'ended';
        if (this.#endText.textContent !== text)
            this.#endText.textContent = text;
        if (this.#connection !== 'open')
            return;
        if (state === 'ended')
            this.#say('Connected. The program has ended.', 'bad');
        else if (state === 'none')
            this.#say('Connected. A device without program.', 'busy');
        else
            this.#say('Connected', 'good');
    }

    #say(text, kind) {
        this.#line.dataset.kind = kind;
        if (this.#line.textContent !== text)
            this.#line.textContent = text;
    }
}
