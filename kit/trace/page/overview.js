// The strip above the diagram shows how many lines there were over time, and how many of them reported
// a failure.

const SVG = 'http://www.w3.org/2000/svg';
const STRIP_HEIGHT = 34;

function bars(counts, most) {
  // The square root keeps a small number visible beside a large one.
  return counts.map((count, at) => {
    const height = count === 0 ? 0 : Math.max(2, Math.sqrt(count / most) * STRIP_HEIGHT);
    return height === 0 ? '' : `M${at} ${STRIP_HEIGHT}v${-height}h.85v${height}z`;
  }).join('');
}

function strip(histogram, used) {
  const svg = document.createElementNS(SVG, 'svg');
  svg.setAttribute('viewBox', `0 0 ${used} ${STRIP_HEIGHT}`);
  svg.setAttribute('preserveAspectRatio', 'none');
  const most = Math.max(1, ...histogram.lines);
  for (const kind of ['lines', 'failures']) {
    const path = document.createElementNS(SVG, 'path');
    path.setAttribute('class', kind);
    path.setAttribute('d', bars(histogram[kind].slice(0, used), most));
    svg.append(path);
  }
  return svg;
}

// jump: called with a time. Returns a function that marks the times in sight.
function showOverview(trace, jump) {
  const place = document.getElementById('overview');
  const { histogram } = trace.summary;
  const used = histogram.lines.reduce((last, count, at) => (count > 0 ? at + 1 : last), 0);
  if (used === 0) {
    place.hidden = true;
    return () => {};
  }
  const whole = used * histogram.span;
  const mark = element('div', { class: 'window' });
  place.append(strip(histogram, used), mark);
  place.addEventListener('click', (click) => {
    const box = place.getBoundingClientRect();
    jump(histogram.begin + ((click.clientX - box.left) / box.width) * whole);
  });
  return (from, until) => {
    const part = (time) => Math.min(100, Math.max(0, ((time - histogram.begin) / whole) * 100));
    mark.style.left = `${part(from)}%`;
    mark.style.width = `${part(until) - part(from)}%`;
  };
}
