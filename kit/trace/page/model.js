'use strict';

// The data of the page as objects, and the filters that select some of them.

const LANES = ['Host', 'Facade', 'Worker', 'Engine', 'Services', 'Observers'];
const SERVICES = ['office', 'pc', 'phone', 'all'];
const LEVELS = ['', 'info', 'error', 'other level'];
// The numbers are those of the kinds in the program.
const KINDS = ['call', 'refusal', 'queued', 'job', 'step', 'request', 'outcome', 'notification', 'fanout',
  'return', 'service', 'answer', 'detail', 'unknown', 'foreign'];
const KIND_NAMES = {
  call: 'call of the host', refusal: 'refused by the facade', queued: 'queued', job: 'job of the worker',
  step: 'step of the engine', request: 'request to a service', outcome: 'outcome of a call',
  notification: 'notification', fanout: 'to the observers', return: 'from the observers',
  service: 'a service at work', answer: 'answer', detail: 'detail', unknown: 'a line unknown to plenxkit',
  foreign: 'not a line of a log',
};

const FAILURE = 1;
const USUAL = 2;
const TORN = 4;
const NO_LANE = LANES.length;

function toEvent(numbers) {
  if (numbers.length === 4) {
    const [sequence, time, leftOut, until] = numbers;
    return { sequence, time, leftOut, until, gap: true, kind: 'gap', line: '' };
  }
  const [sequence, time, level, kind, from, to, service, flags, waited, took, source, number, thread, label,
    line] = numbers;
  return {
    sequence, time, level: LEVELS[level], kind: KINDS[kind], from, to, service, waited, took, source, number,
    thread, label, line, gap: false, failed: (flags & FAILURE) !== 0 && (flags & USUAL) === 0,
    usual: (flags & USUAL) !== 0, torn: (flags & TORN) !== 0, lower: null,
  };
}

function readTrace() {
  const trace = JSON.parse(document.getElementById('trace').textContent);
  trace.events = trace.events.map(toEvent);
  return trace;
}

// A call for all services goes to the PC and the office service.
function concerns(event, service) {
  return event.service === service || (event.service === 3 && (service === 0 || service === 1));
}

function hasLevel(event, level) {
  return level === 'alarm' ? event.failed : event.level === level;
}

function hasText(event, text) {
  if (event.lower === null) {
    event.lower = event.line.toLowerCase();
  }
  return event.lower.includes(text);
}

function isFiltered(filter) {
  return filter.text !== '' || filter.service !== '' || filter.level !== '';
}

// A gap has no text, service or level, so it shows only without any filter.
function filtered(events, filter) {
  if (!isFiltered(filter)) {
    return events;
  }
  const text = filter.text.toLowerCase();
  const service = filter.service === '' ? null : Number(filter.service);
  return events.filter((event) => !event.gap &&
    (service === null || concerns(event, service)) &&
    (filter.level === '' || hasLevel(event, filter.level)) &&
    (text === '' || hasText(event, text)));
}

// Texts of numbers and times

const groups = new Intl.NumberFormat('en-US');

function countText(number) {
  return groups.format(number).replaceAll(',', '\u202f');
}

function span(milliseconds) {
  if (milliseconds < 1000) {
    return `${milliseconds} ms`;
  }
  if (milliseconds < 60000) {
    return `${(milliseconds / 1000).toFixed(milliseconds < 10000 ? 2 : 1)} s`;
  }
  const minutes = Math.floor(milliseconds / 60000);
  return minutes < 60 ? `${minutes} min ${Math.floor(milliseconds / 1000) % 60} s`
    : `${Math.floor(minutes / 60)} h ${minutes % 60} min`;
}

// The time of the clock that wrote the log. Its time zone is not known, so none is applied.
function dayAndTime(time) {
  return new Date(time).toISOString().replace('T', ' ').slice(0, 23);
}

function clock(time) {
  return dayAndTime(time).slice(11);
}
