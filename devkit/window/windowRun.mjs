// Runs the program with its window on a private desktop. Simulates a user's input and waits for the window's contents.
import { setTimeout } from 'node:timers/promises';
import { ConsoleRun } from '../journey/consoleRun.mjs';
import { find, is, middle, print } from './screen.mjs';

// The window is read again after this time, even if no change was announced.
const readAgainMs = 200;
// A new button ignores input for the double-click interval, so every answer waits longer than this interval.
const readingMs = 500;
const readLimitMs = 5000;

export class WindowRun extends ConsoleRun {
  window = undefined;  // the last "mapped" event

  #desktop;

  constructor(program, place, desktop) {
    super(program, { ...place, environment: desktop.environment(place.environment) });
    this.#desktop = desktop;
  }

  get desktop() {
    return this.#desktop;
  }

  // Starts the program. The other operations refer to this instance from now on.
  launch(...words) {
    this.console = this.another(...words);
    return this.console;
  }

  // Starts another instance.
  another(...words) {
    return this.#desktop.start(this.program, [...this.place.words, ...words], this.place.environment);
  }

  // The number of window events so far. The other operations accept it as `from`.
  get windowMark() {
    return this.#desktop.windows.mark;
  }

  // Waits until the program's window is mapped, at or after `from`.
  async windowAppears(from = 0) {
    const pattern = new RegExp(`"mapped".*"pid":${this.console.pid},"title":"tarnik"`);
    const line = await this.#watched(pattern, from);
    this.window = JSON.parse(line);
    return line;
  }

  windowGoes(from) {
    return this.#watched(new RegExp(`"unmapped":${this.window.mapped}\\b`), from);
  }

  #watched(pattern, from) {
    return Promise.race([
      this.#desktop.windows.expect(pattern, from, this.deadline),
      this.console.expectExit(this.deadline + readAgainMs).then(() => {
        throw new Error(`${pattern} was not seen: ${this.console.describeExit()}`);
      }),
    ]);
  }

  // Asks the window to close, as the close button of a window manager does.
  closeWindow() {
    this.#desktop.windows.send(`close ${this.window.mapped}`);
  }

  // Returns the accessibility tree of the program's window, or null if no window exists.
  async read() {
    const { reader } = this.#desktop;
    const from = reader.mark;
    reader.send(`read ${this.console.pid}`);
    return JSON.parse(await reader.expect(/^\{"pid"/, from, Date.now() + readLimitMs)).tree;
  }

  // Waits until `check` returns a true value for the window's tree, and returns that value.
  async sees(check, complaint) {
    const { reader } = this.#desktop;
    for (;;) {
      const from = reader.mark;
      const tree = await this.read();
      const found = tree && check(tree);
      if (found) return found;
      if (this.console.exit) throw new Error(`${complaint}: ${this.console.describeExit()}`);
      if (Date.now() > this.deadline) throw new Error(`${complaint} in time`);
      await reader.expect(/"changed"/, from, Math.min(this.deadline, Date.now() + readAgainMs)).catch(() => {});
    }
  }

  seesText(wanted, role) {
    return this.sees((tree) => find(tree, wanted, role), `the window does not show ${wanted}`);
  }

  seesNo(wanted) {
    return this.sees((tree) => !find(tree, wanted), `the window still shows ${wanted}`);
  }

  // Waits until an enabled element has not moved for a moment.
  async #settled(wanted, role) {
    let place;
    let since;
    return this.sees((tree) => {
      const thing = find(tree, wanted, role);
      const before = place;
      place = thing && is(thing, 'enabled') ? `${thing.bounds}` : undefined;
      if (place !== before) since = Date.now();
      return place !== undefined && Date.now() - since >= readingMs && thing;
    }, `${wanted} can't be used`);
  }

  async click(wanted, role) {
    const [x, y] = middle(await this.#settled(wanted, role));
    await this.#desktop.act('mousemove', x, y, 'click', 1);
  }

  // Replaces the text of a field.
  async fill(wanted, text) {
    await this.click(wanted, 'text');
    await this.#desktop.act('key', 'ctrl+a', 'type', '--delay', '2', text);
  }

  press(key) {
    return this.#desktop.act('key', key);
  }

  // Presses a key as the answer to a new question.
  async answer(key) {
    await setTimeout(readingMs);
    await this.press(key);
  }

  // Returns a description of the window, the screen and the output for the report of a failure.
  async describe(file) {
    const shown = this.console && !this.console.exit && this.#desktop.reader
      ? print(await this.read().catch((error) => `(can't be read: ${error.message})`)) : '(no window)';
    const picture = await this.#desktop.picture(file).then(() => file, (error) => `none, ${error.message}`);
    const said = this.console?.lines.slice(-20).map(({ from, text }) => `  ${from} | ${text}`).join('\n');
    return `the window showed:\n${shown}\na picture of the screen: ${picture}\nthe program printed:\n${said ?? ''}`;
  }
}
