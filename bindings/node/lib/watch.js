'use strict';

const longestPause = 50; // milliseconds

/**
 * Looks after everybody who waits for events, with one timer and without a thread: at once when
 * somebody begins to wait, when an event has come and after each call of the library, and at longer
 * and longer intervals while nothing comes.
 */
class Watch {
  #watched = new Set();
  #pause = 0;
  #timer = null;
  #clear = null;

  /** From now on `look` of the watched is called; it says whether it has found an event. */
  add(watched) {
    this.#watched.add(watched);
    this.hurry();
  }

  remove(watched) {
    this.#watched.delete(watched);
    this.holdProcess();
    if (this.#watched.size === 0) this.#stop();
  }

  /** Looks at once. */
  hurry() {
    if (this.#watched.size > 0 && (this.#timer === null || this.#pause > 0)) {
      this.#stop();
      this.#pause = 0;
      this.#start();
    }
  }

  /** Keeps the process running, or lets it end, as those who are watched want it now. */
  holdProcess() {
    const holds = [...this.#watched].some((watched) => watched.hasRef());
    if (holds) this.#timer?.ref();
    else this.#timer?.unref();
  }

  #start() {
    const isAtOnce = this.#pause === 0;
    this.#timer = isAtOnce ? setImmediate(this.#look) : setTimeout(this.#look, this.#pause);
    this.#clear = isAtOnce ? clearImmediate : clearTimeout;
    this.holdProcess();
  }

  // Each of the two functions would upset Node's counters with a timer of the other.
  #stop() {
    this.#clear?.(this.#timer);
    this.#timer = null;
  }

  #look = () => {
    this.#timer = null;
    this.#pause = Math.min(2 * this.#pause || 1, longestPause);
    try {
      for (const watched of this.#watched) {
        if (watched.look()) this.#pause = 0;
      }
    } finally {
      // Somebody who was looked after may have asked to hurry meanwhile.
      if (this.#timer === null && this.#watched.size > 0) this.#start();
    }
  };
}

module.exports = { Watch };
