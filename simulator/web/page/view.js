// What of the simulator is shown and how large; the page's address tells, so that a view can be shared.

import { lcdHeight, lcdWidth } from './lcd.js';

// CSS pixels that stand beside the LCD
const bezel = 28;
const keysWidth = 320;
const benchWidth = 420;
const presenterControls = 170; // below the LCD

export class View {
    #canvas;
    #body = document.body.dataset;

    constructor(canvas) {
        this.#canvas = canvas;
        const parameters = new URLSearchParams(location.search);
        this.wantedRow = rowOf(parameters.get('frame'));
        this.zoom = parameters.get('zoom') === '3' ? 3 : 2;
        this.presenting = parameters.get('view') === 'panel';
        this.tab = 'keys';
        addEventListener('resize', () => this.#apply());
        this.#apply();
    }

    /// Where everything does not fit side by side, one of "keys", "bench", "log" stands beside the LCD.
    setTab(tab) {
        this.tab = tab;
        this.#apply();
    }

    setZoom(zoom) {
        this.zoom = zoom;
        setParameter('zoom', zoom);
        this.#apply();
    }

    setPresenting(presenting) {
        this.presenting = presenting;
        setParameter('view', presenting ? 'panel' : null);
        this.#apply();
    }

    showRow(row) {
        setParameter('frame', row);
    }

    #apply() {
        const ratio = devicePixelRatio || 1;
        const scale = this.presenting ? largestScale(ratio) : Math.max(1, Math.round(this.zoom * ratio));
        const width = lcdWidth * scale / ratio; // a whole number of the screen's pixels for each of the LCD's
        this.#canvas.style.width = `${width}px`;
        this.#canvas.style.height = `${lcdHeight * scale / ratio}px`;
        this.#body.view = this.presenting ? 'panel' : 'all';
        this.#body.tab = this.tab;
        this.#body.layout = layoutBeside(width);
        for (const button of document.querySelectorAll('[data-tab-of]'))
            button.setAttribute('aria-pressed', button.dataset.tabOf === this.tab);
        for (const button of document.querySelectorAll('[data-zoom]'))
            button.setAttribute('aria-pressed', Number(button.dataset.zoom) === this.zoom);
    }
}

function layoutBeside(lcd) {
    const left = innerWidth - lcd - bezel;
    if (left >= keysWidth + benchWidth)
        return 'wide';
    return left >= keysWidth ? 'narrow' : 'stacked';
}

/// The most device pixels for one of the LCD that leave room for the keys.
function largestScale(ratio) {
    const across = (innerWidth - keysWidth - bezel) * ratio / lcdWidth;
    const down = (innerHeight - presenterControls) * ratio / lcdHeight;
    return Math.max(1, Math.floor(Math.min(across, down)));
}

function rowOf(text) {
    const row = Number(text);
    return Number.isInteger(row) && row >= 1 ? row : null;
}

function setParameter(name, value) {
    const address = new URL(location.href);
    if (value === null)
        address.searchParams.delete(name);
    else
        address.searchParams.set(name, value);
    if (address.href !== location.href)
        history.replaceState(null, '', address);
}
