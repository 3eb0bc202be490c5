'use strict';

const assert = require('node:assert/strict');
const { setImmediate: turn, setTimeout: sleep } = require('node:timers/promises');
const { test } = require('node:test');
const { fake, kind, openReadyPlenx } = require('./fake');

const sdk = openReadyPlenx();

function testQueue(name, run, options) {
  test(name, async () => {
    const queue = sdk.openQueue(options);
    try {
      await run(queue);
    } finally {
      queue.close();
    }
  });
}

const send = (...names) => names.forEach((name) => fake.notify(kind.diskName, name));
const names = (events) => events.map((event) => event && event.name);

/** Keeps the loop from turning. */
function block(milliseconds) {
  const end = performance.now() + milliseconds;
  while (performance.now() < end);
}

testQueue('events keep everything that a service has sent', async (queue) => {
  fake.notify(kind.message, 'a\0b \u2615', -42, 7);
  fake.notify(kind.connect, 'home_1');
  fake.notify(11, 'home_2');
  fake.notify(12, 'two_77');
  fake.notify(kind.linkQuery, 'home_1', -1);
  fake.notify(kind.status, 'home_1', -2, 1);
  fake.notify(kind.status, 'home_0', 1, 0);
  fake.notify(kind.error, '', -13);
  fake.notify(kind.diskName, 'P:');
  const expected = [
    {
      kind: 'message',
      type: -42,
      msgLen: 7,
      text: 'a\0b \u2615',
      bytes: Buffer.from('a\0b \u2615'),
    },
    { kind: 'connect', service: 1, group: 'home' },
    { kind: 'disconnect', service: 2, group: 'home' },
    { kind: 'reconnect', service: 77, group: 'two' },
    { kind: 'linkQuery', service: 1, group: 'home', link: 2 ** 32 - 1, answer: 0 },
    { kind: 'status', service: 1, group: 'home', status: 2 ** 32 - 2, value: true },
    { kind: 'status', service: 0, group: 'home', status: 1, value: false },
    { kind: 'serviceError', error: -13 },
    { kind: 'diskName', name: 'P:', bytes: Buffer.from('P:') },
  ];
  for (const event of expected) assert.deepEqual(await queue.take(0), { ...event, lost: 0 });
  assert.equal(await queue.take(0), null);
});

testQueue('a text that is not valid UTF-8 keeps its bytes', async (queue) => {
  const bytes = Buffer.of(0x41, 0xff, 0xfe, 0x42);
  fake.notify(kind.message, bytes);
  assert.deepEqual(await queue.take(0), {
    kind: 'message',
    type: 0,
    msgLen: 0,
    text: 'A\ufffd\ufffdB',
    bytes,
    lost: 0,
  });
});

testQueue('a large text arrives whole', async (queue) => {
  const text = 'x'.repeat(20 << 20);
  fake.notify(kind.message, text);
  assert.ok((await queue.take(0)).text === text);
});

testQueue('each event goes to one taker, in the order of taking', async (queue) => {
  const takes = [queue.take(), queue.take(), queue.take()];
  send('1', '2', '3', '4');
  assert.deepEqual(names(await Promise.all(takes)), ['1', '2', '3']);
  assert.deepEqual(names([await queue.take()]), ['4']);
});

testQueue('a take gets what comes while it waits, within moments', async (queue) => {
  for (const wait of [0, 10, 300]) {
    setTimeout(send, wait, `after ${wait}`);
    const begin = performance.now();
    assert.deepEqual(names([await queue.take()]), [`after ${wait}`]);
    assert.ok(performance.now() - begin < wait + 2000);
  }
});

testQueue('a take ends with null when nothing comes in time', async (queue) => {
  const begin = performance.now();
  assert.equal(await queue.take(100), null);
  const passed = performance.now() - begin;
  assert.ok(passed > 90 && passed < 5000, `${passed} ms`);
  send('later');
  assert.deepEqual(names([await queue.take(0)]), ['later']);
});

testQueue('one that gives up leaves the events to the others', async (queue) => {
  const takes = [queue.take(20), queue.take(), queue.take(20), queue.take()];
  await sleep(60);
  send('1', '2');
  assert.deepEqual(names(await Promise.all(takes)), [null, '1', null, '2']);
});

testQueue('a take that runs out while the thread is busy gets what has come', async (queue) => {
  await turn(); // the next turn begins with the timers
  const take = queue.take(50);
  send('1', '2');
  block(100);
  assert.deepEqual(names([await take, await queue.take(0)]), ['1', '2']);
});

testQueue('takes that run out together get what has come, in their order', async (queue) => {
  await turn(); // the next turn begins with the timers
  const takes = [queue.take(50), queue.take(60), queue.take(50)];
  send('1', '2');
  block(100);
  assert.deepEqual(names(await Promise.all(takes)), ['1', '2', null]);
});

testQueue('taking without waiting gives everything until nothing is left', async (queue) => {
  await turn();
  for (let i = 0; i !== 250; ++i) send(`${i}`);
  for (let i = 0; i !== 250; ++i) {
    const take = queue.take(0);
    if (i % 100 === 99) block(2); // this take waits for a turn of the loop, which now is late
    assert.deepEqual(names([await take]), [`${i}`]);
  }
  assert.equal(await queue.take(0), null);
});

