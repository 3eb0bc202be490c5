'use strict';

// The package declares what plenx.h declares.

const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const path = require('node:path');
const { test } = require('node:test');
const { Key, Result, Service, Status } = require('plenxsdk');
const { at, firstKind, kinds } = require('plenxsdk/lib/event');
const { abi, prototypes } = require('plenxsdk/lib/functions');

const declared = execFileSync(
  '/usr/bin/python3',
  ['-B', path.join(__dirname, '../../plenx_header.py')],
  {
    encoding: 'utf8',
  },
).split('\n');

/** What follows that word in the declarations, by name. */
function declaredAs(word, prefix = '') {
  const lines = declared.map((line) => line.match(`^${word} ${prefix}([\\w.]+) (.*)$`));
  return new Map(lines.filter(Boolean).map(([, name, rest]) => [name, rest]));
}

const numbersOf = (prefix) =>
  Object.fromEntries(
    [...declaredAs('constant', prefix)].map(([name, text]) => [name, Number(text)]),
  );

// All that counts here is what goes into a register, and how wide it is.
const widths = { plenx_result: 'int32_t' };
const widthOf = (type) => (type.includes('*') ? 'pointer' : (widths[type] ?? type));

/** The types of a prototype for koffi, that of the result first. */
function typesOf(prototype) {
  const [, result, parameters] = prototype.match(/^(.*?)plenx_\w+\((.*)\)$/);
  const types = parameters.split(',').filter(Boolean);
  return [result, ...types].map((type) => widthOf(type.trim().replace(/ \w+$/, '')));
}

test('every function has the types that it has in the header', () => {
  const functions = declaredAs('function');
  for (const prototype of prototypes) {
    const [name] = prototype.match(/plenx_\w+/);
    assert.deepEqual(typesOf(prototype), functions.get(name).split(', ').map(widthOf), name);
    functions.delete(name);
  }
  assert.deepEqual([...functions.keys()].sort(), [
    'plenx_observe',
    'plenx_queue_cancel',
    'plenx_queue_wait_handle',
    'plenx_unobserve',
  ]);
});

test('every number has the value that it has in the header', () => {
  const { ABI, OK, INVALID_PARAMETER, OFFICE, PC, PHONE, COMBINED } = numbersOf('PLENX_');
  assert.equal(abi, ABI);
  assert.deepEqual(Key, numbersOf('PLENX_KEY_'));
  assert.deepEqual(Status, numbersOf('PLENX_STATUS_'));
  assert.deepEqual(Service, { OFFICE, PC, PHONE, COMBINED });
  const failures = Object.entries(numbersOf('PLENX_E_')).map(([name, number]) => [
    `E_${name}`,
    number,
  ]);
  assert.deepEqual(Result, { OK, INVALID_PARAMETER, ...Object.fromEntries(failures) });
});

test('every kind of event is known', () => {
  const camel = (name) => name.toLowerCase().replace(/_(\w)/g, (_, letter) => letter.toUpperCase());
  const expected = Object.entries(numbersOf('PLENX_EVENT_')).map(([name, number]) => [
    number,
    camel(name),
  ]);
  const known = kinds.map((kind, index) => [
    firstKind + index,
    kind.replace('serviceError', 'error'),
  ]);
  assert.deepEqual(known, expected);
});

test('every member of an event lies where it lies in the struct', () => {
  const offsets = [...declaredAs('field', 'plenx_event.')].map(([name, text]) => [
    name,
    parseInt(text),
  ]);
  assert.deepEqual({ size: 0, ...at }, Object.fromEntries(offsets));
  assert.match(declaredAs('struct').get('plenx_event'), /^48$/);
});
