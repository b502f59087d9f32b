// Runs the program for a user at the window or at the terminal.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { existsSync, readdirSync, symlinkSync, writeFileSync } from 'node:fs';
import path from 'node:path';

// Issues three links: a fresh link in each of the two forms, and a used link.
function handOutLinks({ links }) {
  const [first, second, used] = [links.handOut(), links.handOut(), links.handOut()];
  links.use(used.code);
  return { first: first.link, second: second.appLink, used: used.link };
}

// Writes a script that runs a command on the program of this run, from any terminal. Returns its path.
function writeCommand(program, { root, environment, words: [, bundle] }) {
  const names = ['HOME', 'XDG_DATA_HOME', 'XDG_STATE_HOME', 'XDG_CONFIG_HOME', 'XDG_RUNTIME_DIR', 'NO_PROXY', 'no_proxy'];
  const quoted = (text) => `'${text.replaceAll("'", "'\\''")}'`;
  const lines = names.map((name) => (environment[name] ? `export ${name}=${quoted(environment[name])}` : `unset ${name}`));
  const file = path.join(root, 'tarnik');
  writeFileSync(file, `#!/bin/sh
${lines.join('\n')}
case $(${quoted(program)} "$1" --help 2>/dev/null) in *--bundle*) set -- "$@" --bundle ${quoted(bundle)} ;; esac
exec ${quoted(program)} "$@"
`, { mode: 0o755 });
  return file;
}

const where = `with stand-ins for its service, helper and driver. Nothing leaves this
machine. The home is empty, so it installs the helper first.`;
const more = ({ origin }) => `More links: curl -X POST ${origin}/devkit/links\n`;

function windowWelcome(service, command) {
  const { first, second, used } = handOutLinks(service);
  return `
This is tarnik, ${where}

  1. Paste a link into its window: ${first}
     or another:                   ${second}
     a used one:                   ${used}
  2. Press Connect when it asks. It counts as connected 15 seconds later.
  3. Paste a link while connected: it offers to replace the account. A second start with a link does the same.
  4. The two switches are those of this desktop. The driver runs while both are on.
  5. Quit from the menu or with Ctrl-C here. On a desktop without a tray, close the window.
  6. In another terminal: ${command} status
     also with connect, restart, open, history, doctor, report, quit and --help.

${more(service)}`;
}

function consoleWelcome(service, command) {
  const { first, second, used } = handOutLinks(service);
  return `
This is tarnik without a window, ${where}

  1. Paste a link:     ${first}
     or another:       ${second}
     a used one:       ${used}
  2. Press Enter when it asks. It counts as connected 15 seconds later.
  3. Paste a link while connected, and answer the offer with replace or keep. A link during a pairing is refused;
     cancel ends the pairing. window prints what the window would show.
  4. Type switch accessibility on and switch screen on: the desktop driver starts, and the helper greets it.
  5. sample prints the activity. kill -USR1 PID, with the pid that status prints, makes the helper keep the
     machine awake; kill -USR2 PID ends that.
  6. Commands: status, sample, window, switch, request, confirm, cancel, replace, keep, done, help, quit.
  7. In another terminal: ${command} status
     also with connect, restart, open, history, doctor, report, quit and --help.

${more(service)}`;
}

function serviceWelcome(service, command) {
  const { first, used } = handOutLinks(service);
  return `
This is tarnik as a service, ${where}

  1. In another terminal: ${command} connect ${first}
     with a used link:    ${command} connect ${used}
     and                  ${command} status
     also with restart, history, doctor, report, quit and --help.
  2. End it with Ctrl-C or ${command} quit.

${more(service)}`;
}

async function playTogether(program, { environment, words: placeWords }, words) {
  const child = spawn(program, [...words, ...placeWords], { stdio: 'inherit', env: environment });
  // The terminal sends its signals to both processes. This process waits until the program has stopped.
  process.on('SIGINT', () => {});
  process.on('SIGHUP', () => {});
  process.on('SIGTERM', () => child.kill('SIGTERM'));
  try {
    const [code] = await once(child, 'exit');
    return code ?? 1;
  } catch (error) {
    console.error(`can't run ${program}: ${error.message}`);
    return 1;
  }
}

// The window needs the sockets of the session, but not the control socket of another program.
function linkSession({ runtimeFolder }) {
  const session = process.env.XDG_RUNTIME_DIR;
  if (process.platform === 'darwin' || !session || !existsSync(session)) return;
  for (const name of readdirSync(session).filter((entry) => entry !== 'tarnik')) {
    symlinkSync(path.join(session, name), path.join(runtimeFolder, name));
  }
}

export function playInWindow(program, place) {
  linkSession(place);
  console.log(windowWelcome(place.service, writeCommand(program, place)));
  return playTogether(program, place, []);
}

export function playInTerminal(program, place) {
  console.log(consoleWelcome(place.service, writeCommand(program, place)));
  return playTogether(program, place, ['--console']);
}

export function playAsService(program, place) {
  console.log(serviceWelcome(place.service, writeCommand(program, place)));
  return playTogether(program, place, ['serve']);
}
