// Runs the program for a user at the window or at the terminal.
import { spawn } from 'node:child_process';
import { once } from 'node:events';

// Issues three links: a fresh link in each of the two forms, and a used link.
function handOutLinks({ links }) {
  const [first, second, used] = [links.handOut(), links.handOut(), links.handOut()];
  links.use(used.code);
  return { first: first.link, second: second.appLink, used: used.link };
}

const where = `with stand-ins for its service, helper and driver. Nothing leaves this
machine. The home is empty, so it installs the helper first.`;
const more = ({ origin }) => `More links: curl -X POST ${origin}/devkit/links\n`;

function windowWelcome(service) {
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

${more(service)}`;
}

function consoleWelcome(service) {
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

${more(service)}`;
}

async function playTogether(program, place, words) {
  const child = spawn(program, [...words, ...place.words], { stdio: 'inherit', env: place.environment });
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

export function playInWindow(program, place) {
  console.log(windowWelcome(place.service));
  return playTogether(program, place, []);
}

export function playInTerminal(program, place) {
  console.log(consoleWelcome(place.service));
  return playTogether(program, place, ['--console']);
}
