// The LCD: pieces of its picture arrive as PNGs and are drawn in their order.

export const lcdWidth = 320;
export const lcdHeight = 240;

const header = 4; // bytes: x and y

/// A canvas context that shows exactly the colours it was given.
export function lcdContext(canvas) {
    canvas.width = lcdWidth;
    canvas.height = lcdHeight;
    return canvas.getContext('2d', { alpha: false, willReadFrequently: true });
}

/// @param png a Blob.
export function decode(png) {
    return createImageBitmap(png, { colorSpaceConversion: 'none', premultiplyAlpha: 'none' });
}

export class Lcd {
    #canvas;
    #context;
    #drawn = Promise.resolve();

    /// @param onPiece gets every piece, {x, y, png}, as it arrives.
    constructor(canvas, connection, onPiece) {
        this.#canvas = canvas;
        this.#context = lcdContext(canvas);
        connection.on('picture', (buffer) => {
            const view = new DataView(buffer);
            const piece = {
                x: view.getUint16(0, true),
                y: view.getUint16(2, true),
                png: new Blob([new Uint8Array(buffer, header)], { type: 'image/png' }),
            };
            onPiece(piece);
            this.#draw(piece);
        });
    }

    async savedAsPng() {
        await this.#drawn;
        return new Promise((resolve) => this.#canvas.toBlob(resolve, 'image/png'));
    }

    #draw({ x, y, png }) {
        const bitmap = decode(png); // at once, while those before it are drawn
        bitmap.catch(() => {}); // told below
        this.#drawn = this.#drawn.then(async () => {
            try {
                this.#context.drawImage(await bitmap, x, y);
            } catch (error) {
                console.warn('A piece of the LCD cannot be decoded.', error);
            }
        });
    }
}
