'use strict';

// The package over the plain C interface for Linux, and the functions with which a test plays the
// services.

const koffi = require('koffi');
const { Plenx } = require('plenxsdk');

const library = koffi.load(process.env.PLENX_C_LINUX);
const libc = koffi.load('libc.so.6');
const copy = libc.func('void *memcpy(void *to, const void *from, size_t size)');

const received = library.func('const char *fake_received()');
const notify = library.func(
  'int32_t fake_notify(int32_t kind, const void *text, size_t, int32_t first, int32_t second)',
);
const officeDir = library.func('void fake_office_dir(const void *folder, size_t, int32_t code)');

// fake_services.cpp sends messages with this text to find out when all jobs before them are done.
const mark = Buffer.from('mark ').toString('hex');

const fake = {
  machine: library.func('void fake_machine()'),
  waitForInit: library.func('void fake_wait_for_init()'),
  setEnding: library.func('void fake_ending(int32_t ending)'),
  bytesInUse: library.func('int64_t fake_bytes_in_use()'),

  /** The requests that the services have received since the last call, and the companion's calls. */
  received: () =>
    received()
      .split('\n')
      .filter((line) => line !== '' && !line.includes(mark)),

  /** Sends a notification; the text may be any bytes. */
  notify(kind, text = '', first = 0, second = 0) {
    const bytes = Buffer.from(text);
    return notify(kind, bytes, bytes.length, first, second);
  },

  officeDir(folder, code) {
    officeDir(Buffer.from(folder), Buffer.byteLength(folder), code);
  },
};

const kind = { message: 9, connect: 10, linkQuery: 13, status: 14, error: 15, diskName: 16 };

const openPlenx = () => new Plenx({ library, copy });

/** A library whose services and worker are there. */
function openReadyPlenx() {
  const sdk = openPlenx();
  fake.machine();
  sdk.init('C:\\App', 'C:\\Data');
  fake.waitForInit();
  fake.received();
  return sdk;
}

module.exports = { fake, kind, openPlenx, openReadyPlenx };
