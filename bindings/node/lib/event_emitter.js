'use strict';

const { EventEmitter } = require('node:events');
const { NativeQueue } = require('./native_queue');

const mostInARow = 100;

/** Emits each event twice: as 'event', and under the name of its kind. */
class PlenxEmitter extends EventEmitter {
  #queue;

  constructor(sdk, options) {
    super();
    this.#queue = new NativeQueue(sdk, options);
    // Until somebody listens, the events wait in the queue.
    this.once('newListener', () => this.#begin());
  }

  setLinkStatus(service, group, link, status) {
    this.#queue.setLinkStatus(service, group, link, status);
  }

  /** Keeps the process running, as it does from the first listener on. */
  ref() {
    this.#queue.hasRef = true;
    return this;
  }

  /** Lets the process end. */
  unref() {
    this.#queue.hasRef = false;
    return this;
  }

  close() {
    if (!this.#queue.close()) return;
    this.#queue.dismiss(this.#reader);
    this.emit('close');
  }

  #begin() {
    if (this.#queue.isOpen) this.#queue.watchFor(this.#reader);
  }

  #reader = {
    hasRef: () => this.#queue.hasRef,
    look: () => {
      let count = 0;
      while (count !== mostInARow && this.#queue.isOpen && this.#emitNext()) ++count;
      return count > 0;
    },
  };

  #emitNext() {
    const event = this.#next();
    if (event !== null) {
      this.emit('event', event);
      if (this.#queue.isOpen) this.emit(event.kind, event); // a listener may have closed it
    }
    return event !== null;
  }

  #next() {
    try {
      return this.#queue.next();
    } catch (error) {
      this.emit('error', error);
      return null;
    }
  }
}

module.exports = { PlenxEmitter };
