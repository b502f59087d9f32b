// Looks at processes: what they run, and whether they are still there.
import { execFileSync } from 'node:child_process';
import { existsSync, readFileSync, readlinkSync } from 'node:fs';

const hasProc = existsSync('/proc/self/cmdline');

function inspectByProc(pid) {
  try {
    const afterName = readFileSync(`/proc/${pid}/stat`, 'utf8').split(') ').pop();
    if (afterName.startsWith('Z')) return undefined;
    const command = readFileSync(`/proc/${pid}/cmdline`, 'utf8').split('\0').join(' ').trim();
    return { command, executable: readlinkSync(`/proc/${pid}/exe`) };
  } catch {
    return undefined;
  }
}

function askPs(pid, column) {
  return execFileSync('/bin/ps', ['-ww', '-o', `${column}=`, '-p', `${pid}`], { encoding: 'utf8' }).trim();
}

function inspectByPs(pid) {
  try {
    if (askPs(pid, 'stat').startsWith('Z')) return undefined;
    return { command: askPs(pid, 'command'), executable: undefined };
  } catch {
    return undefined;
  }
}

// The command line of a live process, and where the system tells it, its executable. A process that
// has ended but was not reaped yet does not count as live.
export const inspect = hasProc ? inspectByProc : inspectByPs;

// A number alone may have gone to somebody else; this also asks what the process runs.
export function isRunning(pid, script) {
  return inspect(pid)?.command.includes(script) ?? false;
}

// An orphan that has ended keeps its number until the first process of the system collects it, which may take
// that one seconds.
export function hasNumber(pid) {
  try {
    return process.kill(pid, 0);
  } catch (error) {
    return error.code === 'EPERM';
  }
}
