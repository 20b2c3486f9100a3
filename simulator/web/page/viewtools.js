// The buttons that change the view, and the frame that the page's address asks for.

import { keepFocusAway } from './pressable.js';

export class ViewTools {
    constructor(view, connection) {
        keepFocusAway(document.querySelector('header')); // the arrow keys go on turning the knob
        for (const button of document.querySelectorAll('button[data-zoom]'))
            button.addEventListener('click', () => view.setZoom(Number(button.dataset.zoom)));
        for (const button of document.querySelectorAll('[data-tab-of]'))
            button.addEventListener('click', () => view.setTab(button.dataset.tabOf));
        document.getElementById('present').addEventListener('click', () => {
            view.setPresenting(true);
            document.getElementById('present-end').focus();
        });
        document.getElementById('present-end').addEventListener('click', () => {
            view.setPresenting(false);
            document.getElementById('present').focus();
        });
        const model = document.getElementById('model');
        let wanted = view.wantedRow; // once: afterwards the device's own model counts, whoever changed it
        connection.on('device', ({ row, partNumber, inputs, outputs, frames }) => {
            model.textContent = `${partNumber} · ${inputs} × ${outputs}`;
            document.title = `${inputs} × ${outputs} front – panel simulator`;
            const asked = wanted;
            wanted = null;
            if (asked !== null && asked !== row && frames.some((frame) => frame.row === asked))
                connection.send({ type: 'frame', row: asked });
            else
                view.showRow(row);
        });
    }
}
