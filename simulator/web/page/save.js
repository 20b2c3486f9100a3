// Files for the person at the page.

export function saveFile(blob, name) {
    const link = document.createElement('a');
    link.href = URL.createObjectURL(blob);
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60000); // the browser may still be reading
}

/// "lcd-20260131-174503.png", in local time.
export function stampedName(stem, extension) {
    const two = (number) => String(number).padStart(2, '0');
    const now = new Date();
    const day = `${now.getFullYear()}${two(now.getMonth() + 1)}${two(now.getDate())}`;
    return `${stem}-${day}-${two(now.getHours())}${two(now.getMinutes())}${two(now.getSeconds())}.${extension}`;
}
