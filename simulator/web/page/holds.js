// What this page holds down. A key can be held in several ways at once (two fingers, a finger and a latch); the
// simulator hears of the first and of the last.

export class Holds extends EventTarget {
    #connection;
    #holders = new Map(); // key -> Set of holders: "latch", "pointer 7", "KeyQ"
    latching = false; // the next click latches, as with Shift

    constructor(connection) {
        super();
        this.#connection = connection;
        connection.on('connection', ({ state }) => {
            if (state === 'lost')
                this.#forget(); // the simulator lets go of what a lost page held
        });
        connection.on('device', () => this.releaseAll()); // what is held belonged to the device before it
        // Of the window: the element may have lost its capture, or be gone altogether.
        for (const end of ['pointerup', 'pointercancel', 'lostpointercapture'])
            addEventListener(end, (event) => this.#releaseHolder(`pointer ${event.pointerId}`), true);
        // Behind each of these the release of a key would never reach this page.
        addEventListener('blur', () => this.releaseAll());
        addEventListener('pagehide', () => this.releaseAll());
        document.addEventListener('visibilitychange', () => {
            if (document.hidden)
                this.releaseAll();
        });
    }

    press(key, holder) {
        const holders = this.#holders.get(key);
        if (holders)
            holders.add(holder);
        else if (this.#connection.send({ type: 'press', key }))
            this.#holders.set(key, new Set([holder]));
        this.#changed();
    }

    release(key, holder) {
        const holders = this.#holders.get(key);
        if (!holders?.delete(holder) || holders.size > 0)
            return;
        this.#holders.delete(key);
        this.#connection.send({ type: 'release', key });
        this.#changed();
    }

    #releaseHolder(holder) {
        for (const key of [...this.#holders.keys()])
            this.release(key, holder);
    }

    /// Down for a moment, for a click that has no length.
    tap(key) {
        this.press(key, 'tap');
        setTimeout(() => this.release(key, 'tap'), 80);
    }

    isLatched(key) {
        return this.#holders.get(key)?.has('latch') ?? false;
    }

    toggleLatch(key) {
        if (this.isLatched(key))
            this.release(key, 'latch');
        else
            this.press(key, 'latch');
    }

    get latched() {
        return [...this.#holders.keys()].filter((key) => this.isLatched(key));
    }

    releaseAll() {
        if (this.#holders.size === 0)
            return;
        this.#connection.send({ type: 'release-all' });
        this.#forget();
    }

    #forget() {
        this.#holders.clear();
        this.#changed();
    }

    #changed() {
        this.dispatchEvent(new Event('change'));
    }
}
