// check-docs.mjs: checks the pages against the tree. The README's table lists all commands of ./dev, relative links
// have a target, and every file, type, operation, test, option and ./dev command that a page names exists.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';

const root = path.join(path.dirname(new URL(import.meta.url).pathname), '..');
process.chdir(root);

let faults = 0;
function fault(text) {
    faults += 1;
    console.log(text);
}

function withoutCodeBlocks(text) {
    return text.replace(/^```[\s\S]*?^```/gm, '');
}

// Returns the anchors that common renderers derive from the headings.
function anchors(text) {
    return new Set([...withoutCodeBlocks(text).matchAll(/^#+\s+(.*)$/gm)].map(([, heading]) =>
        heading.toLowerCase().replace(/[^\p{L}\p{N}\s_-]/gu, '').trim().replace(/\s/g, '-')));
}

function checkLinks(file, text) {
    for (const [, target] of withoutCodeBlocks(text).matchAll(/\]\(<?([^)\s>]+)>?[^)]*\)/g)) {
        if (/^[a-z]+:/.test(target)) continue;
        const [to, anchor] = target.split('#');
        const file2 = to === '' ? file : path.join(path.dirname(file), decodeURIComponent(to));
        if (!fs.existsSync(file2)) fault(`${file}: the link to ${target} has no target`);
        else if (anchor && file2.endsWith('.md') && !anchors(fs.readFileSync(file2, 'utf8')).has(anchor)) {
            fault(`${file}: there is no heading for ${target}`);
        }
    }
}

const tracked = execFileSync('git', ['ls-files'], { encoding: 'utf8' }).split('\n').filter(Boolean);
const topFolders = new Set(tracked.filter((file) => file.includes('/')).map((file) => file.split('/')[0]));
const code = tracked.filter((file) => /\.(h|cpp|mm|mjs|cmake|in)$|CMakeLists\.txt$/.test(file))
    .map((file) => fs.readFileSync(file, 'utf8')).join('\n');
const identifiers = new Set(code.match(/[A-Za-z_]\w*/g));
const tests = new Set([...code.matchAll(/^TEST\w*\((\w+), (\w+)\)/gm)].map(([, suite, name]) => `${suite}.${name}`));
const options = new Set(code.match(/--[a-z][a-z-]+/g));

// Returns true if `name` is a path from the root or from the page's folder. `*` matches any name. `{a,b}` matches a or b.
function namesFile(page, name) {
    const pattern = name.replace(/\/$/, '').replace(/[.+^$()|[\]\\]/g, '\\$&')
        .replace(/\{([^}]*)\}/g, (_, words) => `(${words.replace(/,/g, '|')})`).replace(/\*+|\b[A-Z]{2,}\b|_NAME\b/g, '[^/]*');
    const folder = path.dirname(page);
    const wanted = new RegExp(`^(${folder === '.' ? '' : `(${folder}/)?`})${pattern}(/|$)`);
    return tracked.some((file) => wanted.test(file));
}

// `NodeSupervisor`, `NodeHome::claim` and `runConsole()` are identifiers and must exist. Ignores other words in backticks.
function checkNames(file, text) {
    for (const [, span] of withoutCodeBlocks(text).matchAll(/`([^`\n]+)`/g)) {
        const ours = topFolders.has(span.split('/')[0]) && /^[\w.*{},/-]+\/[\w.*{},/-]*$/.test(span);
        if (ours && !namesFile(file, span)) fault(`${file}: there is no ${span}`);
        const isType = /^[A-Z][a-z]+[A-Z]\w*$/.test(span) || /^\w+(::\w+)+(\(\))?$/.test(span) || /^[a-z]\w+\(\)$/.test(span);
        for (const word of isType ? span.match(/\w+/g) : []) {
            if (!identifiers.has(word)) fault(`${file}: no source has the name ${word} of ${span}`);
        }
        if (/^[A-Z]\w+\.[a-z]+[A-Z]\w*$/.test(span) && !tests.has(span)) fault(`${file}: there is no test ${span}`);
        const option = /^(?:tarnik(?:-console)? )?(--[a-z][a-z-]+)/.exec(span);
        if (option && !options.has(option[1])) fault(`${file}: no program has the option ${option[1]}`);
    }
}

const help = execFileSync('./dev', ['help'], { encoding: 'utf8' });
const commands = new Set([...help.matchAll(/^\.\/dev ([a-z]+)/gm)].map(([, name]) => name));
const checkSteps = /^\.\/dev check .*: (.*)$/m.exec(help)[1].split(', ');
const files = ['README.md', 'CONTRIBUTING.md', 'SECURITY.md', 'devkit/README.md', ...fs.readdirSync('docs').filter((name) => name.endsWith('.md')).map((name) => `docs/${name}`)];

for (const file of files) {
    if (!fs.existsSync(file)) {
        fault(`${file} is missing`);
        continue;
    }
    const text = fs.readFileSync(file, 'utf8');
    checkLinks(file, text);
    checkNames(file, text);
    for (const [, name, word] of text.matchAll(/\.\/dev +([a-z]+)(?: ([a-z]+)`)?/g)) {
        if (!commands.has(name)) fault(`${file}: there is no command ./dev ${name}`);
        if (name === 'check' && word && !checkSteps.includes(word)) fault(`${file}: there is no check ${word}`);
    }
    if (file !== 'README.md') continue;
    const table = new Set([...text.matchAll(/^\|\s*`\.\/dev ([a-z]+)/gm)].map(([, name]) => name));
    for (const name of commands) {
        if (!table.has(name)) fault(`${file}: the table lacks ./dev ${name}`);
    }
}

process.exitCode = faults > 0 ? 1 : 0;
