// translations.mjs [--update]: compares the catalogues in translations/ with the texts that the window shows. Reports
// texts that a catalogue lacks, unfinished translations, wrong placeholders, and entries whose text is gone. With
// --update, adds and removes entries and reports what is left to translate.
import fs from 'node:fs';
import path from 'node:path';

const root = path.join(path.dirname(new URL(import.meta.url).pathname), '..');
process.chdir(root);

// The files with texts for the window, in the order of the catalogue. A list of names limits the texts of a file.
const sources = new Map(Object.entries({
    'app/texts/WindowTexts.h': null,
    'app/texts/MachineTexts.h': null,
    'app/texts/LoginTexts.h': null,
    'app/texts/LinkTexts.h': null,
    'core/pairing/PairingFailureTexts.h': null,
    'core/switches/Switch.cpp': ['title', 'why'],
    'core/switches/SwitchSnapshot.h': null,
    'app/texts/ExplanationTexts.h': [
        'helper', 'starting', 'isRunningAgain', 'childStopped', 'childNotStarted', 'withReason', 'nextTryIn', 'seconds', 'minutes', 'hours',
        'days'],
    'app/texts/FormatTexts.h': null,
    'app/texts/FailureTexts.h': null,
    'app/texts/CauseTexts.h': null,
    'core/node/InstallTexts.h': null,
    'core/foundation/HttpTexts.h': null,
    'app/texts/MenuTexts.h': null,
    'app/texts/NoticeTexts.h': null,
    'app/texts/RelocationTexts.h': null,
    'app/texts/ProgramTexts.h': ['homeInUse', 'homeInUseByWindow', 'homeInUseByConsole', 'homeInUseByService'],
}));
// Names and signs that are the same in every language.
const untranslated = new Set(['tarnik', 'tk', '/…', 'Node.js']);
// The window's code. Each text header that it includes is a source.
const windowFolders = ['app/desktop', 'app/model', 'app/platform', 'app/views'];

let faults = 0;
function fault(text) {
    faults += 1;
    console.log(text);
}

// Returns the value of adjacent C++ string literals.
function literalOf(code) {
    const pieces = [...code.matchAll(/"((?:[^"\\]|\\.)*)"/g)].map(([, text]) => text);
    return pieces.join('').replace(/\\u([0-9a-f]{4})|\\(.)/gi, (_, hex, sign) =>
        hex ? String.fromCharCode(parseInt(hex, 16)) : sign === 'n' ? '\n' : sign);
}

// Returns the constants of a file as { name, one, text }. `one` is set for a text with a number.
function textsIn(file, names) {
    const literals = String.raw`(?:"(?:[^"\\]|\\.)*"\s*)+`;
    const pattern = new RegExp(
        String.raw`(?:constexpr [\w:* ]+?|\.)(\w+)\s*(?:=\s*(${literals})|\{\s*(${literals}),\s*(${literals})\})`, 'g');
    const code = fs.readFileSync(file, 'utf8').replace(/^\s*\/\/.*$/gm, '');
    const name = path.basename(file).replace(/\.\w+$/, '');
    const found = [...code.matchAll(pattern)].map(([, constant, text, one, many]) => ({
        constant, name: `${name}::${constant}`, one: one && literalOf(one), text: literalOf(text ?? many),
    })).filter(({ constant, text }) => (names === null || names.includes(constant)) && !untranslated.has(text));
    for (const wanted of names ?? []) {
        if (!found.some(({ constant }) => constant === wanted)) fault(`${file}: the text ${wanted} is missing`);
    }
    return found;
}

// Returns one entry per text: { names, text, one }.
function entriesOf(texts) {
    const entries = new Map();
    for (const { name, one, text } of texts) {
        const known = entries.get(text);
        if (known) known.names.push(name);
        else entries.set(text, { names: [name], text, one });
    }
    return [...entries.values()];
}

