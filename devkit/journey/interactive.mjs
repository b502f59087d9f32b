// The journey with a person at the terminal.
import { spawn } from 'node:child_process';
import { once } from 'node:events';

function welcome({ origin, links }) {
  const [first, second, used] = [links.handOut(), links.handOut(), links.handOut()];
  links.use(used.code);
  return `
This is tarnik without a window, running against stand-ins for its service, its helper and its driver. Nothing
leaves this machine. It starts with an empty home and installs the helper first.

  1. Paste a link:     ${first.link}
     or another:       ${second.appLink}
     one used already: ${used.link}
  2. When it asks, press Enter to connect. 15 seconds later it counts as connected.
  3. A link to a machine that has joined is an offer: answer it with replace or keep. One that comes while
     another is worked on has to wait; cancel ends that one. Type window to see what the window would show.
  4. Type switch accessibility on and switch screen on: the desktop driver starts, and the helper greets it.
  5. sample shows how busy it all is. kill -USR1 PID, with the pid that status shows, makes the helper hold the
     machine awake; kill -USR2 PID ends that.
  6. Commands: status, sample, window, switch, request, confirm, cancel, replace, keep, done, help, quit.

More links: curl -X POST ${origin}/devkit/links
`;
}

export async function playTogether(program, place) {
  console.log(welcome(place.service));
  const child = spawn(program, place.words, { stdio: 'inherit', env: place.environment });
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
