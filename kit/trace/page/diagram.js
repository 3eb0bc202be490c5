// The rows of the diagram. Only the rows in sight are in the document, so that many rows cost no more
// than a few. The user moves through them by scrolling the page itself.

const SPARE_ROWS = 12;
const LONG_PAUSE = 1000;

const KIND_CLASSES = {
  call: 'call', refusal: 'call', queued: 'minor', job: 'job', step: '', request: 'request', outcome: 'outcome',
  notification: 'notification', fanout: 'notification', return: 'minor', service: '', answer: 'minor',
  detail: 'minor', unknown: '', foreign: 'foreign minor', gap: 'gap',
};
const BACK = new Set(['return', 'answer', 'outcome']);

function middle(lane) {
  return (lane + 0.5) / LANES.length;
}

function laneMark(event) {
  if (event.gap || event.from === NO_LANE) {
    return null;
  }
  if (event.from === event.to) {
    const dot = element('span', { class: 'dot' });
    dot.style.left = `${middle(event.from) * 100}%`;
    return dot;
  }
  const arrow = element('span', {
    class: `arrow ${event.to > event.from ? 'right' : 'left'}${BACK.has(event.kind) ? ' back' : ''}`,
  });
  arrow.style.left = `${middle(Math.min(event.from, event.to)) * 100}%`;
  arrow.style.width = `${(Math.abs(event.to - event.from) / LANES.length) * 100}%`;
  return arrow;
}

function remarks(event) {
  const texts = [];
  if (event.waited > 0) {
    texts.push(`waited ${span(event.waited)}`);
  }
  if (event.took !== null && event.took !== undefined) {
    texts.push(`took ${span(event.took)}`);
  }
  if (event.torn) {
    texts.push('torn');
  }
  return texts;
}

function labelText(event) {
  if (event.gap) {
    return `${plural(event.leftOut, 'line', 'lines')} left out, ${span(Math.max(0, event.until - event.time))}`;
  }
  return `${event.failed ? '✕ ' : ''}${event.label}`;
}

// The text stands to the right of its mark, or to the left if the mark is at the right edge.
function label(event) {
  const made = element('span', { class: 'label' }, labelText(event),
    ...remarks(event).map((text) => element('i', {}, text)));
  if (event.gap || event.from === NO_LANE) {
    return made;
  }
  const isDot = event.from === event.to;
  const at = middle(Math.min(event.from, event.to));
  made.classList.toggle('at-dot', isDot);
  if (isDot && event.from >= 4) {
    made.style.right = `calc((100% - var(--time)) * ${1 - at} + 10px)`;
    made.style.textAlign = 'right';
  } else {
    made.style.left = `calc(var(--time) + (100% - var(--time)) * ${at} + 10px)`;
    made.style.maxWidth = `calc((100% - var(--time)) * ${1 - at} - 14px)`;
  }
  return made;
}

function timeCell(event, before) {
  const text = event.time === 0 ? '' : clock(event.time);
  const same = before !== undefined && before.time === event.time;
  const cell = element('span', { class: 'time' }, element('span', { class: same ? 'same' : '' }, text));
  const pause = before === undefined || event.time === 0 || before.time === 0 ? 0
    : event.time - (before.gap ? before.until : before.time);
  if (pause >= 10) {
    cell.append(element('span', { class: `later${pause >= LONG_PAUSE ? ' long' : ''}` }, `+${span(pause)}`));
  }
  return cell;
}

function describe(event) {
  if (event.gap) {
    return labelText(event);
  }
  const path = event.from === NO_LANE ? ''
    : event.from === event.to ? `, ${LANES[event.from]}` : `, ${LANES[event.from]} to ${LANES[event.to]}`;
  return `${clock(event.time)}${event.failed ? ', failure' : ''}${path}: ${event.label}. ${event.line}`;
}

class Diagram {
  // onDetail: called with the event whose line must be shown, or null; onScroll: with the first and
  // the last event in sight.
  constructor(place, onDetail, onScroll) {
    this.place = place;
    this.onDetail = onDetail;
    this.onScroll = onScroll;
    this.events = [];
    this.rows = new Map();
    this.chosen = -1;
    this.hovered = -1;
    this.pending = false;
    this.resting = false;  // true when the rows have moved under the pointer and not the pointer itself
    const draw = () => this.drawSoon();
    window.addEventListener('scroll', draw, { passive: true });
    window.addEventListener('resize', () => this.reset());
    place.addEventListener('mousemove', (move) => this.onMove(move));
    place.addEventListener('mouseover', (move) => this.onMove(move));
    place.addEventListener('wheel', () => { this.resting = false; }, { passive: true });
    place.addEventListener('mouseleave', () => this.hover(-1));
    place.addEventListener('click', (click) => this.choose(this.indexOf(click.target), false));
    place.addEventListener('focus', () => this.onFocus());
    place.addEventListener('keydown', (press) => this.onKey(press));
  }

  show(events) {
    const kept = this.chosen >= 0 ? this.events[this.chosen] : null;
    this.events = events;
    this.chosen = kept === null ? -1 : events.indexOf(kept);
    this.hovered = -1;
    this.reset();
    this.tell();
  }

  reset() {
    this.rowHeight = parseFloat(getComputedStyle(document.documentElement).getPropertyValue('--row'));
    this.place.style.height = `${this.events.length * this.rowHeight}px`;
    for (const row of this.rows.values()) {
      row.remove();
    }
    this.rows.clear();
    this.draw();
  }

