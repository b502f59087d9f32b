// Finds the small changes of a C++ source that a test should detect. Works on the text, with comments and literals
// blanked out. Relies on clang-format's layout, for example on the spaces around binary operators.

// Replaces comments, preprocessor lines and the content of literals with spaces. All other characters keep their position.
export function maskSource(text) {
    const parts = new RegExp([
        String.raw`//[^\n]*`,
        String.raw`/\*[^]*?\*/`,
        String.raw`^[ \t]*#(?:[^\n]*\\\n)*[^\n]*`,
        String.raw`R"([^(\s]*)\([^]*?\)\1"`,
        String.raw`"(?:[^"\\\n]|\\.)*"`,
        String.raw`(?<![0-9a-fA-F])'(?:[^'\\\n]|\\.)+'`,
    ].join('|'), 'gm');
    return text.replace(parts, (part) => part[0] === '"' || part[0] === 'R'
        ? `"${part.slice(1, -1).replace(/[^\n]/g, ' ')}"`
        : part.replace(/[^\n]/g, ' '));
}

const closing = { '(': ')', '[': ']', '{': '}' };

// Returns the index of the bracket that closes the bracket at `start`, or -1.
function closingBracket(masked, start) {
    const open = [];
    for (let index = start; index < masked.length; ++index) {
        const letter = masked[index];
        if (closing[letter]) open.push(closing[letter]);
        else if (letter === open.at(-1)) {
            open.pop();
            if (open.length === 0) return index;
        }
    }
    return -1;
}

// Splits the text between `from` and `to` at separators outside brackets. Returns pairs of [start, end].
function topLevelParts(masked, from, to, separator) {
    const parts = [];
    let start = from;
    for (let index = from; index < to; ++index) {
        if (closing[masked[index]]) {
            const end = closingBracket(masked, index);
            if (end < 0) break;
            index = end;
        } else if (masked[index] === separator) {
            parts.push([start, index]);
            start = index + 1;
        }
    }
    return [...parts, [start, to]];
}

const operators = {
    '==': '!=', '!=': '==', '<': '<=', '<=': '<', '>': '>=', '>=': '>',
    '&&': '||', '||': '&&', '+': '-', '-': '+', '*': '/', '/': '*', '%': '*',
    '&': '|', '|': '&', '<<': '>>', '>>': '<<', '+=': '-=', '-=': '+=', '|=': '&=', '&=': '|=',
};

