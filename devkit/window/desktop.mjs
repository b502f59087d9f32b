// A private desktop for programs with a window: an X server, a session bus without service activation, the accessibility
// bus, and the programs that act as the user. It uses no server and no bus of the real desktop.
import { execFile, spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { promisify } from 'node:util';
import { ConsoleProgram } from '../journey/consoleProgram.mjs';
import { demand } from '../journey/proof.mjs';
import { endAll, processesOf } from './leftovers.mjs';

const startLimitMs = 10_000;
const endLimitMs = 3000;
const run = promisify(execFile);

const busSettings = (socket) => `<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=${socket}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
`;

// Variables that connect a program to a desktop or change its look.
const desktopVariables = /^(DISPLAY|XAUTHORITY|WAYLAND_.*|DBUS_.*|AT_SPI_.*|NO_AT_BRIDGE|XDG_.*|DESKTOP_.*|QT_.*|G(TK|DK)_.*|LANG|LANGUAGE|LC_.*)$/;

function withoutDesktop(environment) {
  return Object.fromEntries(Object.entries(environment).filter(([name]) => !desktopVariables.test(name)));
}

// Starts a server that writes one line to descriptor 3 when it is ready. The kernel kills the server when this process
// ends. All other programs of the desktop end when the server ends.
async function startServer(program, words, environment) {
  const all = ['--pdeathsig', 'KILL', program, ...words];
  const child = spawn('setpriv', all, { env: environment, stdio: ['ignore', 'ignore', 'pipe', 'pipe'] });
  let complaint = '';
  child.stderr.on('data', (text) => { complaint += text; });
  const failed = once(child, 'exit').then(
    ([code]) => { throw new Error(`${program} ended (${code}): ${complaint.trim()}`); });
  failed.catch(() => {});
  const lines = createInterface({ input: child.stdio[3] });
  const signal = AbortSignal.timeout(startLimitMs);
  const [line] = await Promise.race([once(lines, 'line', { signal }), failed]);
  return { child, line };
}

// Returns the path of the accessibility bus launcher, which the service file names.
function accessibilityLauncher() {
  const service = readFileSync('/usr/share/dbus-1/services/org.a11y.Bus.service', 'utf8');
  return service.match(/^Exec=(\S+)/m)[1];
}

export class Desktop {
  variables = {};  // environment variables of every program on this desktop

  #root;
  #tools;
  #children = [];  // in the order of their starts
  #programs = [];

  constructor(root, tools) {
    this.#root = root;
    this.#tools = tools;
  }

  // `root` is a private folder. `tools` is the folder with the compiled programs of devkit/window/.
  static async open(root, tools) {
    const desktop = new Desktop(root, tools);
    try {
      await desktop.#start();
      return desktop;
    } catch (error) {
      await desktop.close();
      throw error;
    }
  }

  async #start() {
    const runtime = path.join(this.#root, 'run');
    mkdirSync(runtime, { mode: 0o700 });
    const x = await startServer(
      'Xvfb', ['-displayfd', '3', '-screen', '0', '1280x1024x24', '-nolisten', 'tcp', '-noreset'], process.env);
    this.#children.push(x.child);
    const socket = path.join(runtime, 'bus');
    this.variables = {
      DISPLAY: `:${x.line}`,
      DBUS_SESSION_BUS_ADDRESS: `unix:path=${socket}`,
      XDG_RUNTIME_DIR: runtime,
      XDG_CACHE_HOME: path.join(this.#root, 'cache'),
      XDG_SESSION_TYPE: 'x11',
      GSETTINGS_BACKEND: 'memory',
      QT_QPA_PLATFORM: 'xcb',
      QT_LINUX_ACCESSIBILITY_ALWAYS_ON: '1',  // for screen_reader, even while the accessibility switch is off
      LANG: 'C.UTF-8',
    };
    await this.#startBuses(socket);
    this.windows = this.#startTool('window_watch');
    await this.windows.expect(/"watching"/, 0, Date.now() + startLimitMs);
    this.reader = this.#startTool('screen_reader');
  }

  async #startBuses(socket) {
    const settings = path.join(this.#root, 'session.conf');
    writeFileSync(settings, busSettings(socket));
    const words = [`--config-file=${settings}`, '--nofork', '--nopidfile', '--print-address=3'];
    this.#children.push((await startServer('dbus-daemon', words, this.environment())).child);
    const launcher = spawn(
      accessibilityLauncher(), ['--launch-immediately'], { env: this.environment(), stdio: 'ignore' });
    this.#children.push(launcher);
    await run('gdbus', ['wait', '--session', '--timeout', `${startLimitMs / 1000}`, 'org.a11y.Bus'],
      { env: this.environment() });
  }

  environment(own = process.env) {
    const { XDG_DATA_HOME, XDG_STATE_HOME, XDG_CONFIG_HOME } = own;
    return { ...withoutDesktop(own), XDG_DATA_HOME, XDG_STATE_HOME, XDG_CONFIG_HOME, ...this.variables };
  }

  // Starts a program on this desktop. close() ends it if it still runs.
  start(program, words, own = process.env, changes = {}) {
    const started = new ConsoleProgram(program, words, { ...this.environment(own), ...changes });
    this.#programs.push(started);
    return started;
  }

  #startTool(name, words = []) {
    return this.start(path.join(this.#tools, name), words);
  }

  // Starts a tray, which shows status items.
  async startTray() {
    const tray = this.#startTool('tray_host');
    await tray.expect(/"ready"/, 0, Date.now() + startLimitMs);
    return tray;
  }

  // Starts a notification service.
  async startNotifications() {
    const service = this.#startTool('notification_server');
    await service.expect(/"ready"/, 0, Date.now() + startLimitMs);
    return service;
  }

  // Calls an operation over the session bus. Returns the answer as gdbus prints it.
  async call(name, object, operation, ...words) {
    const call = ['call', '--session', '--timeout', `${startLimitMs / 1000}`, '--dest', name, '--object-path', object];
    try {
      const { stdout } = await run('gdbus', [...call, '--method', operation, '--', ...words], { env: this.environment() });
      return stdout.trim();
    } catch (error) {
      throw new Error(`${operation}: ${error.stderr.trim()}`);
    }
  }

  // Sets the accessibility switch, as the settings of a desktop do.
  async setAccessibility(on) {
    await this.call('org.a11y.Bus', '/org/a11y/bus', 'org.freedesktop.DBus.Properties.Set',
      'org.a11y.Status', 'IsEnabled', `<${on}>`);
  }

  // Moves the mouse or types keys through the X server.
  async act(...words) {
    await run('xdotool', words.map(String), { env: this.environment(), timeout: startLimitMs });
  }

  // Writes a picture of the screen to a PNG file.
  async picture(file) {
    const from = this.windows.mark;
    this.windows.send(`picture ${file}`);
    const written = await this.windows.expect(/"picture"/, from, Date.now() + startLimitMs);
    demand(JSON.parse(written).written, `can't write ${file}`);
  }

  async close() {
    for (const program of this.#programs.reverse()) {
      if (program.exit) continue;
      program.kill('SIGKILL');
      await program.expectExit(Date.now() + endLimitMs).catch(() => {});
    }
    await endAll(this.#children.reverse());
    // Ends processes that other programs started, such as the accessibility bus and its registry.
    await endAll(processesOf(this.#root));
  }
}
