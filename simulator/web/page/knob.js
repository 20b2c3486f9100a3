// The rotary encoder: its ring is dragged round, its cap is pushed.

import { capture, keepFocusAway, makePressable } from './pressable.js';

const detentAngle = 15; // degrees: 24 detents a turn
const capRadius = 0.52; // of the knob's radius; inside it a press pushes
const spin = 50; // ms; detents closer than this are a spin to the front
const mostDetents = 20; // in one message
const wheelNotch = 50; // pixels; a wheel moves by at least this, a touchpad by less
const touchpadDetent = 40; // pixels
const arrowPause = 120; // ms between the detents of an arrow key that is kept down

export class Knob {
    #element;
    #connection;
    #holds;
    #angle = 0;
    #lastDetent = 0;
    #lastArrow = 0;
    #scrolled = 0;

    /// @param wheelAreas where the mouse wheel turns the knob.
    constructor(element, wheelAreas, connection, holds) {
        this.#element = element;
        this.#connection = connection;
        this.#holds = holds;
        makePressable(element, 'push', holds, (event) => this.#isOnCap(event));
        element.addEventListener('pointerdown', (event) => this.#beginDrag(event));
        element.addEventListener('keydown', (event) => this.handleArrow(event));
        for (const area of wheelAreas) {
            area.addEventListener('wheel', (event) => this.#wheel(event), { passive: false });
            area.addEventListener('contextmenu', (event) => event.preventDefault());
            keepFocusAway(area);
        }
        connection.on('held', ({ keys }) => element.toggleAttribute('data-held', keys.includes('push')));
    }

    /// Turns by an arrow key. @return whether it was one.
    handleArrow(event) {
        const direction = { ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1 }[event.key];
        if (!direction || event.ctrlKey || event.altKey || event.metaKey)
            return false;
        event.preventDefault();
        event.stopPropagation();
        const now = event.timeStamp;
        if (event.shiftKey || !event.repeat || now - this.#lastArrow >= arrowPause) {
            this.#lastArrow = now;
            this.turn(direction, event.shiftKey);
        }
        return true;
    }

    turn(detents, fast) {
        for (let left = detents; left !== 0;) {
            const part = Math.max(-mostDetents, Math.min(mostDetents, left));
            if (!this.#connection.send({ type: 'turn', detents: part, fast }))
                return;
            left -= part;
        }
        this.#angle += detents * detentAngle;
        this.#element.style.setProperty('--angle', `${this.#angle}deg`);
    }

    /// Detents that came with this event: their speed is the time since the ones before them.
    #turnAt(detents, time) {
        const spacing = (time - this.#lastDetent) / Math.abs(detents);
        this.#lastDetent = time;
        this.turn(detents, spacing < spin);
    }

    #place(event) {
        const box = this.#element.getBoundingClientRect();
        const x = event.clientX - (box.left + box.width / 2);
        const y = event.clientY - (box.top + box.height / 2);
        return { angle: Math.atan2(y, x) * 180 / Math.PI, radius: Math.hypot(x, y) / (box.width / 2) };
    }

    #isOnCap(event) {
        return this.#place(event).radius < capRadius;
    }

    #beginDrag(event) {
        if (event.button !== 0 || this.#isOnCap(event))
            return;
        const element = this.#element;
        const drag = new AbortController();
        const { signal } = drag;
        let last = this.#place(event).angle;
        let turned = 0; // degrees since the last detent
        let moved = 0;
        capture(element, event.pointerId);
        const mine = (handler) => (other) => {
            if (other.pointerId === event.pointerId)
                handler(other);
        };
        element.addEventListener('pointermove', mine((move) => {
            const { angle } = this.#place(move);
            const step = ((angle - last + 540) % 360) - 180; // the shorter way round
            last = angle;
            turned += step;
            moved += Math.abs(step);
            const detents = Math.trunc(turned / detentAngle);
            if (detents !== 0) {
                turned -= detents * detentAngle;
                this.#turnAt(detents, move.timeStamp);
            }
        }), { signal });
        element.addEventListener('pointerup', mine(() => {
            if (moved < detentAngle / 3)
                this.#holds.tap('push'); // a click beside the cap means the same
        }), { signal });
        for (const end of ['pointercancel', 'lostpointercapture'])
            element.addEventListener(end, mine(() => drag.abort()), { signal });
    }

    #wheel(event) {
        if (event.ctrlKey)
            return; // the browser's zoom
        event.preventDefault();
        const delta = event.deltaY || event.deltaX;
        if (event.deltaMode !== WheelEvent.DOM_DELTA_PIXEL || Math.abs(delta) >= wheelNotch) {
            this.#scrolled = 0;
            if (delta !== 0)
                this.#turnAt(Math.sign(delta), event.timeStamp);
            return;
        }
        this.#scrolled += delta;
        const detents = Math.trunc(this.#scrolled / touchpadDetent);
        if (detents !== 0) {
            this.#scrolled -= detents * touchpadDetent;
            this.#turnAt(detents, event.timeStamp);
        }
    }
}
