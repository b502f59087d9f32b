// check-tidy.mjs BUILD: runs clang-tidy over the sources that the finished build folder BUILD compiled.
//
// For one source, clang-tidy spends most of its time in the headers of the standard library. So this script joins up to
// 12 sources with the same flags into one unit. The output names the original files and lines. Sources that can't be
// compiled together, for example because both define a helper with the same name, are put into different units.
//
// build/tidy records each source that passed, under a hash of all its inputs. The source is not checked again until the
// source or one of its headers changes.
import { execFileSync, spawn } from 'node:child_process';
import { createHash } from 'node:crypto';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

const tool = 'clang-tidy-19';
const unitSize = 12;
const root = path.resolve(path.dirname(new URL(import.meta.url).pathname), '..');
const build = path.resolve(process.argv[2]);
const memory = path.join(root, 'build/tidy/passed');
const units = path.join(root, 'build/tidy/units');
// Tests and benchmarks are not checked, because most of their code consists of the frameworks' macros.
const checkedFolders = ['core', 'app', 'devkit', 'tools'].map((folder) => path.join(root, folder) + path.sep);

// Folders with settings of their own.
const ownSettings = ['app/views/', 'app/desktop/'].map((folder) => path.join(root, folder, '.clang-tidy'));

const fixedInputs = [
    execFileSync(tool, ['--version'], { encoding: 'utf8' }),
    ...[path.join(root, '.clang-tidy'), ...ownSettings].map((file) => fs.readFileSync(file, 'utf8')),
];

// Maps each object to the files of this project that it was made from. `ninja -t deps` prints:
//   core/a.cpp.o: #deps 2, deps mtime 1 (VALID)
//       /root/core/a.cpp
function readDependencies() {
    const all = execFileSync('ninja', ['-C', build, '-t', 'deps'], { encoding: 'utf8', maxBuffer: 1 << 28 });
    const byObject = new Map();
    let current = [];
    for (const line of all.split('\n')) {
        const object = /^(\S.*): #deps/.exec(line)?.[1];
        if (object) byObject.set(object, (current = []));
        const file = path.resolve(build, line.trim());
        if (line.startsWith('    ') && file.startsWith(root + path.sep) && !file.endsWith('.pch')) current.push(file);
    }
    return byObject;
}

// Returns the name under which a pass of this source is recorded, or undefined if its inputs are unknown.
function keyOf(entry, dependencies) {
    const files = dependencies.get(/ -o (\S+)/.exec(entry.command)?.[1]);
    if (!files || files.some((file) => !fs.existsSync(file))) return undefined;
    const hash = createHash('sha256');
    for (const text of [...fixedInputs, entry.command]) hash.update(text).update('\0');
    for (const file of [...new Set(files)].sort()) hash.update(file).update('\0').update(fs.readFileSync(file)).update('\0');
    return hash.digest('hex');
}

function run(command, words) {
    return new Promise((resolve) => {
        const child = spawn(command, words, { cwd: build, stdio: ['ignore', 'pipe', 'pipe'] });
        let output = '';
        child.stdout.on('data', (data) => (output += data));
        child.stderr.on('data', (data) => (output += data));
        child.on('error', (error) => resolve({ passed: false, output: String(error) }));
        child.on('close', (code) => resolve({ passed: code === 0, output }));
    });
}

// A file that joins several sources, in a folder that clang-tidy reads like a build folder.
class Unit {
    constructor(number, entries) {
        this.folder = path.join(units, String(number));
        this.file = path.join(this.folder, 'unit.cpp');
        this.settings = entries[0].settings;
        this.flags = entries[0].flags;
        this.write(entries);
    }

