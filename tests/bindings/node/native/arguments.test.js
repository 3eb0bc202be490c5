'use strict';

const assert = require('node:assert/strict');
const { test } = require('node:test');
const { PlenxError, Result } = require('plenxsdk');
const { fake, openReadyPlenx } = require('./fake');

const sdk = openReadyPlenx();

const wrongTexts = [undefined, null, 1, {}, ['home'], Buffer.from('home')];
const wrongUint32s = [-1, 2 ** 32, 1.5, NaN, Infinity];
const wrongInt32s = [-(2 ** 31) - 1, 2 ** 31, 0.5, NaN];
const noNumbers = [undefined, null, '1', 1n, {}, true];

function refuses(call, values, code) {
  for (const value of values) assert.throws(() => call(value), { code }, `${String(value)}`);
}

async function rejects(call, values, code) {
  for (const value of values) await assert.rejects(() => call(value), { code }, `${String(value)}`);
}

test('what is no text is refused, with the name of the argument', async () => {
  const isNoText = 'ERR_INVALID_ARG_TYPE';
  refuses((text) => sdk.init(text, 'C:\\Data'), wrongTexts, isNoText);
  refuses((text) => sdk.init('C:\\App', text), wrongTexts, isNoText);
  refuses(
    (text) => sdk.init('C:\\App', 'C:\\Data', { third: text }),
    wrongTexts.slice(1),
    isNoText,
  );
  refuses((text) => sdk.start(1, text, 'argument'), wrongTexts, isNoText);
  refuses((text) => sdk.start(1, 'home', text), wrongTexts, isNoText);
  refuses((text) => sdk.stop(1, text), wrongTexts, isNoText);
  refuses((text) => sdk.setString(1, 1, text), wrongTexts, isNoText);
  refuses((text) => sdk.deviceNameChanged(text), wrongTexts, isNoText);
  refuses((text) => sdk.localDeviceOnline(1, text, 'tablet'), wrongTexts, isNoText);
  refuses((text) => sdk.remoteDeviceOnline(1, 'home', text), wrongTexts, isNoText);
  refuses((text) => sdk.localDeviceOffline(1, text, 'tablet'), wrongTexts, isNoText);
  refuses((text) => sdk.remoteDeviceOffline(1, 'home', text), wrongTexts, isNoText);
  await rejects((text) => sdk.getOfficeDir(text, 'tablet', ''), wrongTexts, isNoText);
  await rejects((text) => sdk.getOfficeDir('home', text, ''), wrongTexts, isNoText);
  await rejects((text) => sdk.getOfficeDir('home', 'tablet', text), wrongTexts, isNoText);
  assert.throws(() => sdk.stop(1, 5), { message: 'group must be a string, and is 5' });
});

test('a text with half a surrogate pair is refused, because UTF-8 has no bytes for it', () => {
  refuses(
    (text) => sdk.stop(1, text),
    ['\ud83d', 'a\ude00b', '\ude00\ud83d'],
    'ERR_INVALID_ARG_TYPE',
  );
  sdk.stop(1, '\ud83d\ude00');
});

test('what is no number, or not of its range, is refused', async () => {
  const calls = [
    (number) => sdk.start(number, 'home', 'argument'),
    (number) => sdk.stop(number, 'home'),
    (number) => sdk.setInt64(number, 0, 1),
    (number) => sdk.setString(1, number, 'text'),
    (number) => sdk.localDeviceOnline(number, 'home', 'tablet'),
    (number) => sdk.recvRemoteMessage(0, 'text', number),
    (number) => sdk.openQueue({ capacity: number }),
  ];
  for (const call of calls) {
    refuses(call, wrongUint32s, 'ERR_OUT_OF_RANGE');
    refuses(call, noNumbers.slice(2), 'ERR_INVALID_ARG_TYPE');
  }
  for (const call of [
    (number) => sdk.localDeviceOffline(1, 'home', 'tablet', number),
    (number) => sdk.remoteDeviceOffline(1, 'home', 'tablet', number),
    (number) => sdk.recvRemoteMessage(number, 'text'),
  ]) {
    refuses(call, wrongInt32s, 'ERR_OUT_OF_RANGE');
    refuses(call, noNumbers.slice(1), 'ERR_INVALID_ARG_TYPE');
  }
  await rejects((number) => sdk.getInt64(number, 5), wrongUint32s, 'ERR_OUT_OF_RANGE');
  await rejects((number) => sdk.getInt64(1, number), noNumbers, 'ERR_INVALID_ARG_TYPE');
  await rejects((number) => sdk.getString(number, 1), noNumbers, 'ERR_INVALID_ARG_TYPE');
});

test('an integer of 64 bits is a bigint, or a number that is exact', () => {
  refuses(
    (value) => sdk.setInt64(1, 0, value),
    [1.5, NaN, 2 ** 53, '1', null],
    'ERR_INVALID_ARG_TYPE',
  );
  refuses((value) => sdk.setInt64(1, 0, value), [2n ** 63n, -(2n ** 63n) - 1n], 'ERR_OUT_OF_RANGE');
});

test('what is no block of bytes is refused', () => {
  const wrong = [null, 1, [1, 2], new ArrayBuffer(2), new Uint16Array(1)];
  refuses(
    (data) => sdk.localDeviceOnline(1, 'home', 'tablet', data),
    [...wrong, 'data'],
    'ERR_INVALID_ARG_TYPE',
  );
  refuses((data) => sdk.recvRemoteMessage(1, data), wrong, 'ERR_INVALID_ARG_TYPE');
});

test('nothing that was refused has reached a service', () => {
  fake.received();
  refuses((text) => sdk.start(1, text, 'argument'), wrongTexts, 'ERR_INVALID_ARG_TYPE');
  refuses((text) => sdk.deviceNameChanged(text), wrongTexts, 'ERR_INVALID_ARG_TYPE');
  assert.deepEqual(fake.received(), []);
});

test('an empty name gives the result that C++ gives', () => {
  for (const call of [
    () => sdk.start(1, '', 'argument'),
    () => sdk.start(1, 'home', ''),
    () => sdk.stop(1, ''),
    () => sdk.localDeviceOnline(1, '', 'tablet'),
    () => sdk.remoteDeviceOnline(1, 'home', ''),
    () => sdk.deviceNameChanged(''),
  ]) {
    assert.throws(call, (error) => {
      assert.ok(error instanceof PlenxError);
      assert.equal(error.code, 'PLENX_INVALID_PARAMETER');
      assert.equal(error.result, Result.INVALID_PARAMETER);
      assert.equal(error.sentence, 'A text that must not be empty is empty.');
      assert.equal(error.detail, '');
      assert.match(error.message, /^plenx_\w+: A text that must not be empty is empty\.$/);
      return true;
    });
  }
});

test('a failure has its code, its number and its sentence', () => {
  fake.setEnding(1);
  try {
    assert.throws(() => sdk.stop(1, 'home'), {
      name: 'PlenxError',
      code: 'PLENX_E_ENDING',
      result: Result.E_ENDING,
      sentence: 'The process is ending.',
    });
  } finally {
    fake.setEnding(0);
  }
});

test('a queue holds one event at least', () => {
  assert.throws(() => sdk.openQueue({ capacity: 0 }), { code: 'ERR_OUT_OF_RANGE' });
});
