// Writes an animated GIF. Each frame holds only the rectangle that differs from the frame before it, with a palette of
// its own: exact up to 256 colours, else those that are close to each other become one.

const mostColours = 256;
const bytesPerBlock = 255;
const shortestDelay = 4; // 1/100 s; viewers take much less for a mistake and wait long

export class GifEncoder {
    #width;
    #height;
    #bytes = new ByteWriter();
    #shown = null; // pixels of the last frame
    #waiting = null; // {rectangle, pixels, time}: its delay is known when the next one comes

    constructor(width, height) {
        this.#width = width;
        this.#height = height;
        this.#bytes.text('GIF89a');
        this.#bytes.word(width);
        this.#bytes.word(height);
        this.#bytes.put(0x70, 0, 0); // no global palette
        this.#bytes.put(0x21, 0xff, 11);
        this.#bytes.text('NETSCAPE2.0');
        this.#bytes.put(3, 1, 0, 0, 0); // again and again
    }

    /// @param pixels Uint32Array of ImageData, which is kept. @param time ms from the beginning, ascending.
    add(pixels, time) {
        const rectangle = this.#difference(pixels);
        if (!rectangle)
            return; // the frame before it stays longer
        this.#write(time);
        this.#waiting = { rectangle, pixels, time };
        this.#shown = pixels;
    }

    /// @param time of the end, ms. @return a Uint8Array; the encoder is used up.
    finish(time) {
        this.#write(time);
        this.#bytes.put(0x3b);
        return this.#bytes.taken();
    }

    #difference(pixels) {
        const [width, height] = [this.#width, this.#height];
        if (!this.#shown)
            return { left: 0, top: 0, width, height };
        let left = width, right = -1, top = height, bottom = -1;
        for (let y = 0, at = 0; y < height; ++y) {
            for (let x = 0; x < width; ++x, ++at) {
                if (pixels[at] === this.#shown[at])
                    continue;
                left = Math.min(left, x);
                right = Math.max(right, x);
                top = Math.min(top, y);
                bottom = y;
            }
        }
        return bottom < 0 ? null : { left, top, width: right - left + 1, height: bottom - top + 1 };
    }

    #write(until) {
        if (!this.#waiting)
            return;
        const { rectangle: { left, top, width, height }, pixels, time } = this.#waiting;
        const part = new Uint32Array(width * height);
        for (let y = 0; y < height; ++y) {
            const from = (top + y) * this.#width + left;
            part.set(pixels.subarray(from, from + width), y * width);
        }
        const { palette, indices, bits } = colourTable(part);
        const bytes = this.#bytes;
        bytes.put(0x21, 0xf9, 4, 0x04); // stays in place below the next frame
        bytes.word(Math.min(0xffff, Math.max(shortestDelay, Math.round(until / 10) - Math.round(time / 10))));
        bytes.put(0, 0, 0x2c);
        [left, top, width, height].forEach((value) => bytes.word(value));
        bytes.put(0x80 | (bits - 1));
        for (let index = 0; index < 1 << bits; ++index) {
            const colour = palette[index] ?? 0;
            bytes.put(colour & 0xff, colour >> 8 & 0xff, colour >> 16 & 0xff);
        }
        const codeSize = Math.max(2, bits);
        bytes.put(codeSize);
        writeLzw(bytes, indices, codeSize);
        bytes.put(0);
    }
}

/// @return {palette: colours as 0xBBGGRR, indices: one byte a pixel, bits of an index}.
function colourTable(pixels) {
    const counts = new Map();
    for (const pixel of pixels)
        counts.set(pixel, (counts.get(pixel) ?? 0) + 1);
    const colours = [...counts.keys()];
    const isExact = colours.length <= mostColours;
    const palette = isExact ? colours : thinnedOut(colours.sort((a, b) => counts.get(b) - counts.get(a)));
    const indexOf = new Map(colours.map((colour, index) => [colour, isExact ? index : nearest(palette, colour)]));
    return {
        palette,
        indices: Uint8Array.from(pixels, (pixel) => indexOf.get(pixel)),
        bits: Math.max(1, Math.ceil(Math.log2(palette.length))),
    };
}

/// Leaves out what is close to a more frequent colour: no pixel is off by more than the reach that this takes.
function thinnedOut(byFrequency) {
    for (let reach = 1;; reach *= 1.5) {
        const palette = [];
        for (const colour of byFrequency) {
            if (palette.every((other) => distance(other, colour) > reach))
                palette.push(colour);
            if (palette.length > mostColours)
                break;
        }
        if (palette.length <= mostColours)
            return palette;
    }
}

function nearest(palette, colour) {
    let best = 0;
    for (let index = 1; index < palette.length; ++index) {
        if (distance(palette[index], colour) < distance(palette[best], colour))
            best = index;
    }
    return best;
}

/// The square of it, red, green and blue weighed about as the eye does.
function distance(a, b) {
    const red = (a & 0xff) - (b & 0xff);
    const green = (a >> 8 & 0xff) - (b >> 8 & 0xff);
    const blue = (a >> 16 & 0xff) - (b >> 16 & 0xff);
    return 2 * red * red + 4 * green * green + blue * blue;
}

/// The GIF's own LZW: codes grow from codeSize + 1 to 12 bits, then the table starts anew.
function writeLzw(bytes, indices, codeSize) {
    const clear = 1 << codeSize;
    const tableEnd = 4096;
    const table = new Map(); // code of a prefix and the next index -> code
    const bits = new BitWriter(bytes);
    let next = clear + 2;
    let size = codeSize + 1;
    bits.put(clear, size);
    let prefix = indices[0];
    for (let at = 1; at < indices.length; ++at) {
        const index = indices[at];
        const string = prefix << 8 | index;
        const known = table.get(string);
        if (known !== undefined) {
            prefix = known;
            continue;
        }
        bits.put(prefix, size);
        prefix = index;
        if (next === tableEnd) {
            bits.put(clear, size);
            table.clear();
            next = clear + 2;
            size = codeSize + 1;
            continue;
        }
        if (next === 1 << size)
            ++size;
        table.set(string, next++);
    }
    bits.put(prefix, size);
    bits.put(clear + 1, size);
    bits.finish();
}

class ByteWriter {
    #bytes = new Uint8Array(1 << 16);
    #length = 0;

    put(...values) {
        for (const value of values) {
            if (this.#length === this.#bytes.length) {
                const longer = new Uint8Array(2 * this.#length);
                longer.set(this.#bytes);
                this.#bytes = longer;
            }
            this.#bytes[this.#length++] = value;
        }
    }

    word(value) {
        this.put(value & 0xff, value >> 8);
    }

    text(text) {
        this.put(...[...text].map((character) => character.charCodeAt(0)));
    }

    taken() {
        return this.#bytes.slice(0, this.#length);
    }
}

/// Codes from the low bit up, in blocks that begin with their length.
class BitWriter {
    #bytes;
    #block = [];
    #held = 0;
    #count = 0;

    constructor(bytes) {
        this.#bytes = bytes;
    }

    put(code, size) {
        this.#held |= code << this.#count;
        this.#count += size;
        for (; this.#count >= 8; this.#count -= 8) {
            this.#byte(this.#held & 0xff);
            this.#held >>>= 8;
        }
    }

    finish() {
        if (this.#count > 0)
            this.#byte(this.#held);
        if (this.#block.length > 0)
            this.#endBlock();
    }

    #byte(value) {
        this.#block.push(value);
        if (this.#block.length === bytesPerBlock)
            this.#endBlock();
    }

    #endBlock() {
        this.#bytes.put(this.#block.length, ...this.#block);
        this.#block = [];
    }
}
