// check-structure.mjs [ROOT]: checks that includes point downward only, that names have a meaning, and that files,
// functions and classes are small. Prints one line per fault. Exits with 1 if it finds a fault.
import fs from 'node:fs';
import path from 'node:path';
import { outlineOf } from './outline.mjs';

const root = path.resolve(process.argv[2] ?? path.join(path.dirname(new URL(import.meta.url).pathname), '..'));

// A folder of core/ may include itself and the folders on lower floors.
const floors = {
    foundation: 1, switches: 1,
    process: 2,
    pairing: 3, driver: 3, updates: 3,
    node: 4,
    relocation: 5,
};
const standardHeader = /^[a-z0-9_]+$/;
const systemHeader = /^((sys|net|netinet|arpa|linux|mach)\/)?[a-z0-9_]+\.h$/;
const thirdPartyHeader = /^(boost|openssl|curl)\/|^utf8proc\.h$/;
const toolkitHeader = /^Q[A-Z]|^Qt/;

// The list of hosts in SECURITY.md is complete because only these sources connect to a network or read its state.
const networkName = /\b(AF_INET6?|getaddrinfo|gethostbyname|curl_easy_\w+|QTcpSocket|QUdpSocket|QNetwork\w+|NSURL(Session|Connection))\b/;
// ProxyRoute.cpp only parses addresses.
const networkSources = new Set([
    'core/foundation/Http.cpp', 'core/foundation/ProxyRoute.cpp', 'app/doctor/Doctor_production.cpp',
]);

// Names without a meaning. "helper" is allowed, because the product has a helper node.
const emptyNames = new Set(['util', 'utils', 'common', 'helpers', 'misc', 'manager']);
// The headers in this folder replace headers of the system and have the same names.
const systemNames = 'tools/darwin/include/';

// Limits for the lines of a header, source and function, the public operations and fields of a class, and the
// std::function fields of a record of operations.
const limits = { header: 120, source: 400, function: 70, operations: 10, fields: 10, callables: 8 };
// Types of core/ and app/ that may pass the limits of a class, each with the reason.
const largeTypes = new Map(Object.entries({
    AppDelegate: 'orders the whole launch and the whole end',
    AppDelegateDeps: 'names each step of the launch',
    AppModel: 'owns the supervisor, the driver host, the pairing and their queues',
    AppState: 'a plain value: all that a face may show',
    CommandLine: 'a plain value: one field for each option',
    DesktopPlatform: 'the list of all operations that a system provides',
    NodeHome: 'names every path in the node home',
    NodeSupervisor: 'the state machine of the node, with its constants',
    PairingSession: 'the state machine of a pairing, with its terminal',
    Policy: 'a plain value: one field for each key',
    WindowContent: 'a plain value: one field for each part of the window',
}));
const codeFolders = ['core', 'app', 'devkit', 'tools', 'bench', 'tests'];

const unusedExceptions = new Set(largeTypes.keys());
let faults = 0;
function fault(file, line, text) {
    faults += 1;
    console.log(`${file}:${line}: ${text}`);
}

function filesBelow(folder) {
    const whole = path.join(root, folder);
    if (!fs.existsSync(whole)) return [];
    return fs.readdirSync(whole, { withFileTypes: true })
        .flatMap((entry) => {
            const name = path.posix.join(folder, entry.name);
            if (entry.isDirectory()) return filesBelow(name);
            return entry.isFile() ? [name] : [];
        });
}

// Returns the words of a file name: foo, manager, h for FooManager.h, and old, util, cpp for old_util.cpp.
function words(name) {
    return name.replace(/([a-z0-9])([A-Z])/g, '$1 $2').split(/[^A-Za-z0-9]+/).map((word) => word.toLowerCase());
}

function emptyName(name) {
    return words(name).find((word) => emptyNames.has(word));
}

// Returns the reason why `file` must not include `name`, or undefined if it may.
function whyNotInclude(file, name, quoted) {
    const [area, folder] = file.split('/');
    if (quoted) {
        const [toArea, toFolder] = name.split('/');
        if (!codeFolders.includes(toArea)) return 'is not written from the root of the tree';
        if (toArea === 'devkit') return area === 'devkit' ? undefined : 'is in devkit/, which nothing else includes';
        if (toArea === 'tools') return area === 'tools' ? undefined : 'is in tools/, which nothing else includes';
        if (area === 'tools') return toArea === 'core' ? undefined : 'is not in core/, which the release kit is linked with';
        if (area === 'tests' || area === 'bench') return undefined;
        if (toArea === 'tests' || toArea === 'bench') return `is in ${toArea}/, which only tests and measurements include`;
        if (area === 'devkit') return 'is ours: the stand-ins are programs of their own';
        if (area === 'app') return whyNotFace(file, name) ?? whyNotPlatform(file, name);
        if (toArea === 'app') return 'is in app/, above core/';
        if (toFolder === folder || floors[toFolder] < floors[folder]) return undefined;
        return `is not on a floor below core/${folder}/`;
    }
    if (area !== 'core' && area !== 'app') return undefined;
    if (thirdPartyHeader.test(name)) {
        return area === 'core' && folder === 'foundation' && file.endsWith('.cpp')
            ? undefined
            : 'is third-party, and belongs in one source of core/foundation/';
    }
    if (area === 'app') {
        const drawn = /^app\/(views|desktop|platform)\/|^app\/main_darwin\.cpp$/.test(file);
        return toolkitHeader.test(name) && !drawn ? 'is of the toolkit, outside app/views/, app/desktop/ and app/platform/' : undefined;
    }
    return standardHeader.test(name) || systemHeader.test(name) ? undefined : 'is neither standard nor of the system';
}

