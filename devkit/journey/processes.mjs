// Inspects processes: what they execute, and whether they run.
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

// Returns the command line of a running process and, if /proc exists, its executable. Returns undefined if the process
// has ended, even if it was not reaped.
export const inspect = hasProc ? inspectByProc : inspectByPs;

// Also compares the command line, because the pid may belong to another process now.
export function isRunning(pid, script) {
  return inspect(pid)?.command.includes(script) ?? false;
}

// Returns true if the pid is in use. An orphan that has ended keeps its pid until init reaps it, which may take seconds.
export function hasNumber(pid) {
  try {
    return process.kill(pid, 0);
  } catch (error) {
    return error.code === 'EPERM';
  }
}
