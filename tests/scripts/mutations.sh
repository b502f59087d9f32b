#!/usr/bin/env bash
# Tests that tools/mutations.mjs finds changes in code, and none in comments, strings and declarations.
set -euo pipefail
command -v node >/dev/null || exit 77
node --input-type=module - <<'SCRIPT'
import assert from 'node:assert';
import { applyMutation, mutationsOf } from './tools/mutations.mjs';

const source = String.raw`#include <a.h>  // 1 < 2
constexpr auto grace = 5s;
void f(int count, int) {
    names.reserve(count + 1);
    log_("1 == 2" + name);
    if (auto found = find(a, b); found && count <= 1'000) return;
    if (const auto x = next()) stop(x);
    const char mark = '"';
    child.post([this] {
        running_ = true;
    });
}
`;
const found = mutationsOf('core/a.cpp', source);
const lines = found.map(({ line, old, replacement }) => `${line} ${old} > ${replacement}`);
assert.deepEqual(lines, [
    '2 5s > 10s',
    '6 a, b > b, a',
    '6 found && count <= 1\'000 > !(found && count <= 1\'000)',
    '6 && > ||',
    '6 <= > <',
    '6 1\'000 > 1001',
    '6 return > ',
    '7 const auto x = next() > const auto x = next(); !x',
    '7 stop(x) > ',
    '9 child.post([this] {\n        running_ = true;\n    }) > ',
    '10 running_ = true > ',
    '10 true > false',
]);
for (const mutation of found) {
    assert.equal(applyMutation(source, mutation).split('\n').length, source.split('\n').length);
}
SCRIPT
