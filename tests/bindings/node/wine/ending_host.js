'use strict';

// Each of these hosts ends in its own way. Its name is the argument.

const { once } = require('node:events');
const { Key, open, Service } = require('plenxsdk');

const sdk = open();
process.on('exit', () => console.log(`exit ${Date.now()}`));

/** An emitter of events that come without an end: the service sends each message back. */
async function startFlood() {
  const events = sdk.openEmitter();
  sdk.init(process.env.INSTALL, process.env.DATA);
  sdk.start(Service.PC, 'home', 'argument');
  await once(events, 'connect');
  for (let i = 0; i !== 50; ++i) sdk.recvRemoteMessage(1, `message ${i}`);
  events.on('message', ({ text }) => sdk.recvRemoteMessage(1, text));
  return events;
}

async function hear(events, count) {
  while (count-- > 0) await once(events, 'message');
}

const hosts = {
  'exits while events come': async () => {
    await hear(await startFlood(), 100);
    process.exit(3);
  },

  'throws in a listener': async () => {
    let heard = 0;
    (await startFlood()).on('message', () => {
      if (++heard === 100) throw new Error('of a listener');
    });
  },

  'lets go': async () => {
    const events = await startFlood();
    await hear(events, 100);
    events.unref();
    for (let i = 0; i !== 10; ++i) sdk.openQueue().unref().take();
  },

  'closes everything': async () => {
    const events = await startFlood();
    await hear(events, 100);
    events.close();
  },

  'exits while ten queues wait': async () => {
    for (let i = 0; i !== 10; ++i) sdk.openQueue().take();
    sdk.init(process.env.INSTALL, process.env.DATA);
    while ((await sdk.getInt64(Service.PC, Key.NOT_RUNNING)) !== 1n);
    process.exit(4);
  },

  'exits right after init': () => {
    sdk.openQueue().take();
    sdk.init(process.env.INSTALL, process.env.DATA);
    sdk.start(Service.PC, 'home', 'argument');
    process.exit(5);
  },

  'exits while a promise waits': () => {
    sdk.init(process.env.INSTALL, process.env.DATA);
    for (let i = 0; i !== 8; ++i) sdk.getInt64(Service.PC, Key.NOT_RUNNING);
    setTimeout(() => process.exit(6), 5);
  },
};

hosts[process.argv[2]]();
