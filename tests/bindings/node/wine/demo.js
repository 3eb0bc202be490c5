'use strict';

// The demo's script, kit/host/demo/demo.plenx, in JavaScript. It prints each event.

const { PlenxError, Key, open, Service, Status } = require('plenxsdk');

const { OFFICE, PC, PHONE, COMBINED } = Service;
const { START, STOP, ONLINE, OFFLINE } = Status;

const sdk = open();
const events = sdk.openQueue();
const heard = [];

/** Waits for an event with these members. Others may come before. */
async function expect(kind, members, milliseconds = 10000) {
  const isIt = (event) =>
    event.kind === kind && Object.entries(members).every(([name, value]) => event[name] === value);
  const end = performance.now() + milliseconds;
  while (!heard.some(isIt)) {
    const event = await events.take(Math.max(0, Math.ceil(end - performance.now())));
    if (event === null) throw new Error(`no ${kind} ${JSON.stringify(members)}`);
    console.log(JSON.stringify(event));
    heard.push(event);
  }
  heard.splice(heard.findIndex(isIt), 1);
}

const status = (service, group, status, value) =>
  expect('status', { service, group, status, value });

function expectEqual(value, expected) {
  if (value !== expected) throw new Error(`${value} instead of ${expected}`);
}

function expectRefused(call) {
  try {
    call();
  } catch (error) {
    if (!(error instanceof PlenxError)) throw error;
    return expectEqual(error.result, 26);
  }
  throw new Error('not refused');
}

async function main() {
  sdk.init(process.env.INSTALL, process.env.DATA, { third: 'demo', flag: true });
  expectRefused(() => sdk.start(PC, '', 'no group name'));
  while ((await sdk.getInt64(PC, Key.NOT_RUNNING)) !== 1n) await events.take(10);

  sdk.start(OFFICE, 'home', 'office argument');
  await status(OFFICE, 'home', START, true);
  for (const service of [PC, PHONE]) {
    sdk.start(service, 'home', 'argument');
    await status(service, 'home', START, true);
    await expect('connect', { service, group: 'home' });
    await status(service, 'home', 100, true);
  }
  expectEqual(await sdk.getInt64(PC, Key.NOT_RUNNING), 0n);

  sdk.setString(COMBINED, Key.LOCALE, 'de_DE');
  sdk.setInt64(COMBINED, Key.INTEGER_0, 1);
  sdk.setInt64(COMBINED, Key.INTEGER_2, 9000000000n);
  expectEqual(await sdk.getString(PC, Key.LOCALE), '');
  sdk.stop(OFFICE, 'home');
  await status(OFFICE, 'home', STOP, true);
  await status(COMBINED, 'home', STOP, true);
  sdk.start(COMBINED, 'team', 'combined argument');
  await status(PC, 'team', START, true);
  await expect('connect', { service: PC, group: 'team' });
  await status(PC, 'team', 100, true);
  await status(OFFICE, 'team', START, true);

  events.setLinkStatus(PC, 'home', 0, 7);
  sdk.localDeviceOnline(PC, 'home', 'laptop', Uint8Array.of(0xc0, 0xa8, 0x01, 0x17));
  await expect('linkQuery', { service: PC, group: 'home', link: 0, answer: 7 });
  await expect('diskName', { name: 'P:' });
  sdk.remoteDeviceOnline(PC, 'home', 'tablet');
  await expect('reconnect', { service: PC, group: 'home' });
  sdk.localDeviceOnline(
    OFFICE,
    'team',
    'laptop',
    Buffer.from('sixteen bytes at most are passed on'),
  );
  sdk.remoteDeviceOnline(OFFICE, 'team', 'tablet');
  await status(OFFICE, 'team', ONLINE, true);
  expectEqual((await sdk.getOfficeDir('team', 'tablet', 'shared')).code, 0);

  sdk.deviceNameChanged('Küche \u2615');
  await status(PC, 'home', 101, true);
  await status(PC, 'team', 101, true);
  sdk.recvRemoteMessage(42, 'Grüße vom Tablet');
  await expect('message', { type: 42, msgLen: 18, text: 'Grüße vom Tablet' });

  sdk.remoteDeviceOffline(PC, 'home', 'tablet', 13);
  await expect('serviceError', { error: 13 });
  sdk.localDeviceOffline(PC, 'home', 'laptop', 1);
  sdk.localDeviceOffline(OFFICE, 'team', 'laptop', 1);
  await status(OFFICE, 'team', OFFLINE, true);

  sdk.stop(PHONE, 'home');
  await expect('disconnect', { service: PHONE, group: 'home' });
  await status(PHONE, 'home', STOP, false);
  sdk.stop(COMBINED, 'team');
  await expect('disconnect', { service: PC, group: 'team' });
  await status(PC, 'team', STOP, false);
  await status(OFFICE, 'team', STOP, true);
  await status(COMBINED, 'team', STOP, true);
  expectEqual(await sdk.getInt64(PC, Key.NOT_RUNNING), 1n);
  await sdk.destroy();
  events.close();
}

main();
