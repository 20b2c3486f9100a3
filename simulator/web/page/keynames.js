// What the keys of the front are called.

const functions = {
    'take': { name: 'Take', lines: ['Take'] },
    'load': { name: 'Load preset', lines: ['Load'] },
    'save': { name: 'Save preset', lines: ['Save'] },
    'panel-lock': { name: 'Panel lock', lines: ['Panel', 'lock'] },
    'destination-lock': { name: 'Destination lock', lines: ['Dest.', 'lock'] },
};

export const ledWords = ['off', 'on', 'pending'];

/// @param button {key, role, number}; @return the name in full, as "Destination 12".
export function keyName({ key, role, number }) {
    if (role === 'source')
        return `Source ${number}`;
    if (role === 'destination')
        return `Destination ${number}`;
    return functions[role]?.name ?? `Unassigned key ${key}`;
}

/// What stands on the key: {prefix, lines}.
export function keyLabel({ role, number }) {
    if (role === 'source')
        return { prefix: 'S', lines: [String(number)] };
    if (role === 'destination')
        return { prefix: 'D', lines: [String(number)] };
    return { prefix: '', lines: functions[role]?.lines ?? [] };
}

/// The name of anything that can be held: a key of a panel, the knob, Escape.
export function heldName(key, device) {
    if (key === 'push')
        return 'Knob';
    if (key === 'escape')
        return 'Escape';
    const button = device?.panels.flat().find((candidate) => candidate.key === key);
    return button ? keyName(button) : key;
}
