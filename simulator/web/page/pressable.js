// Makes a button of the page a key of the front: down as long as a pointer or a keyboard key is down on it. Holds
// sees to the end of pointers.

/// @param key what the simulator calls it; @param isPart tells whether a pointer event counts, for a key that is
/// only a part of its element.
export function makePressable(element, key, holds, isPart = () => true) {
    const down = (holder, latch) => {
        if (latch || holds.isLatched(key))
            holds.toggleLatch(key);
        else
            holds.press(key, holder);
    };

    element.addEventListener('pointerdown', (event) => {
        if (event.button !== 0 || !isPart(event))
            return;
        capture(element, event.pointerId);
        down(`pointer ${event.pointerId}`, event.shiftKey || holds.latching);
    });

    element.addEventListener('keydown', (event) => {
        if (!isPressKey(event))
            return;
        event.preventDefault();
        event.stopPropagation(); // the page gives Enter and the space bar to keys of its own
        if (!event.repeat)
            down(`focus ${event.code}`, event.shiftKey || holds.latching);
    });
    element.addEventListener('keyup', (event) => {
        if (event.code === 'Space')
            event.preventDefault(); // no click on top of it
        holds.release(key, `focus ${event.code}`);
    });
    element.addEventListener('blur', () => {
        for (const code of pressCodes)
            holds.release(key, `focus ${code}`);
    });

    element.addEventListener('click', (event) => {
        if (event.detail === 0) // of a screen reader or a script: neither pointer nor key went before it
            holds.tap(key);
    });
    keepFocusAway(element);
}

/// A mouse on the front must not leave the focus on a button: Enter and the space bar mean keys of the front.
export function keepFocusAway(element) {
    element.addEventListener('mousedown', (event) => {
        event.preventDefault();
        if (!document.activeElement?.closest('#front, #keys'))
            document.activeElement?.blur();
    });
}

export function capture(element, pointerId) {
    try {
        element.setPointerCapture(pointerId);
    } catch {
        // the pointer has gone already; its end has been told
    }
}

const pressCodes = ['Space', 'Enter', 'NumpadEnter'];

function isPressKey(event) {
    return pressCodes.includes(event.code) && !event.ctrlKey && !event.altKey && !event.metaKey;
}