    // Writes the unit's files. Leaves out an #include that an earlier source of the unit has.
    write(entries) {
        this.entries = entries;
        this.origins = [];
        const included = new Set();
        const lines = entries.flatMap(({ file }) => {
            const text = fs.readFileSync(file, 'utf8').replace(/\n$/, '').split('\n');
            const repeated = text.map((line) => /^#include\b/.test(line) && included.has(line));
            for (const line of text) if (/^#include\b/.test(line)) included.add(line);
            text.forEach((_, index) => this.origins.push(`${path.relative(root, file)}:${index + 1}`));
            return text.map((line, index) => (repeated[index] ? '' : line));
        });
        fs.mkdirSync(this.folder, { recursive: true });
        // The .clang-tidy of the root applies to all folders. The .clang-tidy of the sources' folder is copied here.
        if (this.settings) fs.copyFileSync(this.settings, path.join(this.folder, '.clang-tidy'));
        fs.writeFileSync(this.file, lines.join('\n') + '\n');
        fs.writeFileSync(path.join(this.folder, 'compile_commands.json'), JSON.stringify([
            { directory: build, file: this.file, command: `${this.flags} -c ${this.file}` },
        ]));
    }

    // Replaces places in the unit with places in the sources.
    translate(output) {
        return output.replaceAll(new RegExp(`${this.file}:(\\d+)`, 'g'), (whole, line) => this.origins[line - 1] ?? whole);
    }

    // Removes and returns the sources that don't compile after the other sources.
    async separate() {
        const removed = [];
        while (this.entries.length > 1) {
            const { passed, output } = await run('sh', ['-c', `exec ${this.flags} -fsyntax-only ${this.file}`]);
            if (passed) break;
            const named = new Set([...this.translate(output).matchAll(/^(\S+?):\d+:\d+: (?:fatal )?error:/gm)].map(([, file]) => file));
            const [out, kept] = [[], []];
            for (const entry of this.entries) (named.has(path.relative(root, entry.file)) ? out : kept).push(entry);
            if (out.length === 0 || kept.length === 0) {
                removed.push(...this.entries.slice(1));
                this.write(this.entries.slice(0, 1));
                break;
            }
            removed.push(...out);
            this.write(kept);
        }
        return removed;
    }

    async check() {
        const { passed, output } = await run(tool, ['-p', this.folder, '--quiet', this.file]);
        return { passed, output: this.translate(output) };
    }
}

fs.mkdirSync(memory, { recursive: true });
fs.rmSync(units, { recursive: true, force: true });
const dependencies = readDependencies();
const entries = JSON.parse(fs.readFileSync(path.join(build, 'compile_commands.json'), 'utf8'))
    .filter((entry) => checkedFolders.some((folder) => entry.file.startsWith(folder)))
    .map((entry) => ({
        file: entry.file,
        key: keyOf(entry, dependencies),
        flags: entry.command.replace(/ -o \S+/, '').replace(/ -c \S+/, ''),
        settings: ownSettings.find((file) => entry.file.startsWith(path.dirname(file) + path.sep)) ?? '',
    }));
const due = entries.filter((entry) => !entry.key || !fs.existsSync(path.join(memory, entry.key)));
console.log(`${entries.length} sources, ${due.length} to check`);

// The groups of sources with the same flags and settings.
const groups = new Map();
for (const entry of due) {
    // A source that includes the sources of a library is checked alone. Otherwise calls into the library by the sources
    // after it would be analysed.
    const alone = /^#include <\S+\/src\.hpp>/m.test(fs.readFileSync(entry.file, 'utf8')) ? entry.file : '';
    const kind = `${entry.settings}\0${entry.flags}\0${alone}`;
    groups.set(kind, [...(groups.get(kind) ?? []), entry]);
}
const queue = [...groups.values()].flatMap((group) => {
    // The units have almost equal sizes: 13 sources become 7 and 6.
    const share = Math.ceil(group.length / Math.ceil(group.length / unitSize));
    return Array.from({ length: Math.ceil(group.length / share) }, (_, index) => group.slice(index * share, (index + 1) * share));
}).sort((one, other) => other.length - one.length);

let failed = false;
let number = 0;
async function work() {
    for (let batch = queue.shift(); batch; batch = queue.shift()) {
        const unit = new Unit(number++, batch);
        const removed = await unit.separate();
        if (removed.length > 0) queue.push(removed);
        const { passed, output } = await unit.check();
        if (passed) {
            for (const { key } of unit.entries) if (key) fs.writeFileSync(path.join(memory, key), '');
        } else {
            failed = true;
            console.log(output);
        }
    }
}
await Promise.all(os.cpus().map(work));

for (const name of fs.readdirSync(memory)) {
    if (!entries.some((entry) => entry.key === name)) fs.rmSync(path.join(memory, name));
}
process.exitCode = failed ? 1 : 0;
