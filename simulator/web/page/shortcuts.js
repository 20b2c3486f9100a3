// The sheet that lists what the keyboard does; "?" opens and closes it.

export class Shortcuts {
    constructor(holds) {
        const sheet = document.getElementById('sheet');
        const toggle = () => {
            if (sheet.open) {
                sheet.close();
                return;
            }
            holds.releaseAll(); // the sheet keeps the keyboard to itself
            sheet.showModal();
        };
        document.getElementById('sheet-open').addEventListener('click', toggle);
        document.getElementById('sheet-close').addEventListener('click', toggle);
        sheet.addEventListener('click', (event) => {
            if (event.target === sheet)
                sheet.close(); // beside it
        });
        document.addEventListener('keydown', (event) => {
            const isTyping = event.target.closest?.('textarea, select, input:not([type=checkbox])');
            if (event.key === '?' && !isTyping && !event.repeat) {
                event.preventDefault();
                toggle();
            }
        });
    }
}
