// mutants.mjs [N] [SEED] [--file GLOB] [--list]: makes N small changes to the code, one at a time. Prints the changes
// that no unit test detects. The default is 60 changes with the seed 1.
//
// GLOB limits the changes to matching files, or to FILE:LINE. --list prints the changes without trying them. The same
// arguments on the same tree select the same changes. A change that doesn't compile or doesn't change the program is
// replaced by another change. Stress tests and end-to-end tests don't run. A change in code that no test program links
// survives and is marked.
//
// Each worker changes a copy of the tree in build/mutants/, not the checkout. If the system allows it, the tests run in
// their own process namespace, because a changed program may send signals and leave processes behind.
import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import fs from 'node:fs';
import path from 'node:path';
import { parseArgs } from 'node:util';
import { applyMutation, mutationsOf, shuffled } from './mutations.mjs';

const workers = 2;
const leastSilence = 20_000;  // in milliseconds; tests without output for longer count as hung
const root = path.resolve(path.dirname(new URL(import.meta.url).pathname), '..');
const { values: options, positionals } = parseArgs({
    allowPositionals: true,
    options: { file: { type: 'string', default: '*' }, list: { type: 'boolean', default: false } },
});
const [wanted, seed] = [positionals[0] ?? '60', positionals[1] ?? '1'].map(Number);
if (!Number.isInteger(wanted) || wanted < 1 || !Number.isInteger(seed) || positionals.length > 2) {
    console.error('usage: mutants.mjs [N] [SEED] [--file GLOB] [--list]');
    process.exit(2);
}

// Files that are not changed, because this system doesn't build them or no unit test links them, and the views.
const untested = /_darwin\.|\/macos\/|^app\/views\/|\/main(_linux)?\.cpp$|_release\.cpp$/;
const treeFiles = execFileSync('git', ['ls-files', '--cached', '--others', '--exclude-standard'], { cwd: root, encoding: 'utf8' })
    .split('\n').filter((file) => file && fs.existsSync(path.join(root, file))).sort();
const glob = new RegExp(`^${options.file.replace(/[.+?^${}()|[\]\\]/g, '\\$&').replaceAll('*', '.*')}$`);
const picks = shuffled(treeFiles
    .filter((file) => /^(core|app)\/.*\.(cpp|h)$/.test(file) && !untested.test(file))
    .flatMap((file) => mutationsOf(file, fs.readFileSync(path.join(root, file), 'utf8')))
    .filter(({ file, line }) => glob.test(file) || glob.test(`${file}:${line}`)), seed);

function describe({ file, line, old, replacement }) {
    const short = (text) => text.replace(/\s+/g, ' ').trim();
    return `${file}:${line}: ${short(old)}  ->  ${short(replacement) || '(deleted)'}`;
}

if (options.list) {
    for (const pick of picks.slice(0, wanted)) console.log(describe(pick));
    process.exit(0);
}

// The suites of each test file, and the program that contains them.
const suites = treeFiles.filter((file) => /^tests\/(?!fuzz\/).*Test\.cpp$/.test(file)).map((file) => {
    const [, folder] = file.split('/');
    const text = fs.readFileSync(path.join(root, file), 'utf8');
    return {
        subject: path.basename(file, 'Test.cpp'),
        folder,
        program: /^(views|platform)$/.test(folder) ? 'tarnik_view_tests' : 'tarnik_tests',
        names: [...new Set([...text.matchAll(/^(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+)/gm)].map(([, name]) => name))],
    };
});
const stress = '-Stress*';
const programs = ['tarnik_tests', 'tarnik_view_tests', 'tarnik_development_tests', 'tarnik_release_tests'];

// Returns the tests to run for a change in `file`, in stages. The first stage is the most likely to detect the change.
function stagesFor(file) {
    const [area, folder] = file.split('/');
    const subject = path.basename(file).replace(/(_linux|_development)?\.\w+$/, '');
    const near = area === 'core' ? folder : file.startsWith('app/platform/linux/') ? 'platform' : 'app';
    const own = suites.filter((suite) => suite.subject === subject);
    const beside = suites.filter((suite) => suite.folder === near && suite.subject !== subject);
    const filter = (some) => some.flatMap(({ names }) => names).flatMap((name) => [`${name}.*`, `*/${name}.*`]).join(':');
    const stages = [own, beside].flatMap((some) => programs.map((program) => {
        const held = some.filter((suite) => suite.program === program);
        return { program, filter: filter(held) };
    })).filter((stage) => stage.filter !== '');
    for (const program of programs) {
        const done = stages.filter((stage) => stage.program === program).map((stage) => `:${stage.filter}`).join('');
        stages.push({ program, filter: `*${stress}${done}` });
    }
    return stages;
}

