// One operation as a sequence diagram.
import { svg } from './dom.js';

const lanes = ['app', 'main queue', 'kit', 'provider', 'backend'];
const margin = 82;
const leastGap = 88;
/** A text has at least that much room, even if it then crosses a lane. */
const leastRoom = 140;
/** What the calls to a service are given before anything else is. */
const roomForCalls = 200;
const leastBetweenHeads = 10;
const lineHeight = 15;
const letterWidth = 7.2;
const isConfirmation = /^getPaymentInstrumentsList/;
const afterConfirming = /^(addCreditCardForGuest|updateCurrentGuestWithRequest)/;
/** The rest are notices, which nobody answers. */
const hasAnswer = /^(add|create|delete|fetch|get|remove|update)[A-Z]/;
const headHeight = 34;

/**
 * What is drawn of each event. From a service's thread the kit comes to the main one through the
 * main queue only. So when it tells the app of an answer there, or registers a card that was
 * confirmed elsewhere, that was posted.
 */
export function stepsOf(events) {
  const steps = [];
  // The last answer that came on another thread.
  let answered = '';
  for (const event of events) {
    const { from, to, what, result, thread, number } = event;
    if (from === 'app') answered = '';
    const goesOn = to === 'app' ? answered !== '' : isConfirmation.test(answered) && afterConfirming.test(what);
    const isPosted = from === 'kit' && thread === 'main' && goesOn;
    if (isPosted) {
      steps.push({ kind: 'arrow', from: 'kit', to: 'main queue', text: 'posts', tone: 'soft', thread: '', number });
      answered = '';
    }
    if (to === 'kit' && thread !== 'main') answered = what;
    if (to === 'log') steps.push({ kind: 'note', at: 'kit', text: `${result}: ${what}`, tone: 'soft', thread, number, sort: 'log' });
    else if (to === 'assert') steps.push({ kind: 'note', at: 'kit', text: `assertion: ${what}`, tone: 'bad', thread, number, sort: 'assert' });
    else if (from === to) steps.push({ kind: 'note', at: from, text: what, tone: 'drift', thread, number, sort: 'calls' });
    else {
      steps.push({
        kind: 'arrow', from: isPosted && to === 'app' ? 'main queue' : from, to, thread, number,
        text: result ? `${what}: ${result}` : what,
        isAnswer: result !== '',
        tone: result.startsWith('error') ? 'bad' : 'plain',
        call: !result && hasAnswer.test(what) ? `${to} ${from} ${what}` : null,
        answers: result ? `${from} ${to} ${what}` : null,
        sort: 'calls',
      });
    }
  }
  return steps;
}

/** A step in words: for those who do not see the drawing, and for a bug report. */
export function sentenceOf(step) {
  const where = step.kind === 'note' ? step.at : `${step.from} → ${step.to}`;
  return `${where}: ${step.text}${step.thread ? ` (${step.thread})` : ''}`;
}

function wrapped(text, columns) {
  const lines = [''];
  for (const word of text.split(' ')) {
    const last = lines[lines.length - 1];
    if (last && last.length + word.length + 1 > columns) lines.push(word);
    else lines[lines.length - 1] = last ? `${last} ${word}` : word;
  }
  return lines;
}

function textAt(lines, x, y, tone, anchor) {
  return svg('text', { class: `label ${tone}`, x, y, 'text-anchor': anchor },
    ...lines.map((line, index) => {
      const part = svg('tspan', { x, dy: index === 0 ? 0 : lineHeight });
      part.textContent = line;
      return part;
    }));
}

function head({ lane, x, width, isSmall }) {
  const label = svg('text', { class: isSmall ? 'head small' : 'head', x, y: 20, 'text-anchor': 'middle' });
  label.textContent = lane;
  return svg('g', { class: 'lane-head' }, svg('rect', { class: 'head-box', x: x - width / 2, y: 4, width, height: 24, rx: 6 }), label);
}

function arrow(step, from, to, y) {
  const tip = to > from ? -7 : 7;
  return svg('g', { class: `${step.isAnswer ? 'answer' : 'call'} ${step.tone}` },
    svg('line', { x1: from, y1: y, x2: to, y2: y }),
    svg('path', { d: `M${to} ${y}l${tip} -4v8z` }));
}

/** The bars that show how long a call is being served; those without an answer go on. */
function bars(placed, xOf, end) {
  const open = new Map();
  const drawn = [];
  const bar = (step, from, to, isOpen) =>
    svg('rect', { class: isOpen ? 'bar open' : 'bar', x: xOf(step.to) - 4, y: from, width: 8, height: Math.max(4, to - from), rx: 2 });
  for (const { step, y } of placed) {
    if (step.call) open.set(step.call, [...(open.get(step.call) ?? []), { step, y }]);
    const call = step.answers ? open.get(step.answers)?.shift() : null;
    if (call) drawn.push(bar(call.step, call.y, y, false));
  }
  for (const call of [...open.values()].flat()) drawn.push(bar(call.step, call.y, end, true));
  return drawn;
}

