// The page of panel-simulator in a real browser, around the real program.

import assert from 'node:assert/strict';
import { readFileSync, readlinkSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { spawnSync } from 'node:child_process';
import { after, afterEach, before, test } from 'node:test';
import { Simulator } from './simulator.mjs';

const require = createRequire(join(process.env.BROWSER_MODULES, 'package.json'));
const { chromium } = require('playwright-core');
const { AxeBuilder } = require('@axe-core/playwright');

let simulator, browser, context;
const faults = []; // what the browser complains of

before(async () => {
    simulator = await Simulator.start(1);
    // A test may run as root, or in a container, where Chromium has no sandbox.
    browser = await chromium.launch({ executablePath: process.env.CHROMIUM, args: ['--no-sandbox'] });
});
after(async () => {
    await browser?.close();
    assert.equal(await simulator?.quit(), 0, 'panel-simulator ends well');
});
afterEach(async () => {
    await context?.close();
    context = undefined;
    assert.deepEqual(faults.splice(0), []);
});

/// A window with the page, that is up to date.
async function openPage(query = '', { width = 1600, height = 1000, ...options } = {}) {
    context ??= await browser.newContext({ viewport: { width, height }, hasTouch: true, ...options });
    const page = await context.newPage();
    page.setDefaultTimeout(10000);
    page.on('pageerror', (error) => faults.push(error.message));
    page.on('console', (message) => ['error', 'warning'].includes(message.type()) && faults.push(message.text()));
    await page.goto(simulator.address + query);
    await connected(page);
    await page.locator('.key').first().waitFor();
    return page;
}

const connected = (page) => page.locator('body[data-connection=open]').waitFor();
const key = (page, name) => page.getByRole('button', { name, exact: true });
const held = (page, text) => page.locator('#held', { hasText: new RegExp(`^${text}$`) }).waitFor();
const centre = async (locator) => {
    const { x, y, width, height } = await locator.boundingBox();
    return [x + width / 2, y + height / 2];
};
const lcd = (page) => page.locator('#lcd').evaluate((canvas) =>
    canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data.join());
/// As lcd() has them.
const pixels = (page, png) => page.evaluate(async (data) => {
    const image = Object.assign(new Image(), { src: data });
    await image.decode();
    const context = new OffscreenCanvas(image.width, image.height).getContext('2d');
    context.drawImage(image, 0, 0);
    return context.getImageData(0, 0, image.width, image.height).data.join();
}, `data:image/png;base64,${png.toString('base64')}`);
const eventually = async (isTrue) => {
    for (const end = Date.now() + 10000; !await isTrue();)
        assert.ok(Date.now() < end, `never came true: ${isTrue}`);
};
const saved = async (page, button) => {
    const [download] = await Promise.all([page.waitForEvent('download'), page.locator(button).click()]);
    return readFileSync(await download.path());
};
const logLine = (page, text) => page.locator('.line', { hasText: text }).first().waitFor();

test('a source goes to two destinations with Take', async () => {
    const page = await openPage();
    await key(page, 'Source 3, off').click();
    await key(page, 'Source 3, on').waitFor();
    await key(page, 'Destination 5, off').click();
    await key(page, 'Destination 6, off').click();
    await key(page, 'Destination 5, pending').waitFor();
    await page.getByRole('button', { name: /^Take,/ }).click();
    await logLine(page, 'CALL /MEDIA/XP/VIDEO:connect(I3:-O5;I3:-O6;)');
    await key(page, 'Destination 5, off').click(); // shows what feeds it
    await key(page, 'Destination 5, on').waitFor();
    await key(page, 'Source 3, on').waitFor();
});

test('the knob moves the menu; pictures of the LCD: the PNG to the pixel, the GIF of many frames', async () => {
    const page = await openPage();
    const [x, y] = await centre(page.locator('#knob'));
    const radius = (await page.locator('#knob').boundingBox()).width * 0.4;
    const ways = {
        arrow: () => page.keyboard.press('ArrowRight'),
        wheel: async () => { await page.mouse.move(x, y); await page.mouse.wheel(0, 100); },
        drag: async () => {
            await page.mouse.move(x + radius, y);
            await page.mouse.down();
            await page.mouse.move(x + radius * 0.95, y + radius * 0.3);
            await page.mouse.up();
        },
        push: () => page.keyboard.press('Enter'),
        escape: () => page.keyboard.press('Escape'),
    };
    for (const [name, move] of Object.entries(ways)) {
        await simulator.post('wait-lcd-still');
        let shown; // what is still on its way to the page is none of this move's
        await eventually(async () => (shown = await lcd(page)) === await pixels(page, await simulator.get('/lcd.png')));
        await move();
        await eventually(async () => await lcd(page) !== shown).catch(() => assert.fail(`${name} changes nothing`));
    }
    // Taken one after the other: on a busy machine the LCD may change in between.
    await eventually(async () => await pixels(page, await saved(page, '#save-png'))
        === await pixels(page, await simulator.get('/lcd.png')));
    const gif = await saved(page, '#save-gif');
    assert.equal(gif.subarray(0, 6).toString(), 'GIF89a');
    assert.ok(gif.toString('latin1').split('\x21\xf9\x04').length > 4, 'frames');
});

test('whatever ends a press lets go of the key', async () => {
    const page = await openPage();
    const witness = await openPage();
    await page.bringToFront();
    const ends = {
        'lost capture': () => page.evaluate(() => {
            const pressed = document.querySelector('[data-key="1.3"]');
            for (let id = 0; id < 30; ++id)
                if (pressed.hasPointerCapture(id)) pressed.releasePointerCapture(id);
        }).then(() => page.mouse.move(700, 500)),
        'lost focus': () => page.evaluate(() => dispatchEvent(new Event('blur'))),
        'hidden page': () => page.evaluate(() => {
            Object.defineProperty(document, 'hidden', { value: true, configurable: true });
            document.dispatchEvent(new Event('visibilitychange'));
            delete document.hidden;
        }),
        'closed page': () => page.close(), // last: the socket goes with it
    };
    for (const end of Object.values(ends)) {
        const at = await centre(page.locator('[data-key="1.3"]'));
        await page.mouse.move(...at);
        await page.mouse.down();
        await held(witness, 'Source 3');
        await page.mouse.move(at[0] + 1, at[1]);
        await end();
        await held(witness, 'nothing');
        if (!page.isClosed())
            await page.mouse.up();
    }
});

test('fingers, keyboard and latches hold keys', async () => {
    const page = await openPage();
    const touch = await context.newCDPSession(page);
    const touches = (type, ...points) => touch.send('Input.dispatchTouchEvent',
        { type, touchPoints: points.map(([x, y], id) => ({ x, y, id })) });
    const one = await centre(page.locator('[data-key="1.1"]')), two = await centre(page.locator('[data-key="1.17"]'));
    await touches('touchStart', one);
    await touches('touchStart', one, two);
    await held(page, 'Source 1, Destination 1');
    await touches('touchEnd');
    await held(page, 'nothing');

    await page.keyboard.down('q');
    await held(page, 'Destination 1');
    await page.keyboard.up('q');
    await held(page, 'nothing');
    await page.keyboard.down('Shift'); // with it the key is latched: once, however long it is down
    for (let repeat = 0; repeat < 2; ++repeat)
        await page.keyboard.down('q');
    await page.keyboard.up('q');
    await page.keyboard.up('Shift');
    await held(page, 'Destination 1');
    await page.mouse.move(...await centre(page.locator('[data-key="1.18"]')));
    await page.mouse.down();
    await held(page, 'Destination 1, Destination 2');
    await page.mouse.up();
    await page.getByRole('button', { name: 'Release latched' }).click();
    await held(page, 'nothing');
});

test('an upgrade runs from 0 to 100, and both pages agree on it', async () => {
    const page = await openPage(), other = await openPage('?view=panel&zoom=3');
    await page.bringToFront();
    await page.fill('#upgrade-seconds', '2');
    const upgrade = await page.evaluateHandle(() => ({ // watched from before it begins
        percents: new Promise((resolve) => {
            const bar = document.getElementById('upgrade-bar'), seen = [];
            new MutationObserver(() => {
                seen.push(bar.value);
                if (Math.max(...seen) > 0 && document.getElementById('upgrade-text').textContent === 'none')
                    resolve(seen);
            }).observe(document.getElementById('upgrade-form'), { subtree: true, childList: true, attributes: true });
        }),
    }));
    await page.locator('#upgrade-form button').click();
    const seen = await upgrade.evaluate(({ percents }) => percents);
    assert.ok(new Set(seen).size > 5 && Math.max(...seen) >= 90, `steps of the bar: ${seen}`);
    await simulator.post('wait-lcd-still');
    await key(page, 'Source 7, off').click();
    await key(other, 'Source 7, on').waitFor();
    await eventually(async () => await lcd(page) === await lcd(other));
});

test('the switches of the bench are the device\'s', async () => {
    const page = await openPage();
    for (const id of ['lock', 'autotake', 'psu2', 'standby', 'link']) {
        for (const _ of ['there', 'back']) {
            const was = await page.locator(`#${id}`).isChecked();
            await page.locator(`#${id}`).click();
            await page.waitForFunction(([name, old]) => document.getElementById(name).checked !== old, [id, was]);
        }
    }
    await simulator.post('wait-ready');
    await page.fill('#message', 'Say "hi"  # there');
    await page.locator('#message-form button:text("Show")').click();
    await logLine(page, 'LCD.Message=Say "hi"');
    await page.locator('#inputs [data-port=I1]').click();
    await page.locator('#inputs [data-port=I1][aria-pressed=false]').waitFor();
    await page.fill('#preset-name', 'Evening show');
    await page.locator('#preset-form button').click();
    await page.locator('#presets option', { hasText: 'Evening show' }).waitFor({ state: 'attached' });
    await page.locator('#health-bad').click();
    await page.waitForFunction(() => {
        const [value, , highest] = document.getElementById('sensor-value').textContent.match(/[\d.]+/g) ?? [];
        return Number(value) > Number(highest);
    });
    await page.fill('#console', 'nonsense');
    await page.locator('#console-form button').click();
    await page.locator('#answer[data-kind=bad]', { hasText: 'nonsense' }).waitFor();
});

test('the log filters, waits and is saved', async () => {
    const page = await openPage();
    await page.locator('#log-pause').click();
    await simulator.post('set /SYS/CECU/LCD.Message=paused words');
    await page.locator('#log-count', { hasText: /waiting/ }).waitFor();
    assert.equal(await page.locator('.line', { hasText: 'paused words' }).count(), 0);
    await page.locator('#log-pause').click();
    await logLine(page, 'paused words');
    await page.fill('#log-text', 'paused WORDS');
    await page.uncheck('[data-direction-filter=request]');
    assert.ok((await page.locator('.line').allTextContents()).every((line) => /paused words/.test(line)));
    assert.match((await saved(page, '#log-save')).toString(), /^(\d+\tanswer\t.*paused words\n)+$/);
});

test('what is recorded replays', async () => {
    const page = await openPage();
    await page.locator('#record').click();
    await page.locator('#record', { hasText: 'Stop' }).waitFor();
    await key(page, 'Source 2, off').click();
    await key(page, 'Source 2, on').waitFor();
    await page.keyboard.press('r');
    await page.keyboard.press('Space');
    await logLine(page, 'connect(I2:-O4;)');
    await page.locator('#record').click();
    const script = (await saved(page, '#record-save')).toString();
    assert.match(script, /source 2[^]*destination 4[^]*take[^]*expect request "?CALL .*connect\(I2:-O4;\)/);
    const file = join(tmpdir(), `recorded-${process.pid}.script`);
    writeFileSync(file, script);
    await page.close();
    await simulator.quit(); // both would want the core service's port
    const replay = spawnSync(process.env.PANEL_SIMULATOR, ['--frame', '1', '--script', file], { encoding: 'utf8' });
    simulator = await Simulator.start(1);
    assert.equal(replay.status, 0, `${script}\n${replay.stdout}${replay.stderr}`);
});

test('the program\'s crash is shown, and it starts again', async () => {
    const page = await openPage();
    const children = readFileSync(`/proc/${simulator.pid}/task/${simulator.pid}/children`, 'utf8').trim().split(' ');
    const program = children.find((pid) => readlinkSync(`/proc/${pid}/exe`).endsWith('/front-panel'));
    process.kill(Number(program), 'SIGKILL');
    await page.locator('#program-text', { hasText: 'front-panel crashed' }).waitFor();
    await page.locator('#restart').click();
    await page.locator('#program-end').waitFor({ state: 'hidden' });
    await simulator.post('wait-ready');
});

test('a page that lost the simulator catches up with the next one', async () => {
    const page = await openPage();
    const port = Number(new URL(simulator.address).port);
    await simulator.kill();
    await page.locator('#state', { hasText: /lost/ }).waitFor();
    simulator = await Simulator.start(20, port);
    await connected(page);
    await key(page, 'Destination 20, off').waitFor();
    faults.length = 0; // the browser tells of each attempt
    await page.selectOption('#frame', '1');
    await page.waitForFunction(() => document.querySelectorAll('.panel').length === 1);
    assert.equal(new URL(page.url()).searchParams.get('frame'), '1');
});

test('nothing covers anything else, at any size of the window', async () => {
    const page = await openPage('?frame=17'); // three panels
    await page.locator('.panel').nth(2).waitFor();
    for (const [width, height] of [[1024, 700], [1200, 800], [1366, 768], [1440, 900], [1600, 900], [1920, 1080]]) {
        for (const zoom of ['2×', '3×']) {
            await page.setViewportSize({ width, height });
            await page.getByText(zoom, { exact: true }).click();
            const faults = await page.evaluate(() => {
                const parts = [...document.querySelectorAll('header, .bezel, .controls, .panel, #bench, #log')]
                    .map((part) => ({ name: part.id || part.className, box: part.getBoundingClientRect() }))
                    .filter(({ box }) => box.width > 0);
                const covers = (a, b) => a !== b && a.box.left < b.box.right - 1 && b.box.left < a.box.right - 1
                    && a.box.top < b.box.bottom - 1 && b.box.top < a.box.bottom - 1;
                const cut = [...document.querySelectorAll('.key')].filter((key) => key.scrollHeight > key.clientHeight);
                return [
                    ...parts.flatMap((a) => parts.filter((b) => covers(a, b)).map((b) => `${a.name} covers ${b.name}`)),
                    ...cut.map((key) => `${key.textContent} is cut`),
                    ...parts.filter(({ box }) => box.right > innerWidth).map(({ name }) => `${name} leaves the window`),
                ];
            });
            assert.deepEqual(faults, [], `${width} x ${height}, ${zoom}`);
        }
    }
});

for (const colorScheme of ['light', 'dark']) {
    test(`nothing to object to for those who cannot see or point, ${colorScheme}`, async () => {
        await simulator.post('wait-ready');
        for (const [query, width, height] of [['', 1024, 700], ['', 1920, 1080], ['?view=panel&zoom=3', 1280, 800]]) {
            const page = await openPage(query, { width, height, colorScheme });
            const { violations } = await new AxeBuilder({ page }).analyze();
            assert.deepEqual(violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`), [], `${query} ${width}`);
            if (process.env.SCREENSHOTS) // a folder
                await page.screenshot({ path: join(process.env.SCREENSHOTS, `${colorScheme}-${width}.png`) });
            await context.close();
            context = undefined;
        }
    });
}
