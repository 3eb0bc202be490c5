'use strict';

const assert = require('node:assert/strict');
const { once } = require('node:events');
const { setTimeout: sleep } = require('node:timers/promises');
const { test } = require('node:test');
const { fake, kind, openReadyPlenx } = require('./fake');

const sdk = openReadyPlenx();

function testEmitter(name, run, options) {
  test(name, async () => {
    const emitter = sdk.openEmitter(options);
    try {
      await run(emitter);
    } finally {
      emitter.close();
    }
  });
}

testEmitter('listeners hear of the kinds that they have asked for', async (emitter) => {
  const heard = [];
  emitter.on('event', ({ kind }) => heard.push(`event ${kind}`));
  for (const name of [
    'message',
    'connect',
    'disconnect',
    'reconnect',
    'linkQuery',
    'status',
    'serviceError',
    'diskName',
  ]) {
    emitter.on(name, (event) => heard.push(event.kind));
  }
  for (const number of [9, 10, 11, 12, 13, 14, 15, 16]) fake.notify(number, 'home_1', 0, 0);
  await once(emitter, 'diskName');
  assert.deepEqual(heard, [
    'event message',
    'message',
    'event connect',
    'connect',
    'event disconnect',
    'disconnect',
    'event reconnect',
    'reconnect',
    'event linkQuery',
    'linkQuery',
    'event status',
    'status',
    'event serviceError',
    'serviceError',
    'event diskName',
    'diskName',
  ]);
});

testEmitter('events wait for the first listener', async (emitter) => {
  fake.notify(kind.diskName, 'P:');
  await sleep(30);
  const [event] = await once(emitter, 'diskName');
  assert.equal(event.name, 'P:');
});

testEmitter('an error of a service is no error of the emitter', async (emitter) => {
  emitter.on('status', () => {});
  fake.notify(kind.error, '', 13);
  fake.notify(kind.status, 'home_1', 5, 1);
  const [{ status }] = await once(emitter, 'status');
  assert.equal(status, 5);
});

testEmitter('a listener may close, and nothing comes afterwards', async (emitter) => {
  const heard = [];
  emitter.on('diskName', ({ name }) => {
    heard.push(name);
    emitter.close();
  });
  const closed = once(emitter, 'close');
  fake.notify(kind.diskName, '1');
  fake.notify(kind.diskName, '2');
  await closed;
  await sleep(30);
  assert.deepEqual(heard, ['1']);
  emitter.close();
});

testEmitter('a listener for every kind may close, and the kind is not heard', async (emitter) => {
  const heard = [];
  emitter.on('event', () => emitter.close());
  emitter.on('diskName', () => heard.push('diskName'));
  emitter.on('close', () => heard.push('close'));
  fake.notify(kind.diskName, 'P:');
  await once(emitter, 'close');
  await sleep(30);
  assert.deepEqual(heard, ['close']);
});

testEmitter(
  'what a listener throws is an uncaught exception, and the next event comes',
  async (emitter) => {
    const heard = [];
    const thrown = [];
    const listeners = process.listeners('uncaughtException');
    process.removeAllListeners('uncaughtException');
    process.on('uncaughtException', (error) => thrown.push(error.message));
    emitter.on('diskName', ({ name }) => {
      heard.push(name);
      if (name !== '3') throw new Error(`of ${name}`);
    });
    for (const name of ['1', '2', '3']) fake.notify(kind.diskName, name);
    for (let i = 0; i !== 100 && heard.length !== 3; ++i) await sleep(10);
    process.removeAllListeners('uncaughtException');
    for (const listener of listeners) process.on('uncaughtException', listener);
    assert.deepEqual(
      [heard, thrown],
      [
        ['1', '2', '3'],
        ['of 1', 'of 2'],
      ],
    );
  },
);

testEmitter('a listener may call the library', async (emitter) => {
  emitter.once('diskName', () => sdk.start(1, 'home', 'argument'));
  const started = once(emitter, 'status');
  fake.notify(kind.diskName, 'P:');
  assert.equal((await started)[0].status, 0);
});

testEmitter(
  'a flood of events leaves room for others',
  async (emitter) => {
    let heard = 0;
    let heardInTime = 0;
    emitter.on('diskName', () => ++heard);
    setTimeout(() => (heardInTime = heard), 1);
    for (let i = 0; i !== 20000; ++i) fake.notify(kind.diskName, 'P:');
    while (heard !== 20000) await sleep(1);
    assert.ok(heardInTime < 20000);
  },
  { capacity: 20000 },
);

testEmitter('a failure to take is an error of the emitter', async (emitter) => {
  emitter.on('status', () => {});
  fake.setEnding(1);
  await assert.rejects(once(emitter, 'status'), { code: 'PLENX_E_ENDING' });
  fake.setEnding(0);
});

testEmitter(
  'it answers for links, and tells what was lost',
  async (emitter) => {
    emitter.setLinkStatus(1, 'home', 0, 7);
    assert.equal(fake.notify(kind.linkQuery, 'home_1', 0), 7);
    fake.notify(kind.diskName, '1');
    const [{ lost }] = await once(emitter, 'diskName');
    assert.equal(lost, 1);
  },
  { capacity: 1 },
);
