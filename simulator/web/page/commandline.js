// Lines of the simulator's console.

/// One word of a line, whatever is in it.
export function quoted(text) {
    const printable = text.replace(/[\r\n\t]+/g, ' ');
    return `"${printable.replace(/[\\"]/g, '\\$&')}"`;
}

export function setLine(path, value) {
    return `set ${quoted(`${path}=${value}`)}`;
}
