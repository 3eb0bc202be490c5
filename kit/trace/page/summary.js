// The part above the diagram: the logs that were read, the numbers and the tables.

function element(name, attributes = {}, ...content) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key === 'class') {
      made.className = value;
    } else {
      made.setAttribute(key, value);
    }
  }
  made.append(...content.map((one) => (typeof one === 'number' ? countText(one) : one)));
  return made;
}

function originText(trace) {
  const { summary, logs } = trace;
  const names = `${logs.map((log) => log.name).join(', ')} · ${plural(summary.lines, 'line', 'lines')}`;
  if (summary.firstTime === 0) {
    return `${names} · no time in any of them`;
  }
  return `${names} · ${dayAndTime(summary.firstTime)} to ${dayAndTime(summary.lastTime)} · ` +
    span(summary.lastTime - summary.firstTime);
}

function tile(number, text, bad = false) {
  return element('div', { class: bad && number > 0 ? 'tile bad' : 'tile' }, element('b', {}, number),
    element('span', {}, text));
}

function sum(list, key) {
  return list.reduce((total, one) => total + one[key], 0);
}

function tiles(summary) {
  return [
    tile(sum(summary.calls, 'calls'), 'calls'),
    tile(sum(summary.calls, 'failed'), 'failed calls', true),
    tile(sum(summary.calls, 'refused'), 'refused calls', true),
    tile(summary.failures, 'failure lines', true),
    tile(summary.requests, 'requests to services'),
    tile(summary.notifications, 'notifications'),
  ];
}

function planText(plan) {
  const shown = (part, all, what) => (part >= all ? `all ${countText(all)} ${what}`
    : `${countText(part)} of ${countText(all)} ${what}, evenly picked`);
  const parts = [
    `the first and the last ${countText(plan.edge)} lines`,
    shown(plan.failures, plan.allFailures, 'lines that tell of failure'),
  ];
  if (plan.context > 0) {
    parts.push(`${plan.context} lines before each of these`);
  }
  parts.push(shown(plan.calls, plan.allCalls, 'calls and outcomes'));
  if (plan.others > 0) {
    parts.push(`about ${countText(plan.others)} other lines, in stretches`);
  }
  return parts.join('; ');
}

function plural(count, one, many) {
  return `${countText(count)} ${count === 1 ? one : many}`;
}

function notices(trace) {
  const { summary, plan } = trace;
  const shown = trace.events.filter((event) => !event.gap).length;
  const texts = [];
  if (!plan.whole) {
    texts.push(`The logs are too large to be shown whole: this page shows ${countText(shown)} of ` +
      `${countText(plan.lines)} lines. It has ${planText(plan)}. The numbers and tables above and below ` +
      'count every line. In the diagram a row in italics stands for what was left out there.');
  }
  if (summary.usual > 0) {
    texts.push(`${plural(summary.usual, 'line of level error is', 'lines of level error are')} usual in a run ` +
      'in which nothing is wrong, and not counted as failures. In the diagram they have a ring.');
  }
  if (summary.foreign > 0) {
    texts.push(`${plural(summary.foreign, 'line is not a line', 'lines are not lines')} of a log; shown as ` +
      'found, at the time of the line before.');
  }
  if (summary.unknown > 0) {
    texts.push(`${plural(summary.unknown, 'line', 'lines')} of the library ` +
      `${summary.unknown === 1 ? 'is' : 'are'} unknown to this version of plenxkit.`);
  }
  if (summary.torn > 0) {
    texts.push(`${plural(summary.torn, 'log ends', 'logs end')} inside a line: the program was still writing, or ` +
      'was ended.');
  }
  if (summary.cut > 0) {
    texts.push(`${plural(summary.cut, 'very long line is', 'very long lines are')} cut.`);
  }
  return texts.map((text) => element('li', {}, text));
}

function isWide() {
  return !window.matchMedia('(max-width: 760px)').matches;
}

// columns: [heading, content of a row, class]
function table(title, note, rows, columns, open = isWide()) {
  if (rows.length === 0) {
    return null;
  }
  const heads = columns.map(([head, , kind]) => element('th', { scope: 'col', class: kind || '' }, head));
  const body = rows.map((row) => element('tr', {}, ...columns.map(([, content, kind]) =>
    element('td', { class: kind || '' }, ...[content(row)].flat()))));
  const card = element('details', { class: 'card' },
    element('summary', {}, `${title} `, element('small', {}, note)),
    element('div', { class: 'scroll', tabindex: '0' }, element('table', {},
      element('thead', {}, element('tr', {}, ...heads)), element('tbody', {}, ...body))));
  card.open = open;
  return card;
}

function jumpLink(text, sequence) {
  return element('button', { class: 'link', type: 'button', 'data-event': sequence }, text);
}

function badCount(number) {
  return number === 0 ? '' : element('span', { class: 'bad' }, number);
}

function tables(summary) {
  const byCount = (one, other) => other.count - one.count;
  const codeText = (group) => (group.code === null ? '–' : String(group.code));
  const slowColumns = [
    ['ms', (slow) => slow.ms, 'number'],
    ['what', (slow) => jumpLink(slow.text, slow.event)],
    ['at', (slow) => clock(slow.time), 'number'],
  ];
  return [
    table('Failed and refused calls', 'by code', [...summary.failedCalls].sort(byCount), [
      ['count', (group) => group.count, 'number'],
      ['call', (group) => jumpLink(group.text, group.first)],
      ['code', codeText, 'number'],
      ['meaning', (group) => group.meaning],
    ], true),
    table('Slowest starts', 'from the worker’s line on', summary.slowestStarts, slowColumns),
    table('Longest waits', 'in the queue, from the call on', summary.longestWaits, slowColumns),
    table('Calls', 'and their waits in the queue, in ms', [...summary.calls].sort((one, other) => other.calls - one.calls), [
      ['call', (call) => call.name],
      ['calls', (call) => call.calls, 'number'],
      ['failed', (call) => badCount(call.failed), 'number'],
      ['refused', (call) => badCount(call.refused), 'number'],
      ['mean wait', (call) => (call.waits ? (call.waitSum / call.waits).toFixed(1) : '–'), 'number'],
      ['longest', (call) => (call.waits ? call.waitMost : '–'), 'number'],
    ], false),
    table('Error lines', 'by text; ○: usual', [...summary.errorLines].sort((one, other) => one.usual - other.usual || byCount(one, other)), [
      ['count', (group) => group.count, 'number'],
      ['text of the first', (group) => [group.usual ? '○ ' : '', jumpLink(group.text, group.first)]],
    ], false),
  ].filter((one) => one !== null);
}

function showSummary(trace) {
  document.getElementById('title').textContent = trace.title;
  document.getElementById('origin').textContent = originText(trace);
  document.getElementById('tiles').append(...tiles(trace.summary));
  document.getElementById('notices').append(...notices(trace));
  document.getElementById('tables').append(...tables(trace.summary));
}
