// The program with its window, on a desktop of its own: what a person sees and does, and what to wait for.
import { setTimeout } from 'node:timers/promises';
import { ConsoleRun } from '../journey/consoleRun.mjs';
import { find, is, middle, print } from './screen.mjs';

// Somebody who looks again from time to time, even if nothing was announced.
const lookAgainMs = 200;
// Nobody answers in less time, and the window doesn't take such an answer for one to what it has just begun to show.
const readingMs = 500;
const lookLimitMs = 5000;

export class WindowRun extends ConsoleRun {
  window = undefined;  // as it was last mapped

  #desktop;

  constructor(program, place, desktop) {
    super(program, { ...place, environment: desktop.environment(place.environment) });
    this.#desktop = desktop;
  }

  get desktop() {
    return this.#desktop;
  }

  // The copy of the program that is looked at from now on.
  launch(...words) {
    this.console = this.another(...words);
    return this.console;
  }

  // One more, beside it.
  another(...words) {
    return this.#desktop.start(this.program, [...this.place.words, ...words], this.place.environment);
  }

  // Where windows have come and gone so far.
  get windowMark() {
    return this.#desktop.windows.mark;
  }

  // The program's window appears, from that mark on.
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
      this.console.expectExit(this.deadline + lookAgainMs).then(() => {
        throw new Error(`${pattern} was not seen: ${this.console.describeExit()}`);
      }),
    ]);
  }

  // As a window manager does when its close button is clicked.
  closeWindow() {
    this.#desktop.windows.send(`close ${this.window.mapped}`);
  }

  // What the program's window shows now; null while it is not there.
  async look() {
    const { reader } = this.#desktop;
    const from = reader.mark;
    reader.send(`look ${this.console.pid}`);
    return JSON.parse(await reader.expect(/^\{"pid"/, from, Date.now() + lookLimitMs)).tree;
  }

  // Waits until the window shows what `look` is after, and returns that.
  async sees(look, complaint) {
    const { reader } = this.#desktop;
    for (;;) {
      const from = reader.mark;
      const tree = await this.look();
      const found = tree && look(tree);
      if (found) return found;
      if (this.console.exit) throw new Error(`${complaint}: ${this.console.describeExit()}`);
      if (Date.now() > this.deadline) throw new Error(`${complaint} in time`);
      await reader.expect(/"changed"/, from, Math.min(this.deadline, Date.now() + lookAgainMs)).catch(() => {});
    }
  }

  seesText(wanted, role) {
    return this.sees((tree) => find(tree, wanted, role), `the window does not show ${wanted}`);
  }

  seesNo(wanted) {
    return this.sees((tree) => !find(tree, wanted), `the window still shows ${wanted}`);
  }

  // A thing that can be used, once it stands still.
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

  // In place of what stands in the field.
  async fill(wanted, text) {
    await this.click(wanted, 'text');
    await this.#desktop.act('key', 'ctrl+a', 'type', '--delay', '2', text);
  }

  press(key) {
    return this.#desktop.act('key', key);
  }

  // To what the window has begun to ask.
  async answer(key) {
    await setTimeout(readingMs);
    await this.press(key);
  }

  // For a person: what was to be seen when something went wrong.
  async describe(file) {
    const shown = this.console && !this.console.exit && this.#desktop.reader
      ? print(await this.look().catch((error) => `(can't be read: ${error.message})`)) : '(no window)';
    const picture = await this.#desktop.picture(file).then(() => file, (error) => `none, ${error.message}`);
    const said = this.console?.lines.slice(-20).map(({ from, text }) => `  ${from} | ${text}`).join('\n');
    return `the window showed:\n${shown}\na picture of the screen: ${picture}\nthe program said:\n${said ?? ''}`;
  }
}