/** The heads alone, which stay in sight while the rest is scrolled. */
export function headsOf(picture) {
  const heads = svg('svg', { class: 'heads', width: picture.getAttribute('width'), height: headHeight, 'aria-hidden': 'true' });
  heads.append(...[...picture.querySelectorAll('.lane-head')].map((each) => each.cloneNode(true)));
  return heads;
}

/** Heads at even distances, from edge to edge. */
function headsOnANarrowSheet(sheet) {
  const gap = Math.floor(sheet / lanes.length);
  return lanes.map((lane, index) => ({ lane, x: gap * (index + 0.5), width: Math.min(96, gap - 4), isSmall: gap < 84 }));
}

/** Heads side by side behind the threads; the calls to the services have most of what is left. */
function headsOnAWideSheet(sheet) {
  const widths = lanes.map((lane) => 18 + 8 * lane.length);
  const left = sheet - margin - widths.reduce((sum, width) => sum + width);
  const forCalls = Math.min(roomForCalls, left - leastBetweenHeads * lanes.length);
  const gap = Math.floor((left - forCalls) / lanes.length);
  let edge = margin;
  return lanes.map((lane, index) => {
    if (lane === 'provider') edge += forCalls;
    const x = edge + widths[index] / 2;
    edge += widths[index] + gap;
    return { lane, x, width: widths[index], isSmall: false };
  });
}

/**
 * Where things are on a sheet. On a wide one the threads have a column, and a text begins at its
 * lane; on a narrow one it begins at the edge and stands above what it is about.
 */
function layoutOf(sheet) {
  const isNarrow = (sheet - margin) / lanes.length < leastGap;
  const heads = (isNarrow ? headsOnANarrowSheet : headsOnAWideSheet)(sheet);
  const xOf = (lane) => heads[Math.max(0, lanes.indexOf(lane))].x;
  return { isNarrow, width: sheet, heads, xOf };
}

function placeOfText(step, { isNarrow, width, heads, xOf }) {
  if (isNarrow) return { x: 6, room: width - 12, anchor: 'start' };
  const isNote = step.kind === 'note';
  const start = isNote ? xOf(step.at) + 12 : Math.min(xOf(step.from), xOf(step.to)) + 10;
  // A text stops before the next lane, if there is room enough.
  const stops = heads.map(({ x }) => x);
  const firstRoom = (rooms) => rooms.map((room) => room - 8).find((room) => room >= leastRoom);
  const room = firstRoom([...stops, width].map((stop) => stop - start));
  if (!isNote || room) return { x: start, room: room ?? width - start - 8, anchor: 'start' };
  // Where little room is left of the sheet, a note stands on the other side of its dot.
  const end = xOf(step.at) - 12;
  return { x: end, room: firstRoom(stops.reverse().map((stop) => end - stop)) ?? end - margin, anchor: 'end' };
}

/** One step with its top at `y`; `at` is where its arrow or dot is. */
function row(step, y, layout) {
  const { isNarrow, xOf } = layout;
  const { x, room, anchor } = placeOfText(step, layout);
  const text = isNarrow && step.thread ? `${step.text} · ${step.thread}` : step.text;
  const lines = wrapped(text, Math.max(16, Math.floor(room / letterWidth)));
  const top = y + 14;
  const last = top + (lines.length - 1) * lineHeight;
  const at = last + 7;
  const thread = svg('text', { class: `thread ${step.thread === 'main' ? 'main' : ''}`, x: 8, y: top });
  thread.textContent = isNarrow ? '' : step.thread;
  const dotAt = isNarrow ? at + 2 : top - 4;
  const mark = step.kind === 'note'
    ? svg('circle', { class: `dot ${step.tone}`, cx: xOf(step.at), cy: dotAt, r: 4 })
    : arrow(step, xOf(step.from), xOf(step.to), at);
  return { at, parts: [thread, mark, textAt(lines, x, top, step.tone, anchor)] };
}

/** Draws steps on a sheet of so many pixels; those after the event `known` are new. */
export function drawn(steps, sheet, known = Infinity) {
  const layout = layoutOf(sheet);
  const { width, heads, xOf } = layout;
  const placed = [];
  const rows = [];
  let y = headHeight + 8;
  for (const step of steps) {
    const { at, parts } = row(step, y, layout);
    rows.push(svg('g', { class: step.number > known ? 'new' : '' }, ...parts));
    placed.push({ step, y: at });
    y = at + (layout.isNarrow ? 9 : 5);
  }
  const height = y + 14;
  return svg('svg', { width, height, viewBox: `0 0 ${width} ${height}`, 'aria-hidden': 'true', xmlns: 'http://www.w3.org/2000/svg' },
    ...heads.map(({ x }) => svg('line', { class: 'lane', x1: x, x2: x, y1: headHeight - 4, y2: height - 6 })),
    ...bars(placed, xOf, height - 6),
    ...rows,
    ...heads.map(head));
}
