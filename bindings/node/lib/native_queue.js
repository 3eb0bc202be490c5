'use strict';

const { readEvent } = require('./event');
const { int32, integer, text, uint32 } = require('./arguments');

// Closes the queues that nobody can reach any more.
const abandoned = new FinalizationRegistry((close) => close());

/** A queue of the library. Those who read from it own one, and pass calls on to it. */
class NativeQueue {
  #functions;
  #copy;
  #watch;
  #handle;
  #address = new BigUint64Array(1);
  #isOpen = true;
  #hasRef = true;

  constructor({ functions, copy, watch }, { capacity = 1000 } = {}) {
    this.#functions = functions;
    this.#copy = copy;
    this.#watch = watch;
    const handle = new BigUint64Array(1);
    functions.call('plenx_queue_open', integer('capacity', capacity, 1, 2 ** 32 - 1), handle);
    this.#handle = handle[0];
    abandoned.register(this, () => functions.ask('plenx_queue_close', handle[0]), this);
  }

  /** Takes the oldest event, or gives null; never waits. */
  next() {
    this.#functions.call('plenx_queue_next', this.#handle, 0, this.#address);
    const address = this.#address[0];
    if (address === 0n) return null;
    try {
      return readEvent(this.#copy, address);
    } finally {
      this.#functions.ask('plenx_event_free', address);
    }
  }

  setLinkStatus(service, group, link, status) {
    this.#functions.call(
      'plenx_queue_set_link_status',
      this.#handle,
      uint32('service', service),
      text('group', group),
      uint32('link', link),
      int32('status', status),
    );
  }

  /** Says whether this call has closed it. */
  close() {
    const wasOpen = this.#isOpen;
    this.#isOpen = false;
    abandoned.unregister(this);
    if (wasOpen) this.#functions.call('plenx_queue_close', this.#handle);
    return wasOpen;
  }

  get isOpen() {
    return this.#isOpen;
  }

  set hasRef(hasRef) {
    this.#hasRef = hasRef;
    this.#watch.holdProcess();
  }

  get hasRef() {
    return this.#hasRef;
  }

  /** Calls the reader's `look`, which says whether it has found an event, until it is dismissed. */
  watchFor(reader) {
    this.#watch.add(reader);
  }

  dismiss(reader) {
    this.#watch.remove(reader);
  }
}

module.exports = { NativeQueue };
