'use strict';

const assert = require('node:assert/strict');
const { spawnSync } = require('node:child_process');
const path = require('node:path');
const { test } = require('node:test');

/** Runs a host of waiting_host.js. If it does not end by itself, it is killed after that time. */
function run(name, { milliseconds = 20000, env = {} } = {}) {
  const program = path.join(__dirname, 'waiting_host.js');
  const words = ['--expose-gc', program, name];
  const { status, signal, stdout, stderr } = spawnSync(process.execPath, words, {
    env: { ...process.env, ...env },
    timeout: milliseconds,
    killSignal: 'SIGKILL',
    encoding: 'utf8',
  });
  return { status, signal, stdout, stderr };
}

function ends(name, expected, options) {
  const { status, stdout, stderr } = run(name, options);
  assert.deepEqual({ status, stdout }, { stdout: '', status: 0, ...expected }, stderr);
}

test('however many wait for events, no thread of the pool is held', () => {
  ends('reads a file', { stdout: 'read\n'.repeat(11) }, { env: { UV_THREADPOOL_SIZE: '1' } });
});

for (const name of ['waits with a queue', 'waits with an emitter']) {
  test(`a host that ${name} keeps running`, () => {
    assert.equal(run(name, { milliseconds: 1500 }).signal, 'SIGKILL');
  });
}

for (const name of [
  'lets go of a queue',
  'lets go of a deadline',
  'lets go while it waits',
  'lets go of an emitter',
  'has closed everything',
  'only has an emitter',
  'listens after it has closed',
]) {
  test(`a host that ${name} ends`, () => ends(name));
}

for (const name of ['lets go and hears', 'takes hold again']) {
  test(`a host that ${name} is not deaf`, () => ends(name, { stdout: 'heard\n' }));
}

test('a queue that nobody can reach any more is closed', () => {
  ends('forgets a queue', { stdout: '7\n0\n' });
});

test('a host that exits while events come ends with its own code', () => {
  ends('exits while events come', { status: 3 });
});

test('a host that throws while events come ends like any other', () => {
  const { status, stderr } = run('throws while events come');
  assert.equal(status, 1);
  assert.match(stderr, /Error: of a listener/);
});

test('a worker has queues of its own', () => {
  ends('waits in a worker', { stdout: 'heard\nworker 0\n' });
});

test('a worker that waits can be ended', () => ends('ends a worker that waits'));

test('a queue of a worker that has ended answers on, unless the worker has closed it', () => {
  ends('ends workers that answer', { stdout: 'terminate 7\nexit 7\nreturn 7\nclose 0\n' });
});
