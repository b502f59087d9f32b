// The journey with a person at the terminal.
import { spawn } from 'node:child_process';
import { once } from 'node:events';

const welcome = `
This is tarnik without a window, running against a stand-in for its helper. Nothing leaves this machine.

  1. Paste a link:  https://join.example.invalid/j/abc   (add ?expired=1 to see one refused)
  2. When it asks, press Enter to connect. 15 seconds later it counts as connected.
  3. Commands: status, confirm, cancel, help, quit.
`;

export async function playTogether(program, place) {
  console.log(welcome);
  const child = spawn(program, ['--console'], { stdio: 'inherit', env: place.environment });
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
