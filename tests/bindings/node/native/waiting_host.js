'use strict';

// Each of these hosts waits for events in its own way. Its name is the argument.

const fs = require('node:fs');
const { once } = require('node:events');
const { Worker, isMainThread, parentPort, workerData } = require('node:worker_threads');
const { fake, kind, openReadyPlenx } = require('./fake');

const say = (text) => fs.writeSync(1, `${text}\n`);

function waitInWorker(sdk) {
  sdk
    .openQueue()
    .take()
    .then(({ name }) => say(name));
  parentPort.postMessage('waits');
}

function answerInWorker(sdk) {
  const queue = sdk.openQueue();
  queue.setLinkStatus(1, 'home', workerData.link, 7);
  if (workerData.ending === 'close') queue.close();
  if (workerData.ending === 'exit') process.exit();
  if (workerData.ending === 'terminate') {
    parentPort.postMessage('answers');
    queue.take();
  }
}

const hosts = {
  /** Ten queues and an emitter wait. Then the only thread of the pool reads a file. */
  'reads a file': (sdk) => {
    for (let i = 0; i !== 10; ++i)
      sdk
        .openQueue()
        .take()
        .then(({ name }) => say(name));
    sdk.openEmitter().on('diskName', ({ name }) => {
      say(name);
      setImmediate(() => process.exit(0));
    });
    setTimeout(() => fs.readFile(__filename, () => fake.notify(kind.diskName, 'read')), 200);
  },

  'waits with a queue': (sdk) => void sdk.openQueue().take(),
  'waits with an emitter': (sdk) => void sdk.openEmitter().on('status', () => {}),

  'lets go of a queue': (sdk) => void sdk.openQueue().unref().take(),
  'lets go of a deadline': (sdk) => void sdk.openQueue().unref().take(60000),
  'lets go while it waits': (sdk) => {
    const queue = sdk.openQueue();
    queue.take();
    queue.take(60000);
    setTimeout(() => queue.unref(), 50);
  },
  'lets go of an emitter': (sdk) =>
    void sdk
      .openEmitter()
      .unref()
      .on('status', () => {}),
  'has closed everything': (sdk) => {
    const queue = sdk.openQueue();
    const emitter = sdk.openEmitter().on('status', () => {});
    queue.take();
    setTimeout(() => (queue.close(), emitter.close()), 50);
  },
  'only has an emitter': (sdk) => void sdk.openEmitter(),
  'listens after it has closed': (sdk) => {
    const emitter = sdk.openEmitter();
    emitter.close();
    emitter.on('status', () => {});
  },

  'lets go and hears': (sdk) => {
    sdk
      .openEmitter()
      .unref()
      .on('diskName', ({ name }) => say(name));
    setTimeout(() => fake.notify(kind.diskName, 'heard'), 100);
    setTimeout(() => {}, 1000);
  },
  'takes hold again': (sdk) => {
    const queue = sdk.openQueue().unref();
    queue.take().then(({ name }) => say(name));
    queue.ref();
    setTimeout(() => fake.notify(kind.diskName, 'heard'), 300).unref();
  },

  'forgets a queue': async (sdk) => {
    sdk.openQueue().setLinkStatus(1, 'home', 0, 7);
    say(fake.notify(kind.linkQuery, 'home_1', 0));
    await new Promise(setImmediate);
    gc();
    await new Promise(setImmediate);
    say(fake.notify(kind.linkQuery, 'home_1', 0));
  },

  'exits while events come': (sdk) => {
    let heard = 0;
    sdk.openEmitter().on('diskName', () => ++heard === 1000 && process.exit(3));
    setInterval(() => {
      for (let i = 0; i !== 100; ++i) fake.notify(kind.diskName, 'P:');
    }, 1);
  },
  'throws while events come': (sdk) => {
    sdk.openEmitter().on('diskName', () => {
      throw new Error('of a listener');
    });
    setInterval(() => fake.notify(kind.diskName, 'P:'), 1);
  },

  'waits in a worker': (sdk) => {
    if (!isMainThread) return waitInWorker(sdk);
    const worker = new Worker(__filename, { argv: process.argv.slice(2) });
    worker.on('message', () => fake.notify(kind.diskName, 'heard'));
    worker.on('exit', (code) => say(`worker ${code}`));
  },
  /** Each worker ends in its own way. Nothing of it is left to close its queue. */
  'ends workers that answer': async (sdk) => {
    if (!isMainThread) return answerInWorker(sdk);
    for (const [link, ending] of ['terminate', 'exit', 'return', 'close'].entries()) {
      const worker = new Worker(__filename, {
        argv: process.argv.slice(2),
        workerData: { link, ending },
      });
      worker.on('message', () => worker.terminate());
      await once(worker, 'exit');
      say(`${ending} ${fake.notify(kind.linkQuery, 'home_1', link)}`);
    }
  },
  'ends a worker that waits': (sdk) => {
    if (!isMainThread) return waitInWorker(sdk);
    const worker = new Worker(__filename, { argv: process.argv.slice(2) });
    worker.on('message', () => setTimeout(() => worker.terminate(), 100));
  },
};

hosts[process.argv[2]](openReadyPlenx());
