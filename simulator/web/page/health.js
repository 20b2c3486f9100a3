// One health value put out of its limits, and back.

import { setLine } from './commandline.js';

const sensors = {
    'Control unit': ['/SYS/CECU/HEALTH', ['Temperature0', 'Voltage0_5V0', 'Voltage2_1V8', 'Voltage2_1V2']],
    'Motherboard': ['/SYS/HSMB/HEALTH',
        ['Temperature0', 'Temperature1', 'Temperature2', 'Voltage0_3V3', 'Voltage1_2V5', 'Voltage1_12V0']],
    'Input board 1, port 1': ['/SYS/IB1/PORT1/HEALTH', ['Temperature0', 'Voltage0_5V0', 'Voltage4_1V0']],
    'Output board 1, port 1': ['/SYS/OB1/PORT1/HEALTH', ['Temperature0', 'Voltage0_5V0', 'Voltage4_1V0']],
};

// a value reads "READING UNIT;low;high;lowest;highest;least seen;most seen"
const highest = 4;
const leastSeen = 5;
const mostSeen = 6;

export class Health {
    #run;
    #sensor = document.getElementById('sensor');
    #value = document.getElementById('sensor-value');

    /// @param run runs a line of the console: {ok, text}.
    constructor(run) {
        this.#run = run;
        this.#sensor.append(...Object.entries(sensors).map(([part, [node, names]]) => {
            const group = document.createElement('optgroup');
            group.label = part;
            group.append(...names.map((name) => new Option(`${part}: ${name.replace('_', ' ')}`, `${node}.${name}`)));
            return group;
        }));
        this.#sensor.addEventListener('change', () => this.#read());
        document.getElementById('health-bad').addEventListener('click', () =>
            this.#change((fields) => fields[highest] * 1.1));
        document.getElementById('health-good').addEventListener('click', () =>
            this.#change((fields) => (Number(fields[leastSeen]) + Number(fields[mostSeen])) / 2));
    }

    async #change(readingFor) {
        const fields = await this.#read();
        if (!fields)
            return;
        const [number, unit] = fields[0].split(' ');
        const decimals = number.split('.')[1]?.length ?? 0;
        fields[0] = `${readingFor(fields).toFixed(decimals)} ${unit}`;
        if ((await this.#run(setLine(this.#sensor.value, fields.join(';')))).ok)
            this.#read();
    }

    /// Shows the present reading. @return the value's fields, null if they cannot be had.
    async #read() {
        const { ok, text } = await this.#run(`get ${this.#sensor.value}`);
        const fields = text.slice(text.indexOf('=') + 1).split(';');
        this.#value.textContent = ok ? `${fields[0]}, limits ${fields[3]} to ${fields[highest]}` : '';
        return ok && fields.length > mostSeen ? fields : null;
    }
}
