// Puts the page together.

import { Bench } from './bench.js';
import { Connection } from './connection.js';
import { FrontTools } from './fronttools.js';
import { Holds } from './holds.js';
import { Keyboard } from './keyboard.js';
import { Knob } from './knob.js';
import { Lcd } from './lcd.js';
import { Log } from './log.js';
import { Panels } from './panels.js';
import { Pictures } from './pictures.js';
import { Recorder } from './recorder.js';
import { Replay } from './replay.js';
import { Shortcuts } from './shortcuts.js';
import { Status } from './status.js';
import { View } from './view.js';
import { ViewTools } from './viewtools.js';

const element = (id) => document.getElementById(id);

const connection = new Connection();
const holds = new Holds(connection);
const view = new View(element('lcd'));
const status = new Status(connection);
const complain = (text) => status.complain(text);

const replay = new Replay();
const lcd = new Lcd(element('lcd'), connection, (piece) => replay.add(piece));
const knob = new Knob(element('knob'), document.querySelectorAll('#lcd, .controls'), connection, holds);
new Panels(element('panels'), connection, holds);
const keyboard = new Keyboard(connection, holds, knob);

new FrontTools(connection, holds, keyboard);
new Pictures(lcd, replay, complain);
new Bench(connection);
new Recorder(connection, complain);
new Log(connection);
new Shortcuts(holds);
new ViewTools(view, connection);

connection.open();
