'use strict';

const { promisify } = require('node:util');
const { PlenxError, Result, errorOf } = require('./errors');

/** The version of plenx.h that this package was written for. */
const abi = 1;

// Texts and bytes are given as buffers, and what comes out is written into typed arrays: koffi hands
// on the address of both.
const prototypes = [
  'int32_t plenx_open(uint32_t header_abi)',
  'uint32_t plenx_abi()',
  'int32_t plenx_last_error(void *text, size_t capacity, size_t *length)',
  'const char *plenx_result_text(int32_t result)',
  'int32_t plenx_init(const void *install, size_t, const void *data, size_t, const void *third, size_t, int32_t flag)',
  'int32_t plenx_destroy()',
  'int32_t plenx_get_int64(uint32_t service, uint32_t key, void *value)',
  'int32_t plenx_get_string(uint32_t service, uint32_t key, void *text, size_t capacity, void *length)',
  'int32_t plenx_set_int64(uint32_t service, uint32_t key, int64_t value)',
  'int32_t plenx_set_string(uint32_t service, uint32_t key, const void *value, size_t)',
  'int32_t plenx_start(uint32_t service, const void *group, size_t, const void *argument, size_t)',
  'int32_t plenx_stop(uint32_t service, const void *group, size_t)',
  'int32_t plenx_local_device_online(uint32_t service, const void *group, size_t, const void *device, size_t, const void *data, uint64_t size)',
  'int32_t plenx_remote_device_online(uint32_t service, const void *group, size_t, const void *device, size_t)',
  'int32_t plenx_local_device_offline(uint32_t service, const void *group, size_t, const void *device, size_t, int32_t trigger)',
  'int32_t plenx_remote_device_offline(uint32_t service, const void *group, size_t, const void *device, size_t, int32_t trigger)',
  'int32_t plenx_device_name_changed(const void *name, size_t)',
  'int32_t plenx_recv_remote_message(int32_t type, uint32_t msg_len, const void *message, size_t)',
  'int32_t plenx_get_office_dir(const void *group, size_t, const void *device, size_t, const void *relative, size_t, void *text, size_t capacity, void *length, void *code)',
  'int32_t plenx_queue_open(uint32_t capacity, void *queue)',
  'int32_t plenx_queue_next(void *queue, uint32_t milliseconds, void *event)',
  'void plenx_event_free(void *event)',
  'int32_t plenx_queue_set_link_status(void *queue, uint32_t service, const void *group, size_t, uint32_t link, int32_t status)',
  'int32_t plenx_queue_close(void *queue)',
];

/**
 * The functions of plenxsdk_c.dll. A Uint8Array among the arguments stands for two: its address and
 * its length.
 */
class Functions {
  #functions = new Map();
  #turn = Promise.resolve();

  constructor(library) {
    for (const prototype of prototypes) {
      const [name] = prototype.match(/plenx_\w+/);
      this.#functions.set(name, declare(library, prototype, name));
    }
    this.call('plenx_open', abi);
  }

  /** Calls on this thread; gives what the function returns. */
  ask(name, ...values) {
    return this.#functions.get(name)(...flat(values));
  }

  /** Does the same, and throws an error if the function does not return 0. */
  call(name, ...values) {
    const result = this.ask(name, ...values);
    if (result !== Result.OK) throw this.#errorOf(name, result, this.#lastError(result));
  }

  /**
   * Calls on a thread of the pool that files share. The calls take turns, so that they never hold
   * more than one thread. Gives the result if it is 0 or `expected`, and rejects every other one.
   */
  wait(name, values, expected = Result.OK) {
    const start = promisify(this.#functions.get(name).async);
    const given = flat(values);
    const finished = this.#turn.then(() => start(...given));
    this.#turn = finished.catch(() => {});
    return finished.then((result) => {
      given.length = 0; // until here somebody has to hold the buffers, and koffi does not
      // The words for it are on the thread that made the call.
      if (result !== Result.OK && result !== expected) throw this.#errorOf(name, result, '');
      return result;
    });
  }

  #errorOf(name, result, detail) {
    return errorOf(name, result, this.ask('plenx_result_text', result), detail);
  }

  // INVALID_PARAMETER is the library's own answer, and the layer has no words for it.
  #lastError(result) {
    if (result === Result.INVALID_PARAMETER) return '';
    const text = Buffer.alloc(1000);
    const length = new BigUint64Array(1);
    this.ask('plenx_last_error', text, length);
    return text.toString('utf8', 0, Number(length[0]));
  }
}

// flatMap would take several times as long as the call.
function flat(values) {
  const all = [];
  for (const value of values) {
    all.push(value);
    if (value instanceof Uint8Array) all.push(value.length);
  }
  return all;
}

function declare(library, prototype, name) {
  try {
    return library.func(prototype);
  } catch (error) {
    throw new PlenxError('PLENX_E_ABI', `plenxsdk_c.dll is too old: it has no ${name}`, {
      cause: error,
    });
  }
}

module.exports = { Functions, abi, prototypes };