testQueue('the time to wait is a number of milliseconds', async (queue) => {
  for (const wrong of [-1, 0.5, NaN, 2 ** 31]) {
    await assert.rejects(queue.take(wrong), { code: 'ERR_OUT_OF_RANGE' });
  }
  await assert.rejects(queue.take('1'), { code: 'ERR_INVALID_ARG_TYPE' });
});

testQueue('an iteration takes events until the queue is closed', async (queue) => {
  const heard = [];
  setTimeout(() => send('3'), 10);
  setTimeout(() => queue.close(), 100);
  send('1', '2');
  for await (const event of queue) heard.push(event.name);
  assert.deepEqual(heard, ['1', '2', '3']);
  for await (const event of queue) assert.fail(`${event.name} came after the end`);
});

testQueue('an iteration that is left takes no further event', async (queue) => {
  send('1', '2', '3');
  for await (const event of queue) {
    if (event.name === '2') break;
  }
  assert.deepEqual(names([await queue.take(0)]), ['3']);
});

testQueue('closing ends all waiting with null, and may be repeated', async (queue) => {
  const takes = [queue.take(), queue.take(5000), queue.take()];
  queue.close();
  queue.close();
  assert.deepEqual(await Promise.all(takes), [null, null, null]);
  assert.equal(await queue.take(), null);
});

testQueue('a closed queue takes no answer, and says why', async (queue) => {
  queue.close();
  assert.throws(() => queue.setLinkStatus(1, 'home', 0, 1), {
    name: 'PlenxError',
    code: 'PLENX_E_HANDLE',
    result: -5,
    sentence: 'The handle was closed, was never opened, or is of the other kind.',
    detail: /^plenx_queue_set_link_status: the handle was closed/,
    message: /^plenx_queue_set_link_status: the handle was closed/,
  });
});

testQueue(
  'a full queue drops the oldest, and tells how many',
  async (queue) => {
    send('1', '2', '3', '4', '5');
    assert.deepEqual(names([await queue.take(), await queue.take()]), ['4', '5']);
    send('6', '7', '8');
    const { name, lost } = await queue.take();
    assert.deepEqual([name, lost], ['7', 1]);
  },
  { capacity: 2 },
);

testQueue('a service gets the answer of the queue when it asks for a link', async (queue) => {
  queue.setLinkStatus(1, 'home', 3, 7);
  assert.equal(fake.notify(kind.linkQuery, 'home_1', 3), 7);
  assert.equal(fake.notify(kind.linkQuery, 'home_1', 4), 0);
  assert.deepEqual([(await queue.take()).answer, (await queue.take()).answer], [7, 0]);
});

testQueue('a wrong answer is refused', (queue) => {
  assert.throws(() => queue.setLinkStatus(1, 'home', -1, 7), { code: 'ERR_OUT_OF_RANGE' });
  assert.throws(() => queue.setLinkStatus(1, 'home', 0, 2 ** 31), { code: 'ERR_OUT_OF_RANGE' });
  assert.throws(() => queue.setLinkStatus(1, null, 0, 1), { code: 'ERR_INVALID_ARG_TYPE' });
});

testQueue('several queues get every event', async (queue) => {
  const other = sdk.openQueue();
  send('1', '2');
  for (const each of [queue, other]) {
    assert.deepEqual(names([await each.take(), await each.take()]), ['1', '2']);
  }
  other.close();
});

testQueue(
  'who takes from a queue that never runs empty does not keep the rest waiting',
  async (queue) => {
    let turns = 0;
    let running = true;
    const counter = (async () => {
      for (; running; ++turns) await turn();
    })();
    for (let taken = 0; taken !== 5000; ++taken) {
      if (taken % 100 === 0) for (let i = 0; i !== 100; ++i) send('x');
      assert.equal((await queue.take()).lost, 0);
    }
    running = false;
    await counter;
    assert.ok(turns >= 40, `${turns} turns of the loop`);
  },
);

// Events that are never freed would take 50 MB.
testQueue('events that were taken need no memory', async (queue) => {
  const name = 'x'.repeat(10000);
  const sendAndTake = async () => {
    for (let i = 0; i !== 5000; ++i) {
      send(name);
      assert.equal((await queue.take()).name, name);
    }
    return Number(fake.bytesInUse());
  };
  const before = await sendAndTake();
  const grown = (await sendAndTake()) - before;
  assert.ok(grown < 16 << 20, `${grown} bytes`);
});

testQueue('a failure to take is the failure of one taker', async (queue) => {
  const takes = Promise.allSettled([queue.take(), queue.take()]);
  fake.setEnding(1);
  const results = await takes;
  fake.setEnding(0);
  assert.deepEqual(
    results.map(({ reason }) => reason.code),
    ['PLENX_E_ENDING', 'PLENX_E_ENDING'],
  );
  send('1');
  assert.deepEqual(names([await queue.take(5000)]), ['1']);
});
