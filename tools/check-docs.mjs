// check-docs.mjs: the README's table of commands is that of ./dev, and every relative link leads somewhere.
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

// As the common renderers make them from headings.
function anchors(text) {
    return new Set([...withoutCodeBlocks(text).matchAll(/^#+\s+(.*)$/gm)].map(([, heading]) =>
        heading.toLowerCase().replace(/[^\p{L}\p{N}\s_-]/gu, '').trim().replace(/\s/g, '-')));
}

function checkLinks(file, text) {
    for (const [, target] of withoutCodeBlocks(text).matchAll(/\]\(<?([^)\s>]+)>?[^)]*\)/g)) {
        if (/^[a-z]+:/.test(target)) continue;
        const [to, anchor] = target.split('#');
        const file2 = to === '' ? file : path.join(path.dirname(file), decodeURIComponent(to));
        if (!fs.existsSync(file2)) fault(`${file}: the link to ${target} leads nowhere`);
        else if (anchor && file2.endsWith('.md') && !anchors(fs.readFileSync(file2, 'utf8')).has(anchor)) {
            fault(`${file}: there is no heading for ${target}`);
        }
    }
}

const commands = new Set([...execFileSync('./dev', ['help'], { encoding: 'utf8' }).matchAll(/^\.\/dev ([a-z]+)/gm)]
    .map(([, name]) => name));
const files = ['README.md', ...fs.readdirSync('docs').filter((name) => name.endsWith('.md')).map((name) => `docs/${name}`)];

for (const file of files) {
    if (!fs.existsSync(file)) {
        fault(`${file} is missing`);
        continue;
    }
    const text = fs.readFileSync(file, 'utf8');
    checkLinks(file, text);
    for (const [, name] of text.matchAll(/\.\/dev +([a-z]+)/g)) {
        if (!commands.has(name)) fault(`${file}: there is no command ./dev ${name}`);
    }
    if (file !== 'README.md') continue;
    const table = new Set([...text.matchAll(/^\|\s*`\.\/dev ([a-z]+)/gm)].map(([, name]) => name));
    for (const name of commands) {
        if (!table.has(name)) fault(`${file}: the table lacks ./dev ${name}`);
    }
}

process.exitCode = faults > 0 ? 1 : 0;