const running = new Set();

function end(child) {
    try {
        process.kill(-child.pid, 'SIGKILL');
    } catch { /* it has already ended */ }
}

// Runs a command in its own process group. `onText` receives the standard output.
function run(command, words, settings, onText = () => {}) {
    return new Promise((resolve) => {
        const child = spawn(command, words, { detached: true, stdio: ['ignore', 'pipe', 'pipe'], ...settings });
        running.add(child);
        child.stdout.on('data', (data) => onText(String(data), child));
        child.stderr.resume();
        child.on('error', () => resolve(-1));
        child.on('exit', (code) => {
            end(child);  // ends the processes that the command left behind
            running.delete(child);
            resolve(code ?? -1);
        });
    });
}

// The shell is the first process of the namespace. It limits the memory and the file sizes of a changed program.
const asUser = process.getuid() === 0 ? [] : ['--user', '--map-current-user'];
const apart = ['unshare', ...asUser, '--pid', '--fork', '--kill-child', '--mount-proc'];
const fence = [...(spawnSync(apart[0], [...apart.slice(1), 'true']).status === 0 ? apart : []),
    'sh', '-c', 'ulimit -c 0; ulimit -f 2097152; ulimit -v 8388608; "$@"; exit $?', 'tests'];

class Worker {
    constructor(number) {
        this.tree = path.join(root, 'build/mutants', String(number));
        this.scratch = path.join(this.tree, 'build/scratch');
        this.silence = leastSilence;
        this.clean = {};
    }

    // Writes only the files that differ, so that the build of an earlier run stays valid.
    copyTree() {
        const known = new Set(treeFiles);
        for (const entry of fs.existsSync(this.tree) ? fs.readdirSync(this.tree, { recursive: true, withFileTypes: true }) : []) {
            const file = path.relative(this.tree, path.join(entry.parentPath ?? entry.path, entry.name));
            if (!entry.isDirectory() && !file.startsWith('build/') && !known.has(file)) fs.rmSync(path.join(this.tree, file));
        }
        for (const file of treeFiles) {
            const [from, to] = [path.join(root, file), path.join(this.tree, file)];
            const content = fs.readFileSync(from);
            if (fs.existsSync(to) && fs.readFileSync(to).equals(content)) continue;
            fs.mkdirSync(path.dirname(to), { recursive: true });
            fs.writeFileSync(to, content, { mode: fs.statSync(from).mode });
        }
    }

    async build(targets) {
        const environment = { ...process.env, CCACHE_BASEDIR: this.tree, CCACHE_NOHASHDIR: 'true' };
        return await run('tools/build.sh', ['mutants', ...targets], { cwd: this.tree, env: environment }) === 0;
    }

    program(name) {
        return path.join(this.tree, 'build/mutants/tests', name);
    }

    digest(name) {
        return createHash('sha1').update(fs.readFileSync(this.program(name))).digest('hex');
    }

    // Returns a digest of all compiled code, including code that no test program links.
    digestOfLibraries() {
        const folder = path.join(this.tree, 'build/mutants');
        const libraries = ['core', 'app'].flatMap((area) => fs.readdirSync(path.join(folder, area), { recursive: true })
            .filter((file) => file.endsWith('.a')).map((file) => path.join(folder, area, file)));
        const hash = createHash('sha1');
        for (const library of libraries.sort()) hash.update(fs.readFileSync(library));
        return hash.digest('hex');
    }