const escapes = { '&': '&amp;', '<': '&lt;', '>': '&gt;' };
const escaped = (text) => text.replace(/[&<>]/g, (sign) => escapes[sign]);
function unescaped(text) {
    const signs = { amp: '&', lt: '<', gt: '>', quot: '"', apos: "'" };
    return text.replace(/&(amp|lt|gt|quot|apos);/g, (_, name) => signs[name]);
}

// Returns the translations of a catalogue by text. A translation is a list of forms; it is empty if unfinished.
function translationsIn(catalogue) {
    const found = new Map();
    for (const [, message] of catalogue.matchAll(/<message[^>]*>([\s\S]*?)<\/message>/g)) {
        const source = unescaped(/<source>([\s\S]*?)<\/source>/.exec(message)[1]);
        const [, kind, text] = /<translation([^>]*)>([\s\S]*?)<\/translation>/.exec(message) ?? [null, 'unfinished', ''];
        const forms = [...text.matchAll(/<numerusform>([\s\S]*?)<\/numerusform>/g)].map(([, form]) => unescaped(form));
        const isDone = kind === '' && text !== '' && forms.every((form) => form !== '');
        found.set(source, isDone ? (forms.length > 0 ? forms : [unescaped(text)]) : []);
    }
    return found;
}

function messageOf({ names, text, one }, forms) {
    const note = names.join(', ') + (one ? `; with the number 1: ${one}` : '');
    const content = one ? `\n${forms.map((form) => `            <numerusform>${escaped(form)}</numerusform>\n`).join('')}        `
        : escaped(forms[0] ?? '');
    return `    <message${one ? ' numerus="yes"' : ''}>\n        <extracomment>${escaped(note)}</extracomment>\n` +
        `        <source>${escaped(text)}</source>\n` +
        `        <translation${forms.length === 0 ? ' type="unfinished"' : ''}>${content}</translation>\n    </message>\n`;
}

function catalogueOf(language, entries, translations) {
    return `<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n<TS version="2.1" language="${language}" ` +
        `sourcelanguage="en">\n<context>\n    <name>tarnik</name>\n` +
        entries.map((entry) => messageOf(entry, translations.get(entry.text) ?? [])).join('') + '</context>\n</TS>\n';
}

const placeholders = (text) => [...new Set(text.match(/\{\w+\}/g) ?? [])].sort().join(' ');

function checkTranslation(file, { text, one, names }, forms) {
    if (forms.length === 0) return fault(`${file}: no translation of ${names[0]}: ${text}`);
    // A form for one number may leave the number out.
    const allowed = new Set([placeholders(text), ...(one ? [placeholders(one)] : [])]);
    for (const form of forms) {
        if (!allowed.has(placeholders(form))) fault(`${file}: other placeholders than ${names[0]}: ${form}`);
    }
}

const entries = entriesOf([...sources].flatMap(([file, names]) => textsIn(file, names)));
const included = windowFolders.flatMap((folder) => fs.readdirSync(folder, { recursive: true }).map((name) => path.join(folder, name)))
    .filter((file) => /\.(h|cpp)$/.test(file))
    .flatMap((file) => [...fs.readFileSync(file, 'utf8').matchAll(/^#include "(app\/texts\/(?!Composed)\w+Texts\.h)"/gm)])
    .map(([, header]) => header);
for (const header of new Set(included)) {
    if (!sources.has(header)) fault(`${header}: the window uses this header, but tools/translations.mjs doesn't list it`);
}

for (const name of fs.readdirSync('translations').filter((entry) => entry.endsWith('.ts'))) {
    const file = `translations/${name}`;
    const catalogue = fs.readFileSync(file, 'utf8');
    const translations = translationsIn(catalogue);
    const next = catalogueOf(/_(\w+)\.ts$/.exec(name)[1], entries, translations);
    if (process.argv[2] === '--update') fs.writeFileSync(file, next);
    else if (next !== catalogue) fault(`${file}: the texts have changed; run node tools/translations.mjs --update`);
    for (const entry of entries) checkTranslation(file, entry, translations.get(entry.text) ?? []);
}
process.exitCode = faults > 0 ? 1 : 0;
