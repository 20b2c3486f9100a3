// The lines between program and device, and the program's own messages.

import { saveFile, stampedName } from './save.js';

const mostKept = 5000;
const mostShown = 1000;
const short = { request: 'REQ', answer: 'ANS', message: 'MSG' };

export class Log {
    #area = document.getElementById('lines');
    #text = document.getElementById('log-text');
    #path = document.getElementById('log-path');
    #directions = [...document.querySelectorAll('[data-direction-filter]')];
    #pause = document.getElementById('log-pause');
    #count = document.getElementById('log-count');
    #lines = [];
    #pausedAt = null; // number of the last line shown
    #isFirst = true; // of the lines after (re)connecting, which may be known already
    #isAtEnd = true;

    constructor(connection) {
        connection.on('device', () => { this.#isFirst = true; });
        connection.on('log', ({ lines }) => this.#add(lines));
        this.#area.addEventListener('scroll', () => { this.#isAtEnd = isAtEnd(this.#area); });
        new ResizeObserver(() => this.#follow()).observe(this.#area); // as when it is brought to view
        for (const filter of [this.#text, this.#path, ...this.#directions])
            filter.addEventListener('input', () => this.#showAll());
        this.#pause.addEventListener('click', () => this.#togglePause());
        document.getElementById('log-clear').addEventListener('click', () => {
            this.#lines = [];
            this.#showAll();
        });
        document.getElementById('log-save').addEventListener('click', () => this.#save());
    }

    #add(lines) {
        if (this.#isFirst)
            lines = this.#unknown(lines);
        this.#isFirst = false;
        this.#lines.push(...lines);
        const tooMany = this.#lines.length - mostKept;
        if (tooMany > 0)
            this.#lines.splice(0, tooMany);
        if (this.#pausedAt === null)
            this.#append(lines);
        this.#showCount();
    }

    /// Those that came while there was no connection. A device that began anew counts its lines anew.
    #unknown(lines) {
        const last = this.#lines.at(-1);
        const again = last && lines.find(({ n }) => n === last.n);
        const goesOn = last && (again ? again.text === last.text : lines[0]?.n > last.n);
        if (goesOn)
            return lines.filter(({ n }) => n > last.n);
        this.#lines = [];
        this.#pausedAt = this.#pausedAt === null ? null : 0;
        this.#area.replaceChildren();
        return lines;
    }

    #passes({ direction, text }) {
        const has = (hay, field) => hay.toLowerCase().includes(field.value.trim().toLowerCase());
        return this.#directions.find((box) => box.dataset.directionFilter === direction)?.checked !== false
            && has(text, this.#text) && has(pathOf(text), this.#path);
    }

    #append(lines) {
        const fresh = lines.filter((line) => this.#passes(line)).slice(-mostShown);
        if (fresh.length === 0)
            return;
        const area = this.#area;
        area.append(...fresh.map(lineElement));
        for (let tooMany = area.childElementCount - mostShown; tooMany > 0; --tooMany)
            area.firstElementChild.remove();
        this.#follow();
    }

    #follow() {
        if (this.#isAtEnd)
            this.#area.scrollTop = this.#area.scrollHeight; // who has scrolled back is reading
    }

    #showAll() {
        this.#area.replaceChildren();
        this.#append(this.#lines.filter(({ n }) => this.#pausedAt === null || n <= this.#pausedAt));
        this.#showCount();
    }

    #togglePause() {
        const waiting = this.#waiting();
        this.#pausedAt = this.#pausedAt === null ? this.#lines.at(-1)?.n ?? 0 : null;
        this.#pause.setAttribute('aria-pressed', this.#pausedAt !== null);
        if (this.#pausedAt === null)
            this.#append(waiting);
        this.#showCount();
    }

    #waiting() {
        return this.#pausedAt === null ? [] : this.#lines.filter(({ n }) => n > this.#pausedAt);
    }

    #showCount() {
        const waiting = this.#waiting().length;
        this.#count.textContent = this.#pausedAt === null ? '' : `${waiting}${waiting >= mostKept ? ' or more' : ''} waiting`;
    }

    /// What the filter lets through, those that wait included.
    #save() {
        const lines = this.#lines.filter((line) => this.#passes(line))
            .map(({ n, direction, text }) => `${n}\t${direction}\t${text}\n`);
        saveFile(new Blob(lines, { type: 'text/plain' }), stampedName('log', 'txt'));
    }
}

function isAtEnd(area) {
    return area.scrollHeight - area.scrollTop - area.clientHeight < 8;
}

/// "/SYS/CECU/LCD.Message" of "CHG /SYS/CECU/LCD.Message=Hello"; empty where there is none.
function pathOf(text) {
    return /\/[^\s=(]*/.exec(text)?.[0] ?? '';
}

function lineElement({ n, direction, text }) {
    const line = document.createElement('div');
    line.className = 'line';
    line.dataset.direction = direction;
    const parts = { number: n, direction: short[direction] ?? direction, text };
    for (const [name, content] of Object.entries(parts))
        line.append(Object.assign(document.createElement('span'), { className: name, textContent: content }));
    return line;
}
