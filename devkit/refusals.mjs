// Runs the program on an empty home against every fault of a release, of the service and of the network. Checks the
// only sentence that the program prints, its exit status and the files that it leaves.
//
//     node devkit/refusals.mjs --program PATH [--only NAME] [--patient]
//
// NAME is a part of a case's name. --patient adds the cases that take minutes.
import path from 'node:path';
import { printOutput, readArguments, refuse } from './commandLine.mjs';
import { event } from './journey/consoleProgram.mjs';
import { ConsoleRun } from './journey/consoleRun.mjs';
import { layOut } from './journey/layout.mjs';
import { demand, exactly, installedHelper, nothingStaged, onlyPlainRequests } from './journey/proof.mjs';
import { cases } from './refusals/cases.mjs';
import { compare, snapshot } from './refusals/disk.mjs';

const usage = 'usage: node devkit/refusals.mjs --program PATH [--only NAME] [--patient]';
const caseLimitMs = 60_000;
const patientLimitMs = 300_000;
const atOnce = 4;

async function refused(run, one) {
  const program = run.launch();
  const { code } = await program.expectExit(run.deadline);
  const said = program.lines.map((line) => line.text).filter((text) => event('error', '.*').test(text));
  demand(said.length === 1, `it printed ${said.length} errors, not one: ${program.describeExit()}`);
  demand(code === 1, program.describeExit());
  demand(!program.find(event('install', 'done .*')), 'it reported a finished install');
  const wanted = typeof one.sentence === 'function' ? one.sentence(run.place) : one.sentence;
  const sentence = said[0].replace(/^\S+ error /, '');
  const fits = typeof wanted === 'string' ? sentence === wanted : wanted.test(sentence);
  demand(fits, `it printed: ${sentence}\n        not: ${wanted}`);
  if (one.cause) demand(program.find(event('cause', `.*${one.cause.source}.*`)), `no cause like ${one.cause}`);
  return sentence;
}

async function installed(run) {
  run.launch();
  const done = await run.expect('install', exactly(`done ${run.place.release.version}`), 0);
  await run.expect('state', 'waitingForLink', 0);
  await run.quit();
  installedHelper(run.place);
  return done;
}

async function either(run) {
  const program = run.launch();
  const decided = await program.expect(event('(error|state)', '.*'), 0, run.deadline);
  if (event('state', '.*').test(decided)) await run.quit();
  else demand((await program.expectExit(run.deadline)).code === 1, program.describeExit());
  return decided;
}

const play = { refused, installed, either };

async function tryOne(program, one) {
  const place = await layOut({ runtime: 'tiny', fault: one.fault, settings: one.settings });
  const run = new ConsoleRun(program, place);
  run.allow(one.patient ? patientLimitMs : caseLimitMs);
  try {
    if (one.misbehave) place.misbehave(...one.misbehave);
    one.prepare?.(place);
    const [home, offered] = [snapshot(place.home), snapshot(place.release.folder)];
    const said = await play[one.outcome](run, one);
    compare(home, snapshot(place.home), one.leaves);
    compare(offered, snapshot(place.release.folder), 'nothing');
    if (one.leaves !== 'nothing') nothingStaged(place);
    onlyPlainRequests(place.service);
    return { said };
  } catch (error) {
    return { problem: error.message, lines: run.console?.lines ?? [] };
  } finally {
    await run.end();
    await place.service.close();
    place.remove();
  }
}

function report(one, { said, problem, lines }) {
  if (!problem) return console.log(`ok      ${one.name}: ${said}`);
  console.log(`FAILED  ${one.name}: ${problem}`);
  return printOutput(lines);
}

async function tryAll(program, chosen) {
  const waiting = [...chosen];
  let failed = 0;
  const work = async () => {
    for (let one = waiting.shift(); one; one = waiting.shift()) {
      const result = await tryOne(program, one);
      report(one, result);
      if (result.problem) failed += 1;
    }
  };
  await Promise.all(Array.from({ length: atOnce }, work));
  return failed;
}

const options = readArguments(usage, {
  program: { type: 'string' },
  only: { type: 'string', default: '' },
  patient: { type: 'boolean', default: false },
}, ({ program }) => (program ? undefined : '--program is missing'));
const chosen = cases.filter((one) => one.name.includes(options.only) && (options.patient || !one.patient));
if (chosen.length === 0) refuse(`no case has a name with ${options.only}`, usage);
const failed = await tryAll(path.resolve(options.program), chosen);
console.log(`\n${chosen.length - failed} of ${chosen.length} cases passed.`);
process.exitCode = failed === 0 ? 0 : 1;
