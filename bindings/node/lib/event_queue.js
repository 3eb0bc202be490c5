'use strict';

const { NativeQueue } = require('./native_queue');
const { integer } = require('./arguments');

const longestWait = 2 ** 31 - 1; // of a timer
const mostInARow = 100;

/** Events to be taken one by one, or with `for await`. */
class EventQueue {
  #queue;
  #takers = [];
  #inARow = 0;

  constructor(sdk, options) {
    this.#queue = new NativeQueue(sdk, options);
  }

  /** Takes the next event; null when the queue is closed, or when none comes in time. */
  async take(milliseconds = Infinity) {
    if (milliseconds !== Infinity) integer('milliseconds', milliseconds, 0, longestWait);
    if (!this.#queue.isOpen) return null;
    return (this.#mayTakeNow() && this.#queue.next()) || this.#wait(milliseconds);
  }

  async *[Symbol.asyncIterator]() {
    for (let event; (event = await this.take()) !== null;) yield event;
  }

  setLinkStatus(service, group, link, status) {
    this.#queue.setLinkStatus(service, group, link, status);
  }

  /** Lets `take` keep the process running while it waits, as it does from the beginning. */
  ref() {
    return this.#hold(true);
  }

  /** Lets the process end although `take` waits. */
  unref() {
    return this.#hold(false);
  }

  close() {
    if (!this.#queue.close()) return;
    this.#queue.dismiss(this.#reader);
    for (const taker of this.#takers.splice(0)) taker.give(null);
  }

  // Whoever took events without a pause would keep everything else from running.
  #mayTakeNow() {
    return this.#takers.length === 0 && ++this.#inARow < mostInARow;
  }

  #wait(milliseconds) {
    return new Promise((resolve, reject) => {
      const taker = {
        give: (event) => (clearTimeout(taker.timer), resolve(event)),
        refuse: (error) => (clearTimeout(taker.timer), reject(error)),
      };
      if (milliseconds !== Infinity) {
        taker.timer = setTimeout(() => this.#giveUp(taker), milliseconds);
        if (!this.#queue.hasRef) taker.timer.unref();
      }
      this.#takers.push(taker);
      this.#queue.watchFor(this.#reader);
    });
  }

  // A loop that was busy, or that has just begun to wait, turns to the timers before it looks.
  #giveUp(taker) {
    this.#reader.look();
    const place = this.#takers.indexOf(taker);
    if (place === -1) return;
    this.#takers.splice(place, 1);
    if (this.#takers.length === 0) this.#queue.dismiss(this.#reader);
    taker.give(null);
  }

  #reader = {
    hasRef: () => this.#queue.hasRef,
    look: () => {
      this.#inARow = 0;
      const found = this.#serveTakers();
      if (this.#takers.length === 0) this.#queue.dismiss(this.#reader);
      return found;
    },
  };

  #serveTakers() {
    let found = false;
    while (this.#takers.length > 0 && this.#serveTaker()) found = true;
    return found;
  }

  #serveTaker() {
    try {
      const event = this.#queue.next();
      if (event === null) return false;
      this.#takers.shift().give(event);
    } catch (error) {
      this.#takers.shift().refuse(error);
    }
    return true;
  }

  #hold(holds) {
    this.#queue.hasRef = holds;
    for (const { timer } of this.#takers) {
      if (holds) timer?.ref();
      else timer?.unref();
    }
    return this;
  }
}

module.exports = { EventQueue };
