// Saves what the LCD shows.

import { saveFile, stampedName } from './save.js';

export class Pictures {
    #complain;

    constructor(lcd, replay, complain) {
        this.#complain = complain;
        this.#wire('save-png', async () => saveFile(await lcd.savedAsPng(), stampedName('lcd', 'png')));
        this.#wire('save-gif', async () => {
            const gif = await replay.asGif();
            if (gif)
                saveFile(gif, stampedName('lcd', 'gif'));
            else
                complain('The LCD has shown nothing yet.');
        });
    }

    #wire(id, save) {
        const button = document.getElementById(id);
        button.addEventListener('click', async () => {
            button.setAttribute('aria-busy', true);
            button.disabled = true; // a long animation takes a moment
            try {
                await save();
            } catch (error) {
                this.#complain(`The picture cannot be made: ${error.message}`);
            }
            button.disabled = false;
            button.removeAttribute('aria-busy');
        });
    }
}