// The faces are the top floor of app/. The commands start them.
function whyNotFace(file, name) {
    const isAbove = /^app\/((views|desktop|console|commands)\/|main(_\w+)?\.cpp$)/.test(file);
    const isFace = /^app\/(views|desktop|console|commands)\//.test(name);
    return isFace && !isAbove ? 'is of a face, above the rest of app/' : undefined;
}

function whyNotPlatform(file, name) {
    const platform = /^app\/platform\/(linux|macos)\//.exec(name)?.[0];
    if (!platform || file === 'app/main_darwin.cpp' || file.startsWith(platform)) return undefined;
    return 'is of one platform, which only app/main_darwin.cpp names';
}

// Returns true if the type has a comment above it or on the line of its opening brace.
function isExplained(lines, index) {
    let above = index - 1;
    while (/^template\b|^\s*requires\b/.test(lines[above] ?? '')) above -= 1;
    return /^\/\//.test(lines[above] ?? '') || /\/\/ \w/.test(lines[index]);
}

function checkOutline(file, lines) {
    const { types, functions } = outlineOf(lines.join('\n'));
    for (const { name, line, length } of functions) {
        if (length > limits.function) fault(file, line, `${name} has ${length} lines, more than ${limits.function}`);
    }
    if (!file.endsWith('.h') || !/^(core|app)\//.test(file)) return;
    for (const type of types) {
        if (!type.nested && !isExplained(lines, type.line - 1)) fault(file, type.line, `no comment says what ${type.name} is`);
        for (const what of ['operations', 'fields', 'callables']) {
            if (type[what] <= limits[what]) continue;
            unusedExceptions.delete(type.name);
            if (!largeTypes.has(type.name)) fault(file, type.line, `${type.name} has ${type[what]} ${what}, more than ${limits[what]}`);
        }
    }
}

function checkCode(file, lines) {
    const [area, folder] = file.split('/');
    const header = file.endsWith('.h');
    if (area === 'core' && !(folder in floors)) fault(file, 1, 'stands on no floor; floors are listed in tools/check-structure.mjs');

    // Counts lines as an editor does: no line follows the last line feed.
    const length = lines.at(-1) === '' ? lines.length - 1 : lines.length;
    if (header && length > limits.header) fault(file, length, `a header of more than ${limits.header} lines`);
    if (!header && length > limits.source) fault(file, length, `a source of more than ${limits.source} lines`);
    if (header && !lines.includes('#pragma once')) fault(file, 1, 'a header without #pragma once');

    checkOutline(file, lines);
    lines.forEach((line, index) => {
        const include = /^\s*#\s*include\s*([<"])([^>"]+)[>"]/.exec(line);
        const why = include && whyNotInclude(file, include[2], include[1] === '"');
        if (why) fault(file, index + 1, `${include[2]} ${why}`);
        if ((area === 'core' || area === 'app') && /^\s*#\s*(if|ifdef|ifndef|elif|elifdef|elifndef|else)\b/.test(line)) {
            fault(file, index + 1, 'the build picks the platform\'s files; no #if');
        }
        const network = networkSources.has(file) || !['core', 'app'].includes(area) ? null : networkName.exec(line);
        if (network) fault(file, index + 1, `${network[0]}: only core/foundation/Http.cpp connects to a network`);
        const type = /^\s*(?:template\s*<.*>\s*)?(?:class|struct|union|enum(?:\s+class|\s+struct)?|namespace)\s+(\w+)/.exec(line);
        if (type && emptyName(type[1])) fault(file, index + 1, `the name ${type[1]} says nothing about what it holds`);
    });
}

const folders = [...codeFolders, 'docs', 'cmake', 'packaging'];
for (const file of folders.flatMap(filesBelow)) {
    if (!file.startsWith(systemNames) && file.split('/').some(emptyName)) fault(file, 1, 'the name says nothing about what it holds');
    if (/\.(h|hpp|cpp|cc|mm)$/.test(file)) {
        checkCode(file, fs.readFileSync(path.join(root, file), 'utf8').split('\n'));
    }
}

// Checks the list of exceptions only for this tree, because another tree lacks the listed types.
if (!process.argv[2]) for (const name of unusedExceptions) fault('tools/check-structure.mjs', 1, `${name} is no large type`);

if (faults > 0) console.log(`${faults} fault${faults === 1 ? '' : 's'} in the structure`);
process.exitCode = faults > 0 ? 1 : 0;
