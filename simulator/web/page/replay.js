// The last seconds of the LCD. Kept are the PNGs that came, which are small, and the picture they began with.

import { decode, lcdContext, lcdHeight, lcdWidth } from './lcd.js';
import { GifEncoder } from './gif.js';

const span = 20000; // ms
const tick = 40; // ms: 25 pictures a second
const framesPerBreath = 10; // between these the page gets its turn

export class Replay {
    #pieces = []; // {time, x, y, png}
    #base = lcdContext(document.createElement('canvas'));
    #began = null; // when the first piece came
    #work = Promise.resolve(); // one thing at a time with the base

    constructor() {
        setInterval(() => this.#inTurn(() => this.#forgetOld(performance.now() - span)), 2000);
    }

    add(piece) {
        const time = performance.now();
        this.#began ??= time;
        this.#pieces.push({ ...piece, time });
    }

    /// @return a Blob with the last 20 seconds; at most what there is, and null if that is nothing.
    asGif() {
        return this.#inTurn(() => this.#makeGif());
    }

    #inTurn(job) {
        const result = this.#work.then(job);
        this.#work = result.catch(() => {});
        return result;
    }

    async #forgetOld(before) {
        while (this.#pieces.length > 0 && this.#pieces[0].time < before)
            await drawPiece(this.#base, this.#pieces.shift());
    }

    async #makeGif() {
        if (this.#began === null)
            return null;
        const end = performance.now();
        const begin = Math.max(end - span, this.#began);
        await this.#forgetOld(begin);
        const pieces = this.#pieces.filter(({ time }) => time <= end);
        const context = lcdContext(document.createElement('canvas'));
        context.drawImage(this.#base.canvas, 0, 0);

        const encoder = new GifEncoder(lcdWidth, lcdHeight);
        let next = 0;
        for (let time = begin, frames = 0; time < end; time += tick) {
            const first = next;
            for (; next < pieces.length && pieces[next].time < time + tick; ++next)
                await drawPiece(context, pieces[next]);
            if (next === first && time !== begin)
                continue;
            const { data } = context.getImageData(0, 0, lcdWidth, lcdHeight);
            encoder.add(new Uint32Array(data.buffer), time - begin);
            if (++frames % framesPerBreath === 0)
                await new Promise((resolve) => setTimeout(resolve));
        }
        return new Blob([encoder.finish(end - begin)], { type: 'image/gif' });
    }
}

async function drawPiece(context, { x, y, png }) {
    try {
        context.drawImage(await decode(png), x, y);
    } catch {
        // the LCD has complained of it already
    }
}
