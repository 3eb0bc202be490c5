// Puts the parts together.

function showDetail(trace, event) {
  const facts = document.getElementById('facts');
  const line = document.getElementById('line');
  facts.replaceChildren();
  if (event === null) {
    facts.textContent = 'Point at an event, or move with the arrow keys, to see its whole line. ' +
      'n and p go to the next and the previous failure, / to the text filter.';
    line.textContent = '';
    return;
  }
  if (event.gap) {
    facts.textContent = `${labelText(event)}, from ${dayAndTime(event.time)} on`;
    line.textContent = '';
    return;
  }
  const level = event.usual ? 'error, but usual' : event.failed && event.level === 'info' ? 'failure' : event.level;
  const texts = [
    `${trace.logs[event.source].name}, line ${event.number}`,
    KIND_NAMES[event.kind],
    event.service >= 0 ? `service ${SERVICES[event.service] || event.service}` : '',
    event.thread > 0 ? `thread ${event.thread}` : '',
    ...remarks(event),
  ].filter((text) => text !== '');
  if (level !== '') {
    facts.append(element('b', { class: event.failed ? 'bad' : '' }, level), ' · ');
  }
  facts.append(texts.join(' · '));
  line.textContent = event.line;
}

function start() {
  const trace = readTrace();
  const byId = (id) => document.getElementById(id);
  showSummary(trace);
  byId('lanes').append(...LANES.map((lane) => element('span', {}, lane)));

  let markSight = () => {};
  const diagram = new Diagram(byId('events'), (event) => showDetail(trace, event), (first, last) => {
    markSight(first.time, last.gap ? last.until : last.time);
  });
  markSight = showOverview(trace, (time) => diagram.jumpToTime(time));

  const applyFilters = () => {
    const filter = { text: byId('text').value, service: byId('service').value, level: byId('level').value };
    const events = filtered(trace.events, filter);
    diagram.show(events);
    const lines = (list) => list.filter((event) => !event.gap).length;
    byId('count').textContent = `${countText(lines(events))} of ${countText(lines(trace.events))} events`;
    byId('nothing').hidden = events.length > 0;
  };
  const jumpToSequence = (sequence) => {
    const isIt = (event) => event.sequence === sequence;
    if (!diagram.events.some(isIt)) {
      byId('filters').reset();
      applyFilters();
    }
    diagram.jumpTo(diagram.events.findIndex(isIt));
    byId('events').focus({ preventScroll: true });
  };

  for (const change of ['input', 'change']) {
    byId('filters').addEventListener(change, applyFilters);
  }
  byId('filters').addEventListener('submit', (submit) => submit.preventDefault());
  byId('filters').addEventListener('reset', () => setTimeout(applyFilters));
  byId('next').addEventListener('click', () => diagram.jumpToFailure(1));
  byId('previous').addEventListener('click', () => diagram.jumpToFailure(-1));
  byId('tables').addEventListener('click', (click) => {
    const link = click.target.closest('[data-event]');
    if (link !== null) {
      jumpToSequence(Number(link.dataset.event));
    }
  });
  document.addEventListener('keydown', (press) => {
    if (press.ctrlKey || press.altKey || press.metaKey || /^(INPUT|SELECT)$/.test(press.target.tagName)) {
      return;
    }
    if (press.key === 'n' || press.key === 'p') {
      diagram.jumpToFailure(press.key === 'n' ? 1 : -1);
    } else if (press.key === '/') {
      press.preventDefault();
      byId('text').focus();
    }
  });
  applyFilters();
  showDetail(trace, null);
}

start();
