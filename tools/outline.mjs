// Finds the types and functions of a C++ source for check-structure.mjs.
//
// Relies on this project's layout (clang-format, no macros around declarations) and doesn't parse the language.

// Returns the text with comments, literals and preprocessor lines blanked out. Lines keep their numbers.
export function withoutComments(text) {
    const blank = (match) => match.replace(/[^\n]/g, ' ');
    return text
        .replace(/R"(\w*)\([\s\S]*?\)\1"|\/\/[^\n]*|\/\*[\s\S]*?\*\/|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])*'/g, blank)
        .replace(/^[ \t]*#(?:[^\n\\]|\\[\s\S])*/gm, blank);
}

const typeHead = /(?:^|\s)(class|struct|union|enum(?:\s+class)?)\s+(?:\[\[.*?\]\]\s*|[A-Z_]+\([^)]*\)\s*)?(\w+)(?:\s+final)?\s*(?::[^:][\s\S]*)?$/;

function kindOf(head, scope) {
    if (/(^|\s)namespace(\s|$)/.test(head)) return { kind: 'namespace' };
    const type = !/[()=]/.test(head.replace(/:[^:][\s\S]*$/, '').replace(/\[\[.*?\]\]|[A-Z_]+\([^)]*\)/g, '')) && typeHead.exec(head);
    if (type) return { kind: type[1].split(' ')[0], name: type[2] };
    const inside = scope.kind === 'namespace' || scope.kind === 'class' || scope.kind === 'struct';
    if (inside && /\)/.test(head) && !/=\s*$/.test(head)) return { kind: 'function', name: /([\w~:]+|operator\S+)\s*\(/.exec(head)?.[1] };
    return { kind: 'braces' };
}

// Counts one declaration of a class: a field, an operation that callers see, or neither.
function countMember(type, statement) {
    const text = statement.replace(/^(\s*(public|private|protected)\s*:(?!:))+/, '').replace(/\s+/g, ' ').trim();
    if (text === '' || /^(using|friend|static_assert|template|enum|struct|class|union|typedef)\b/.test(text)) return;
    // Removes the text in <>, because it may contain the parentheses of a signature.
    let plain = text;
    while (/<[^<>]*>/.test(plain)) plain = plain.replace(/<[^<>]*>/g, '');
    plain = plain.replace(/\b[A-Z][A-Z_]+\([^)]*\)/g, '');
    // The sign of an assignment operator begins no initial value.
    plain = plain.replace(/\boperator=/, 'operatorAssign');
    const signature = /([~\w]+|operator.*?)\s*\(/.exec(plain.replace(/=.*$|\{.*$/, ''));
    if (signature) {
        const name = signature[1];
        if (type.access === 'public' && !name.includes(type.name) && !name.startsWith('operator')) type.operations += 1;
        return;
    }
    if (/^static\b/.test(plain)) return;
    type.fields += 1;
    if (/std::function</.test(text)) type.callables += 1;
}

// Returns { types, functions } of a source's text. Lines count from 1. The operations of a type are its public member
// functions without constructors, destructor and operators. Its `callables` are fields of std::function.
export function outlineOf(text) {
    const code = withoutComments(text);
    const [types, functions] = [[], []];
    const scopes = [{ kind: 'namespace' }];
    let head = '';
    let line = 1;
    let headLine = 1;
    for (const char of code) {
        const scope = scopes.at(-1);
        const counts = scope.type && (scope.kind === 'class' || scope.kind === 'struct');
        if (char === '{') {
            const inner = kindOf(head, scope);
            if (counts) {
                const access = [...head.matchAll(/\b(public|private|protected)\s*:(?!:)/g)].at(-1)?.[1];
                if (access) scope.type.access = access;
            }
            if (inner.kind === 'function' && counts) countMember(scope.type, `${head};`);
            inner.line = headLine;
            inner.head = head;
            if (/^(class|struct|union|enum)$/.test(inner.kind)) {
                inner.type = {
                    name: inner.name, kind: inner.kind, line: headLine, nested: scopes.some(({ type }) => type),
                    access: inner.kind === 'class' ? 'private' : 'public', operations: 0, fields: 0, callables: 0,
                };
                types.push(inner.type);
            }
            scopes.push(inner);
            head = '';
        } else if (char === '}') {
            const ended = scopes.length > 1 ? scopes.pop() : scope;
            if (ended.kind === 'function') functions.push({ name: ended.name, line: ended.line, length: line - ended.line + 1 });
            // An initialiser in braces belongs to its statement.
            head = ended.kind === 'braces' ? `${ended.head}{}` : '';
            if (ended.kind === 'braces') headLine = ended.line;
        } else if (char === ';') {
            if (counts) {
                const access = [...head.matchAll(/\b(public|private|protected)\s*:(?!:)/g)].at(-1)?.[1];
                if (access) scope.type.access = access;
                countMember(scope.type, head);
            }
            head = '';
        } else {
            if (head.trim() === '') headLine = line;
            head = head.trim() === '' && /\s/.test(char) ? '' : head + char;
        }
        if (char === '\n') line += 1;
    }
    return { types, functions };
}
