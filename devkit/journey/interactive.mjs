// The journey with a person at the window, or at the terminal.
import { spawn } from 'node:child_process';
import { once } from 'node:events';

// Three to try: two good ones, one in each form, and one that was used.
function handOutLinks({ links }) {
  const [first, second, used] = [links.handOut(), links.handOut(), links.handOut()];
  links.use(used.code);
  return { first: first.link, second: second.appLink, used: used.link };
}

const where = `running against stand-ins for its service, its helper and its driver. Nothing
leaves this machine. It starts with an empty home and installs the helper first.`;
const more = ({ origin }) => `More links: curl -X POST ${origin}/devkit/links\n`;

function windowWelcome(service) {
  const { first, second, used } = handOutLinks(service);
  return `
This is tarnik, ${where}

  1. Paste a link into its window: ${first}
     or another:                   ${second}
     one used already:             ${used}
  2. Press Connect when it asks. 15 seconds later it counts as connected.
  3. A link to a machine that has joined is an offer. A second start brings one as the browser would.
  4. The two switches are this desktop's own: with both on the driver runs.
  5. Quit it from its menu, by closing its window where there is no menu, or with Ctrl-C here.

${more(service)}`;
}

function consoleWelcome(service) {
  const { first, second, used } = handOutLinks(service);
  return `
This is tarnik without a window, ${where}

  1. Paste a link:     ${first}
     or another:       ${second}
     one used already: ${used}
  2. When it asks, press Enter to connect. 15 seconds later it counts as connected.
  3. A link to a machine that has joined is an offer: answer it with replace or keep. One that comes while
     another is worked on has to wait; cancel ends that one. Type window to see what the window would show.
  4. Type switch accessibility on and switch screen on: the desktop driver starts, and the helper greets it.
  5. sample shows how busy it all is. kill -USR1 PID, with the pid that status shows, makes the helper hold the
     machine awake; kill -USR2 PID ends that.
  6. Commands: status, sample, window, switch, request, confirm, cancel, replace, keep, done, help, quit.

${more(service)}`;
}

async function playTogether(program, place, words) {
  const child = spawn(program, [...words, ...place.words], { stdio: 'inherit', env: place.environment });
  // The terminal gives its own signals to both of us, and the program must have time to stop cleanly.
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