function* changedOperators(masked) {
    const pattern = / (==|!=|<=?|>=?|&&|\|\||[-+*/%&|]|<<|>>|[-+|&]=)(?=[ \n])/g;
    for (const { index, 1: old } of masked.matchAll(pattern)) {
        const textBeside = masked[index - 1] === '"' || /^\s*"/.test(masked.slice(index + 1 + old.length));
        if (old === '+' && textBeside) continue;  // strings can't be subtracted
        yield { at: index + 1, old, replacement: operators[old] };
    }
    for (const { index, 0: old } of masked.matchAll(/\+\+|--/g)) {
        yield { at: index, old, replacement: old === '++' ? '--' : '++' };
    }
    for (const { index } of masked.matchAll(/(?<=[( ]|\b(?:return|co_return) )!(?=[\w(:])/g)) {
        yield { at: index, old: '!', replacement: '' };
    }
}

// Doubles durations, so that the change exceeds a timer's tolerance. Adds one to other numbers.
function changedNumber(digits, suffix, isDuration) {
    if (/^0x/i.test(digits)) return `0x${(BigInt(digits) + 1n).toString(16)}${suffix}`;
    if (digits.includes('.')) return `${Number(digits) === 0 ? '1.0' : Number(digits) * 2}${suffix}`;
    if (/^0\d/.test(digits)) return `0${(parseInt(digits, 8) + 1).toString(8)}${suffix}`;
    const value = Number(digits.replaceAll("'", ''));
    return `${isDuration && value !== 0 ? value * 2 : value + 1}${suffix}`;
}

function* changedConstants(masked) {
    const number = /(?<![\w.']|[)\w] = (?=0;))(0x[0-9a-fA-F]+|\d[\d']*(?:\.\d+)?)([a-zA-Z]*)\b(?!['.])/g;
    for (const { index, 0: old, 1: digits, 2: suffix } of masked.matchAll(number)) {
        const isPureVirtual = /\)[ \w]*= $/.test(masked.slice(Math.max(0, index - 20), index)) && masked[index + 1] === ';';
        if (isPureVirtual) continue;
        const isDuration = /^(ns|us|ms|s|min|h)$/.test(suffix) || /[Ss]econds[({]$/.test(masked.slice(Math.max(0, index - 8), index));
        yield { at: index, old, replacement: changedNumber(digits, suffix, isDuration) };
    }
    for (const { index, 0: old } of masked.matchAll(/\b(true|false)\b/g)) {
        yield { at: index, old, replacement: old === 'true' ? 'false' : 'true' };
    }
}

function* negatedConditions(masked, text) {
    for (const match of masked.matchAll(/\b(?:if|while) \(/g)) {
        const open = match.index + match[0].length - 1;
        const close = closingBracket(masked, open);
        if (close < 0) continue;
        const [from, to] = topLevelParts(masked, open + 1, close, ';').at(-1);
        const old = text.slice(from, to).trimStart();
        const at = to - old.length;
        const declared = /^(?:const )?(?:auto|[\w:<>]+)[*&]* (\w+) = /.exec(old);
        if (declared && match[0].startsWith('while')) continue;
        yield { at, old, replacement: declared ? `${old}; !${declared[1]}` : `!(${old})` };
    }
    // Changes only simple conditions, because the start of other conditions can't be found without a parser.
    for (const match of masked.matchAll(/(?:(?<![=!<>])= |return |[(,] ?)([!\w][\w.:>*-]*(?:\([\w.:]*\))?) \? /g)) {
        const at = match.index + match[0].length - match[1].length - 3;
        yield { at, old: text.slice(at, at + match[1].length), replacement: `!(${match[1]})` };
    }
}

// Returns the index of the `;` that ends the statement at `start`, or -1 if no statement can be deleted.
function statementEnd(masked, start) {
    let assigned = false;
    for (let index = start; index < masked.length; ++index) {
        const letter = masked[index];
        if (letter === ';') return index;
        if (letter === '{' && !assigned) return -1;  // the head of a function or a block
        if (letter === ')' || letter === ']' || letter === '}') return -1;
        if (/^ [-+|&]?= /.test(masked.slice(index, index + 4))) assigned = true;
        if (closing[letter]) {
            index = closingBracket(masked, index);
            if (index < 0) return -1;
        }
    }
    return -1;
}

function* deletedStatements(masked, text) {
    // Calls and assignments start with an expression without a space; declarations have a space after the type.
    const expression = /(?<=[;{})]\s*|\belse\s+|\b(?:case [\w:]+|default):\s+)(?:\+\+|--|\*|::)?[A-Za-z_](?:[\w.:]|->|\[[^\]\n]*\]|\(\))*(?=\(| [-+|&]?= |;|\+\+)/g;
    const keyword = /^(if|for|while|switch|return|break|continue|default|static_assert|decltype|noexcept|const|override|requires)\b/;
    for (const { index: at, 0: head } of masked.matchAll(expression)) {
        const end = keyword.test(head) ? -1 : statementEnd(masked, at);
        if (end > 0) yield { at, old: text.slice(at, end), replacement: '' };
    }
    for (const { index: at, 0: word } of masked.matchAll(/\b(return|break|continue)\b/g)) {
        const end = statementEnd(masked, at);
        if (end < 0) continue;
        const isBare = masked[at + word.length] === ';';
        const isGuarded = /\)\s*$/.test(masked.slice(0, at));  // the whole body of an if
        const endsSwitch = word === 'break' && /^;\s*}/.test(masked.slice(end));
        if ((isBare || isGuarded) && !endsSwitch) yield { at, old: text.slice(at, end), replacement: '' };
    }
}

function* swappedArguments(masked, text) {
    const symmetric = /^(if|for|while|switch|return|min|max|swap|tie|catch|defined)$/;
    for (const match of masked.matchAll(/\b(\w+)\(/g)) {
        if (symmetric.test(match[1])) continue;
        const open = match.index + match[0].length - 1;
        const close = closingBracket(masked, open);
        if (close < 0) continue;
        const parts = topLevelParts(masked, open + 1, close, ',').map(([from, to]) => {
            const argument = text.slice(from, to).trim();
            return { at: from + text.slice(from, to).indexOf(argument), argument };
        });
        for (let index = 0; index + 1 < parts.length; ++index) {
            const [first, second] = parts.slice(index, index + 2);
            const plain = [first, second].every(({ argument }) => /^[^\n{}]+$/.test(argument) && !/[\w>&*] +\w/.test(argument));
            const oneIsText = first.argument.startsWith('"') !== second.argument.startsWith('"');
            if (!plain || oneIsText || first.argument === second.argument) continue;
            const between = text.slice(first.at + first.argument.length, second.at);
            yield {
                at: first.at,
                old: first.argument + between + second.argument,
                replacement: second.argument + between + first.argument,
            };
        }
    }
}

// Lines that don't run, and lines whose change has no effect.
const meaningless = /\breserve\(|shrink_to_fit|static_assert|\boperator\b|^\s*(using|template|namespace|friend)\b|[bB]uffer/;
const written = /^(?:\w+\.)*(log_?|note)\(/;

// Returns all mutations of a source in the order of the text. Each has an offset, a line, the old and the new text.
export function mutationsOf(file, text) {
    const masked = maskSource(text);
    const lines = masked.split('\n');
    const starts = [0];
    for (const line of lines) starts.push(starts.at(-1) + line.length + 1);
    const makers = [changedOperators, changedConstants, negatedConditions, swappedArguments];
    if (!file.endsWith('.h')) makers.push(deletedStatements);
    return makers.flatMap((maker) => [...maker(masked, text)])
        .map((mutation) => ({ file, line: starts.findLastIndex((start) => start <= mutation.at) + 1, ...mutation }))
        .filter(({ line, old }) => !meaningless.test(lines[line - 1]) && !written.test(old))
        .sort((a, b) => a.at - b.at || a.replacement.localeCompare(b.replacement));
}

export function applyMutation(text, { at, old, replacement }) {
    const lines = old.split('\n').length - replacement.split('\n').length;  // later lines keep their numbers
    return text.slice(0, at) + replacement + '\n'.repeat(Math.max(0, lines)) + text.slice(at + old.length);
}

// Returns the list in an order that depends only on the seed (mulberry32 and Fisher-Yates).
export function shuffled(items, seed) {
    let state = seed >>> 0;
    const random = () => {
        state = (state + 0x6d2b79f5) >>> 0;
        let mixed = Math.imul(state ^ (state >>> 15), state | 1);
        mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
        return ((mixed ^ (mixed >>> 14)) >>> 0) / 2 ** 32;
    };
    const result = [...items];
    for (let index = result.length - 1; index > 0; --index) {
        const other = Math.floor(random() * (index + 1));
        [result[index], result[other]] = [result[other], result[index]];
    }
    return result;
}
