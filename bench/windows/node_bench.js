'use strict';

// Measures the npm package in Node for Windows, beside koffi alone, on which the package is built.
//
//     node node_bench.js INSTALL DATA RESULTS [--quick]

const fs = require('node:fs');
const path = require('node:path');
const koffi = require('koffi');
const { open, Service } = require('plenxsdk');

const [install, data, results, quick] = process.argv.slice(2);
const samples = quick ? 5 : 15;
const calls = 50000;
const events = 500; // the service takes some milliseconds for each

const sdk = open();
const dll = koffi.load(
  path.join(path.dirname(require.resolve('plenxsdk')), '../dll/plenxsdk_c.dll'),
);
const bare = {
  open: dll.func('int plenx_queue_open(uint32_t capacity, _Out_ void **queue)'),
  answer: dll.func('int plenx_queue_set_link_status(void *, uint32_t, str, size_t, uint32_t, int)'),
  next: dll.func('int plenx_queue_next(void *queue, uint32_t milliseconds, _Out_ void **event)'),
  free: dll.func('void plenx_event_free(void *event)'),
};
const event = koffi.struct({
  size: 'uint32_t',
  kind: 'uint32_t',
  service: 'uint32_t',
  type: 'int32_t',
  msgLen: 'uint32_t',
  value: 'int32_t',
  lost: 'uint64_t',
  text: 'str',
  length: 'size_t',
});

function openBare(capacity) {
  const queue = [null];
  if (bare.open(capacity, queue) !== 0) throw new Error('no queue');
  return queue[0];
}

/** Returns how many of them are done in a second. */
async function rate(count, run) {
  const begin = performance.now();
  await run();
  return (1000 * count) / (performance.now() - begin);
}

async function measureCalls(ours, theirs) {
  const queue = sdk.openQueue();
  const handle = openBare(1);
  if (bare.answer(handle, 1, 'home', 4, 0, 7) !== 0) throw new Error('the call fails');
  for (let sample = -1; sample !== samples; ++sample) {
    const values = [
      await rate(calls, () => {
        for (let i = 0; i !== calls; ++i) queue.setLinkStatus(1, 'home', 0, 7);
      }),
      await rate(calls, () => {
        for (let i = 0; i !== calls; ++i) bare.answer(handle, 1, 'home', 4, 0, 7);
      }),
    ];
    if (sample >= 0) [ours, theirs].forEach((list, index) => list.push(values[index]));
  }
  queue.close();
}

/** Has a service send that many messages, and waits until the last one is in all queues. */
async function fillQueues(counter) {
  for (let i = 0; i !== events; ++i) sdk.recvRemoteMessage(i, 'a message of a few words');
  for (let heard = 0; heard !== events;) {
    const next = await counter.take(60000);
    if (next === null) throw new Error('the service sends nothing');
    if (next.kind === 'message') ++heard;
  }
}

async function takeOurs(queue) {
  for (let taken = 0; taken !== events; ++taken) await queue.take();
}

function takeBare(handle) {
  const out = [null];
  for (let taken = 0; taken !== events; ++taken) {
    if (bare.next(handle, 0, out) !== 0 || out[0] === null) throw new Error('an event is missing');
    koffi.decode(out[0], event);
    bare.free(out[0]);
  }
}

async function startService(counter) {
  sdk.init(install, data);
  sdk.start(Service.PC, 'home', 'argument');
  while ((await counter.take(60000)).kind !== 'connect');
  while ((await counter.take(2000)) !== null);
}

// The queue `counter` is the last one to get an event.
async function measureEvents(ours, theirs) {
  const counterOfStart = sdk.openQueue();
  await startService(counterOfStart);
  counterOfStart.close();
  const queue = sdk.openQueue({ capacity: 2 * events });
  const handle = openBare(2 * events);
  const counter = sdk.openQueue({ capacity: 2 * events });
  for (let sample = -1; sample !== samples; ++sample) {
    await fillQueues(counter);
    const values = [
      await rate(events, () => takeOurs(queue)),
      await rate(events, () => takeBare(handle)),
    ];
    if (sample >= 0) [ours, theirs].forEach((list, index) => list.push(values[index]));
  }
}

async function main() {
  const records = [];
  for (const [row, measure] of [
    ['17 Node call', measureCalls],
    ['17 Node event', measureEvents],
  ]) {
    const both = [[], []];
    await measure(...both);
    ['ours', 'koffi'].forEach((contender, index) =>
      records.push({ row, world: 'wine', contender, unit: '1/s', samples: both[index] }),
    );
  }
  fs.writeFileSync(results, JSON.stringify(records));
  process.exit(0);
}

main();
