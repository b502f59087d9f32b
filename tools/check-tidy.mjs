// check-tidy.mjs BUILD: runs clang-tidy over the sources that the finished build folder BUILD compiled.
//
// What passed is remembered in build/tidy by the content of everything that the answer depends on, so that
// only sources with a change in them, or in a header of theirs, are looked at again.
import { execFileSync, spawn } from 'node:child_process';
import { createHash } from 'node:crypto';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

const tool = 'clang-tidy-19';
const root = path.resolve(path.dirname(new URL(import.meta.url).pathname), '..');
const build = path.resolve(process.argv[2]);
const memory = path.join(root, 'build/tidy');
// Tests and measurements are left out: most of their code is the frameworks' macros.
const looked = ['core', 'app', 'devkit'].map((folder) => path.join(root, folder) + path.sep);

const fixedInputs = [
    execFileSync(tool, ['--version'], { encoding: 'utf8' }),
    ...['.clang-tidy', 'app/views/.clang-tidy'].map((file) => fs.readFileSync(path.join(root, file), 'utf8')),
];

// What each object was made from, of our own files. From lines like
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

// The name under which a pass of this source is remembered; none when its inputs aren't known.
function key(entry, dependencies) {
    const files = dependencies.get(/ -o (\S+)/.exec(entry.command)?.[1]);
    if (!files || files.some((file) => !fs.existsSync(file))) return undefined;
    const hash = createHash('sha256');
    for (const text of [...fixedInputs, entry.command]) hash.update(text).update('\0');
    for (const file of [...new Set(files)].sort()) hash.update(file).update('\0').update(fs.readFileSync(file)).update('\0');
    return hash.digest('hex');
}

function look(file) {
    return new Promise((resolve) => {
        const child = spawn(tool, ['-p', build, '--quiet', file], { stdio: ['ignore', 'pipe', 'pipe'] });
        let said = '';
        child.stdout.on('data', (data) => (said += data));
        child.stderr.on('data', (data) => (said += data));
        child.on('error', (error) => resolve({ passed: false, said: String(error) }));
        child.on('close', (code) => resolve({ passed: code === 0, said }));
    });
}

fs.mkdirSync(memory, { recursive: true });
const dependencies = readDependencies();
const entries = JSON.parse(fs.readFileSync(path.join(build, 'compile_commands.json'), 'utf8'))
    .filter((entry) => looked.some((folder) => entry.file.startsWith(folder)))
    .map((entry) => ({ file: entry.file, key: key(entry, dependencies) }));
const due = entries.filter((entry) => !entry.key || !fs.existsSync(path.join(memory, entry.key)));
console.log(`${entries.length} sources, ${due.length} to look at`);

let failed = 0;
async function work() {
    for (let entry = due.shift(); entry; entry = due.shift()) {
        const { passed, said } = await look(entry.file);
        if (passed && entry.key) fs.writeFileSync(path.join(memory, entry.key), '');
        if (!passed) {
            failed += 1;
            console.log(`${path.relative(root, entry.file)}\n${said}`);
        }
    }
}
await Promise.all(os.cpus().map(work));

for (const name of fs.readdirSync(memory)) {
    if (!entries.some((entry) => entry.key === name)) fs.rmSync(path.join(memory, name));
}
process.exitCode = failed > 0 ? 1 : 0;