  drawSoon() {
    if (!this.pending) {
      this.pending = true;
      requestAnimationFrame(() => {
        this.pending = false;
        this.draw();
      });
    }
  }

  // The part of the window between the bar and the detail.
  sight() {
    const top = document.querySelector('.bar').getBoundingClientRect().bottom;
    const bottom = document.querySelector('.detail').getBoundingClientRect().top;
    return { top, bottom };
  }

  draw() {
    const { top, bottom } = this.sight();
    const start = this.place.getBoundingClientRect().top;
    const at = (y) => Math.floor((y - start) / this.rowHeight);
    const first = Math.max(0, at(top));
    const last = Math.min(this.events.length - 1, at(bottom));
    const from = Math.max(0, first - SPARE_ROWS);
    const until = Math.min(this.events.length - 1, last + SPARE_ROWS);
    for (const [index, row] of this.rows) {
      if (index < from || index > until) {
        row.remove();
        this.rows.delete(index);
      }
    }
    for (let index = from; index <= until; ++index) {
      if (!this.rows.has(index)) {
        const row = this.row(index);
        this.rows.set(index, row);
        this.place.append(row);
      }
    }
    if (last >= first) {
      this.onScroll(this.events[first], this.events[last]);
    }
  }

  row(index) {
    const event = this.events[index];
    const names = ['row', KIND_CLASSES[event.kind], event.failed ? 'fail' : '', event.usual ? 'usual' : ''];
    const mark = laneMark(event);
    const row = element('div', {
      class: names.filter((name) => name !== '').join(' '), role: 'option', id: `event-${index}`,
      'aria-selected': String(index === this.chosen), 'aria-posinset': index + 1,
      'aria-setsize': this.events.length, 'aria-label': describe(event), 'data-index': index,
    }, timeCell(event, this.events[index - 1]),
    element('span', { class: 'track' }, ...(mark === null ? [] : [mark])), label(event));
    row.style.top = `${index * this.rowHeight}px`;
    return row;
  }

  indexOf(target) {
    const row = target.closest('.row');
    return row === null ? -1 : Number(row.dataset.index);
  }

  onMove(move) {
    if (move.type === 'mousemove' && (move.movementX !== 0 || move.movementY !== 0)) {
      this.resting = false;
    }
    const index = this.indexOf(move.target);
    if (!this.resting && index !== this.hovered) {
      this.hover(index);
    }
  }

  hover(index) {
    this.hovered = index;
    this.tell();
  }

  tell() {
    const index = this.hovered >= 0 ? this.hovered : this.chosen;
    this.onDetail(index >= 0 ? this.events[index] : null);
  }

  choose(index, scroll) {
    if (index < 0 || index >= this.events.length) {
      return;
    }
    const change = (at, selected) => {
      if (this.rows.has(at)) {
        this.rows.get(at).setAttribute('aria-selected', String(selected));
      }
    };
    change(this.chosen, false);
    this.chosen = index;
    this.hovered = -1;
    if (scroll) {
      this.bringIntoSight(index);
    }
    change(index, true);
    this.place.setAttribute('aria-activedescendant', `event-${index}`);
    this.tell();
  }

  bringIntoSight(index, inMiddle = false) {
    this.resting = true;
    // Scrolling to a row can make the bar stick, so this counts with a bar that sticks.
    const top = document.querySelector('.bar').offsetHeight;
    const { bottom } = this.sight();
    const y = this.place.getBoundingClientRect().top + index * this.rowHeight;
    const height = bottom - top;
    if (inMiddle || y < top - height || y > bottom + height) {
      window.scrollBy(0, y - top - height / 3);
    } else if (y < top) {
      window.scrollBy(0, y - top);
    } else if (y + this.rowHeight > bottom) {
      window.scrollBy(0, y + this.rowHeight - bottom);
    }
    this.draw();
  }

  jumpTo(index) {
    this.choose(index, false);
    this.bringIntoSight(index, true);
  }

  jumpToTime(time) {
    let index = this.events.findIndex((event) => event.time >= time);
    if (index < 0) {
      index = this.events.length - 1;
    }
    this.jumpTo(index);
  }

  jumpToFailure(step) {
    let index = this.chosen < 0 && step < 0 ? this.events.length : this.chosen;
    do {
      index += step;
    } while (index >= 0 && index < this.events.length && !this.events[index].failed);
    if (index >= 0 && index < this.events.length) {
      this.jumpTo(index);
    }
  }

  onFocus() {
    if (this.chosen < 0 && this.events.length > 0) {
      const { top } = this.sight();
      const first = Math.ceil((top - this.place.getBoundingClientRect().top) / this.rowHeight);
      this.choose(Math.min(Math.max(0, first), this.events.length - 1), false);
    }
  }

  onKey(press) {
    const { top, bottom } = this.sight();
    const page = Math.max(1, Math.floor((bottom - top) / this.rowHeight) - 1);
    const last = this.events.length - 1;
    const moves = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -last, End: last };
    if (press.key in moves && !press.ctrlKey && !press.altKey && !press.metaKey) {
      press.preventDefault();
      this.choose(Math.min(last, Math.max(0, this.chosen + moves[press.key])), true);
    }
  }
}
