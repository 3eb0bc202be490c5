'use strict';

const assert = require('node:assert/strict');
const { test } = require('node:test');
const { Key, Service, Status } = require('plenxsdk');
const { fake, openPlenx, openReadyPlenx } = require('./fake');

const sdk = openReadyPlenx();

const hex = (text) => Buffer.from(text).toString('hex');

/** The message of that number with which a call arrives at a service, in hexadecimal. */
function messageOf(number, call) {
  fake.received();
  call();
  const lines = fake.received().filter((line) => line.split(' ')[1] === `${number}`);
  assert.equal(lines.length, 1, `messages of number ${number}`);
  return lines[0];
}

test('the DLL tells its version', () => {
  assert.equal(openPlenx().abi, 1);
});

test('a start creates the group in the service, with its argument', async () => {
  const queue = sdk.openQueue();
  const message = messageOf(0, () => sdk.start(Service.PC, 'home', 'the argument'));
  assert.ok(message.includes(hex('home_1\0')) && message.includes(hex('the argument\0')));
  assert.deepEqual(await queue.take(5000), {
    kind: 'status',
    service: 1,
    group: 'home',
    status: 0,
    value: true,
    lost: 0,
  });
  queue.close();
});

test('a text may be of any length and hold a NUL', () => {
  for (const name of ['Küche \u2615', 'a\0b', 'x'.repeat(100000)]) {
    const message = messageOf(4, () => sdk.deviceNameChanged(name));
    assert.ok(message.includes(hex(`${name}\0`)), name.slice(0, 20));
  }
});

test('a message is text or any bytes, with a number of its own for its length', () => {
  const number = (value) => Buffer.from(Int32Array.of(value).buffer).toString('hex');
  const text = messageOf(5, () => sdk.recvRemoteMessage(-42, 'Grüße'));
  assert.ok(text.includes(hex('Grüße')) && text.includes(number(-42)) && text.includes(number(7)));
  const bytes = Uint8Array.of(7, 255, 1, 254).subarray(1);
  const block = messageOf(5, () => sdk.recvRemoteMessage(1, bytes, 12345));
  assert.ok(block.includes('ff01fe') && !block.includes('07ff') && block.includes(number(12345)));
  messageOf(5, () => sdk.recvRemoteMessage(1, ''));
});

test('devices come and go, with their bytes and with a reason', () => {
  const data = Uint8Array.of(192, 168, 1, 23);
  const online = messageOf(2, () => sdk.localDeviceOnline(1, 'home', 'laptop', data));
  assert.ok(online.includes(hex('laptop\0')) && online.includes('c0a80117'));
  messageOf(2, () => sdk.localDeviceOnline(1, 'home', 'laptop'));
  assert.ok(
    messageOf(2, () => sdk.remoteDeviceOnline(1, 'home', 'tablet')).includes(hex('tablet')),
  );
  const offline = messageOf(3, () => sdk.localDeviceOffline(1, 'home', 'laptop', -2));
  assert.ok(offline.includes(hex('laptop\0')) && offline.includes('feffffff'));
  messageOf(3, () => sdk.localDeviceOffline(1, 'home', 'laptop'));
  assert.ok(
    messageOf(3, () => sdk.remoteDeviceOffline(1, 'home', 'tablet', 13)).includes('0d000000'),
  );
});

test('a service hears of settings at its next start', () => {
  sdk.setString(Service.PHONE, Key.LOCALE, 'de_DE');
  sdk.setInt64(Service.PHONE, Key.INTEGER_0, 5);
  sdk.setInt64(Service.PHONE, Key.INTEGER_2, -(2n ** 63n));
  fake.received();
  sdk.start(Service.PHONE, 'home', 'argument');
  const received = fake.received().join('\n');
  for (const text of [hex('de_DE\0'), '0500000000000000', '0000000000000080']) {
    assert.ok(received.includes(text), text);
  }
});

test('a stop deletes the group, and its outcome comes', async () => {
  sdk.start(Service.PC, 'home', 'argument');
  const queue = sdk.openQueue();
  assert.ok(messageOf(1, () => sdk.stop(Service.PC, 'home')).includes(hex('home_1')));
  const heard = [];
  while (heard.at(-1) !== Status.STOP) heard.push((await queue.take(5000)).status);
  queue.close();
});

test('a promise tells whether a service runs', async () => {
  assert.equal(await sdk.getInt64(Service.PC, Key.INTEGER_0), 0n);
  const answer = await sdk.getInt64(Service.COMBINED, Key.NOT_RUNNING);
  assert.ok(answer === 0n || answer === 1n, `${answer}`);
});

test('a setting cannot be read back', async () => {
  assert.equal(await sdk.getString(Service.PC, Key.LOCALE), '');
});

test('the folder of a device comes with the code of the companion, however long it is', async () => {
  for (const folder of ['C:\\Office', `C:\\${'Küche\\'.repeat(1000)}`]) {
    fake.officeDir(folder, -7);
    assert.deepEqual(await sdk.getOfficeDir('home', 'tablet', 'shared'), {
      code: -7,
      path: `${folder}\\shared`,
    });
  }
});

test('destroy asks the companion to uninstall', async () => {
  fake.received();
  await sdk.destroy();
  assert.ok(fake.received().includes('UninstallPackages()'));
});

test('a promise is rejected with the result, without words of another thread', async () => {
  fake.setEnding(1);
  const refused = { name: 'PlenxError', code: 'PLENX_E_ENDING', result: -8, detail: '' };
  await assert.rejects(sdk.getInt64(1, 5), refused);
  await assert.rejects(sdk.getString(1, 5), refused);
  await assert.rejects(sdk.getOfficeDir('home', 'tablet', ''), refused);
  fake.setEnding(0);
  assert.equal(await sdk.getString(1, 5), '');
});
