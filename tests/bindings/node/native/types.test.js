'use strict';

// tsc checks the declarations themselves. These tests check that they have the same names as the code.

const assert = require('node:assert/strict');
const fs = require('node:fs');
const { test } = require('node:test');
const plenxsdk = require('plenxsdk');

const declarations = fs.readFileSync(require.resolve('plenxsdk').replace(/js$/, 'd.ts'), 'utf8');

const found = (text, pattern) =>
  [...new Set([...text.matchAll(pattern)].map(([, name]) => name))].sort();

test('everything that is declared exists, and the other way round', () => {
  const exported = found(declarations, /^export (?:function|const|class) (\w+)/gm);
  assert.deepEqual(Object.keys(plenxsdk).sort(), exported);
});

for (const name of ['Plenx', 'EventQueue', 'PlenxEmitter']) {
  test(`${name} has the methods that are declared`, () => {
    const [, body] = declarations.match(
      new RegExp(`^export class ${name} .*?\\{\\n(.*?)^\\}`, 'ms'),
    );
    const declared = found(body, /^  (?:readonly )?(?!private)(\w+)[(:]/gm);
    const existing = Object.getOwnPropertyNames(plenxsdk[name].prototype).sort();
    assert.deepEqual(
      existing.filter((method) => method !== 'constructor'),
      declared,
    );
  });
}
