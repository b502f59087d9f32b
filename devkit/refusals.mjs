// Starts the program on an empty home against everything that can be wrong with a release, the service or
// the network, and checks the one sentence that it says, its exit status and what it leaves on the disk:
//
//     node devkit/refusals.mjs --program PATH [--only NAME] [--patient]
//
// --only takes a part of a case's name. --patient adds the cases that take minutes.
import path from 'node:path';
import { parseArgs } from 'node:util';
import { event } from './journey/consoleProgram.mjs';
import { ConsoleRun } from './journey/consoleRun.mjs';
import { layOut } from './journey/layout.mjs';
import { demand, exactly, installedHelper, nothingStaged } from './journey/proof.mjs';
import { cases } from './refusals/cases.mjs';
import { compare, lookAt } from './refusals/disk.mjs';

const usage = 'usage: node devkit/refusals.mjs --program PATH [--only NAME] [--patient]';
const wrongUsage = 2;
const caseLimitMs = 60_000;
const patientLimitMs = 300_000;
const atOnce = 4;

function readArguments() {
  const options = {
    program: { type: 'string' },
    only: { type: 'string', default: '' },
    patient: { type: 'boolean', default: false },
  };
  try {
    const { values } = parseArgs({ options });
    if (values.program) return values;
    console.error(`--program is missing; ${usage}`);
  } catch (error) {
    console.error(`${error.message}; ${usage}`);
  }
  return process.exit(wrongUsage);
}

async function refused(run, one) {
  const program = run.launch();
  const { code } = await program.expectExit(run.deadline);
  const said = program.lines.map((line) => line.text).filter((text) => event('error', '.*').test(text));
  demand(said.length === 1, `it said ${said.length} errors, not one: ${program.describeExit()}`);
  demand(code === 1, program.describeExit());
  demand(!program.find(event('install', 'done .*')), 'it says that the install is done');
  const wanted = typeof one.sentence === 'function' ? one.sentence(run.place) : one.sentence;
  const sentence = said[0].replace(/^\S+ error /, '');
  const fits = typeof wanted === 'string' ? sentence === wanted : wanted.test(sentence);
  demand(fits, `it said: ${sentence}\n        not: ${wanted}`);
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
    const [home, offered] = [lookAt(place.home), lookAt(place.release.folder)];
    const said = await play[one.outcome](run, one);
    compare(home, lookAt(place.home), one.leaves);
    compare(offered, lookAt(place.release.folder), 'nothing');
    if (one.leaves !== 'nothing') nothingStaged(place);
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
  for (const { from, text } of lines) console.log(`        ${from} | ${text}`);
  return undefined;
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

const options = readArguments();
const chosen = cases.filter((one) => one.name.includes(options.only) && (options.patient || !one.patient));
if (chosen.length === 0) {
  console.error(`no case is called ${options.only}`);
  process.exit(wrongUsage);
}
const failed = await tryAll(path.resolve(options.program), chosen);
console.log(`\n${chosen.length - failed} of ${chosen.length} cases went as they should.`);
process.exitCode = failed === 0 ? 0 : 1;