    // Returns the test that failed or hung, or undefined if all tests passed.
    async failingTest(name, filter) {
        fs.rmSync(this.scratch, { recursive: true, force: true });
        fs.mkdirSync(this.scratch, { recursive: true });
        fs.chmodSync(this.scratch, 0o1777);  // the mode of /tmp, for tests that drop root
        let [text, hung, longest, last] = ['', false, 0, Date.now()];
        let watch;
        const environment = { ...process.env, TMPDIR: this.scratch };
        const words = [...fence.slice(1), this.program(name), '--gtest_fail_fast', '--gtest_color=no', `--gtest_filter=${filter}`];
        const status = await run(fence[0], words, { cwd: this.tree, env: environment }, (piece, child) => {
            text = (text + piece).slice(-100_000);
            if (/^\[/m.test(piece)) {
                longest = Math.max(longest, Date.now() - last);
                last = Date.now();
            }
            watch ??= setInterval(() => {
                if (Date.now() - last < this.silence) return;
                hung = true;
                end(child);
            }, 500);
        });
        clearInterval(watch);
        this.longest = Math.max(this.longest ?? 0, longest);
        if (status === 0 && !hung) return undefined;
        const test = [...text.matchAll(/^\[ RUN +\] (\S+)/gm)].at(-1)?.[1] ?? `${name} itself`;
        return { test: /^\[  FAILED  \] (\w\S*?),? /m.exec(text)?.[1] ?? test, hung };
    }

    async buildClean() {
        this.copyTree();
        if (!await this.build(programs)) throw new Error('the tests do not build without a change');
        for (const name of programs) this.clean[name] = this.digest(name);
        this.cleanLibraries = this.digestOfLibraries();
    }

    async testClean() {
        for (const name of programs) {
            const failed = await this.noticed(name, `*${stress}`);
            if (failed) throw new Error(`${failed.test} fails without a change`);
        }
        this.silence = Math.max(leastSilence, 4 * this.longest);
    }

    // Like failingTest(), but runs a failed test again. A test that then passes is unreliable and is left out.
    async noticed(name, filter) {
        const unsteady = [];
        for (;;) {
            const without = unsteady.length === 0 ? '' : `${filter.includes('-') ? ':' : '-'}${unsteady.join(':')}`;
            const failed = await this.failingTest(name, filter + without);
            if (!failed || failed.hung || unsteady.length === 5) return failed;
            if (await this.failingTest(name, failed.test.includes('.') ? failed.test : filter)) return failed;
            console.error(`unsteady: ${failed.test}`);
            unsteady.push(failed.test);
        }
    }

    // Returns 'uncompiled', 'same', 'survived', 'unlinked' (survived in code that no test program links), or the test that
    // detected the change.
    async judge(mutation) {
        const file = path.join(this.tree, mutation.file);
        const original = fs.readFileSync(file, 'utf8');
        fs.writeFileSync(file, applyMutation(original, mutation));
        try {
            const changed = {};
            for (const { program, filter } of stagesFor(mutation.file)) {
                if (!(program in changed)) {
                    if (!await this.build([program])) return 'uncompiled';
                    changed[program] = this.digest(program) !== this.clean[program];
                }
                const failed = changed[program] && await this.noticed(program, filter);
                if (failed) return { by: failed.test, hung: failed.hung };
            }
            if (Object.values(changed).includes(true)) return 'survived';
            return this.digestOfLibraries() === this.cleanLibraries ? 'same' : 'unlinked';
        } finally {
            fs.writeFileSync(file, original);
        }
    }
}

for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP']) {
    process.on(signal, () => {
        for (const child of running) end(child);
        process.exit(130);  // the next run restores the copies
    });
}

const count = { killed: 0, survived: 0, unlinked: 0, uncompiled: 0, same: 0, judging: 0 };
const judged = () => count.killed + count.survived + count.unlinked;
const survivors = [];
let next = 0;

async function work(worker) {
    // Starts no more changes than can still count. So the counted changes are the first N in the order of the list.
    while (next < picks.length) {
        if (judged() + count.judging >= wanted) {
            if (count.judging === 0) return;
            await new Promise((resolve) => setTimeout(resolve, 100));
            continue;
        }
        const order = next++;
        count.judging += 1;
        const verdict = await worker.judge(picks[order]);
        count.judging -= 1;
        const name = verdict.by ? 'killed' : verdict;
        count[name] += 1;
        if (name === 'survived') survivors.push({ order, text: describe(picks[order]) });
        if (name === 'unlinked') survivors.push({ order, text: `${describe(picks[order])}  (in no unit test program)` });
        const how = verdict.by ? `  (${verdict.hung ? 'hangs in ' : ''}${verdict.by})` : '';
        console.error(`${judged()}/${wanted} ${name}: ${describe(picks[order])}${how}`);
    }
}

try {
    const started = Date.now();
    const ready = Array.from({ length: workers }, (_, index) => new Worker(index + 1));
    for (const worker of ready) await worker.buildClean();
    await Promise.all(ready.map((worker) => worker.testClean()));
    console.error(`ready after ${Math.round((Date.now() - started) / 1000)} s; ${picks.length} changes to choose from`);
    await Promise.all(ready.map(work));
} catch (error) {
    for (const child of running) end(child);
    console.error(`mutants: ${error.message}`);
    process.exit(2);
}

console.log(survivors.length === 0 ? 'no survivors' : 'survivors:');
for (const { text } of survivors.sort((a, b) => a.order - b.order)) console.log(text);
const survived = count.survived + count.unlinked;
console.log(`${count.killed} killed, ${survived} survived, ${count.uncompiled} not compiled, ${count.same} without effect`);
const score = (all) => `${all === 0 ? 0 : Math.round(1000 * count.killed / all) / 10} % of ${all}`;
console.log(`score ${score(judged())}; ${score(judged() - count.unlinked)} in the unit test programs; seed ${seed}`);
process.exit(0);
