// One operation as a sequence diagram.
import { svg } from './dom.js';
import { exchangesOf } from './explain.js';

const everyLifeline = ['app', 'main queue', 'kit', 'provider', 'backend'];
const margin = 134;
const lineHeight = 15;
const headHeight = 34;
const barWidth = 8;
const leastGap = 64;
const widestCall = 250;
const widestResult = 180;
/** So many pixels stand for the whole time when waits are drawn to scale. */
const scaledHeight = 600;
const isConfirmation = /^getPaymentInstrumentsList/;
const afterConfirming = /^(addCreditCardForGuest|updateCurrentGuestWithRequest)/;

const pen = document.createElement('canvas').getContext('2d');
function widthOf(text) {
  pen.font = '12px system-ui, -apple-system, "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif';
  return pen.measureText(text).width;
}

const millisecondsOf = (event) => Date.parse(event.at);
export const duration = (ms) => (ms < 1 ? '<1 ms' : ms < 10_000 ? `${Math.round(ms)} ms` : `${(ms / 1000).toFixed(1)} s`);

/**
 * What is drawn of each event, each reply with what it took. From a service's thread the kit comes
 * to the main one through the main queue only. So when it calls the app's completion there, or
 * registers a card that was confirmed elsewhere, that was posted.
 */
export function stepsOf(events) {
  const steps = [];
  const exchanges = exchangesOf(events);
  // The last reply that came on another thread.
  let replied = '';
  for (const event of events) {
    const { from, to, what, result, thread, number } = event;
    const common = { thread, number, at: millisecondsOf(event) - millisecondsOf(events[0]), sort: 'calls' };
    if (from === 'app') replied = '';
    const goesOn = to === 'app' ? replied !== '' : isConfirmation.test(replied) && afterConfirming.test(what);
    const isPosted = from === 'kit' && thread === 'main' && goesOn;
    if (isPosted) {
      steps.push({ ...common, from: 'kit', to: 'main queue', text: 'posts', tone: 'soft', thread: '' });
      replied = '';
    }
    if (to === 'kit' && thread !== 'main') replied = what;
    const note = {
      log: { lifeline: 'kit', text: `${result}: ${what}`, tone: 'soft', sort: 'log' },
      assert: { lifeline: 'kit', text: `assertion: ${what}`, tone: 'bad', sort: 'assert' },
      [from]: { lifeline: from, text: what, tone: 'drift' },
    }[to];
    const step = note ? { ...common, ...note } : {
      ...common, from: isPosted && to === 'app' ? 'main queue' : from, to, what, result,
      text: result ? `${what}: ${result}` : what, tone: result.startsWith('error') ? 'bad' : null,
    };
    const { call, slot, isAlone } = exchanges.find((each) => each.call === event || each.reply === event) ?? {};
    if (call !== event && call) Object.assign(step, { replyTo: call.number, took: millisecondsOf(event) - millisecondsOf(call), isAlone });
    steps.push({ ...step, slot });
  }
  return steps;
}

/** A step in words: for those who do not see the drawing, and for a bug report. */
export function sentenceOf(step) {
  const where = step.lifeline ?? `${step.from} → ${step.to}`;
  const took = step.took === undefined ? '' : `, after ${duration(step.took)}`;
  return `${where}: ${step.text}${took}${step.thread ? ` (${step.thread})` : ''}`;
}

/** What stands on a step's arrow: a reply names its call only where others are under way. */
function labelOf(step) {
  const short = (what) => what.replace(/ use case (\w+)$/, ' · $1');
  if (step.took === undefined) return step.what && !step.result ? short(step.what) : step.text;
  // Calls of one name differ in their use case.
  const word = step.what.split(' ').at(step.what.startsWith('get') ? -1 : 0);
  const about = step.isAlone ? '' : `${word}: `;
  return `${about}${step.result} ·\u00a0${duration(step.took).replace(' ', '\u00a0')}`;
}

function wrapped(text, space) {
  const lines = [''];
  for (const word of text.split(/ |(?<=[a-z]{12})(?=[A-Z])/)) {
    const last = lines.at(-1);
    const longer = last ? `${last} ${word}` : word;
    if (last && widthOf(longer) > space) lines.push(word);
    else lines[lines.length - 1] = longer;
  }
  return lines;
}

function head({ lifeline, x, width, isSmall }) {
  return svg('g', { class: 'lifeline-head' },
    svg('rect', { class: 'head-box', x: x - width / 2, y: 4, width, height: 24, rx: 6 }),
    svg('text', { class: isSmall ? 'head small' : 'head', x, y: 20, 'text-anchor': 'middle' }, isSmall ? lifeline.split(' ').at(-1) : lifeline));
}

/** The heads alone, which stay in sight while the rest is scrolled. */
export function headsOf(picture) {
  const heads = svg('svg', { class: 'heads', width: picture.getAttribute('width'), height: headHeight, 'aria-hidden': 'true' });
  heads.append(...[...picture.querySelectorAll('.lifeline-head')].map((each) => each.cloneNode(true)));
  return heads;
}

/**
 * Where lifelines are on a sheet: as far apart as the texts between them need, and closer, with the
 * texts in several lines, where the sheet is too narrow. On a very narrow one a text begins at the
 * edge and stands above its arrow.
 */
function layoutOf(steps, sheet) {
  const isUsed = (lifeline) => ['app', 'kit'].includes(lifeline) || steps.some((step) => [step.from, step.to, step.lifeline].includes(lifeline));
  const lifelines = everyLifeline.filter(isUsed);
  const isNarrow = sheet < 560;
  const gap = Math.floor(sheet / lifelines.length);
  const widths = lifelines.map((lifeline) => (isNarrow ? gap - 4 : 18 + 8 * lifeline.length));
  const closest = [isNarrow ? gap / 2 : margin + widths[0] / 2];
  const places = [...closest];
  for (let to = 1; to < lifelines.length; ++to) {
    const least = (widths[to - 1] + widths[to]) / 2 + (isNarrow ? 4 : 8);
    closest[to] = closest[to - 1] + least;
    places[to] = places[to - 1] + least;
    for (const step of steps.filter((each) => each.to)) {
      const [left, right] = [lifelines.indexOf(step.from), lifelines.indexOf(step.to)].sort();
      const width = Math.min(step.result ? widestResult : widestCall, widthOf(labelOf(step)));
      if (right === to) places[to] = Math.max(places[to], places[left] + width + 4 * barWidth);
    }
  }
  const spare = sheet - widths.at(-1) / 2 - barWidth - closest.at(-1);
  const share = isNarrow ? 0 : Math.min(1, spare / Math.max(1, places.at(-1) - closest.at(-1)));
  const heads = lifelines.map((lifeline, index) => ({
    lifeline, x: Math.round(closest[index] + (places[index] - closest[index]) * share), width: widths[index], isSmall: isNarrow && gap < 84,
  }));
  return { isNarrow, width: sheet, heads, xOf: (lifeline) => heads[Math.max(0, lifelines.indexOf(lifeline))].x };
}

function placeOfText(step, from, to, { isNarrow, width, xOf }) {
  if (isNarrow) return { x: 6, space: width - 12, anchor: 'start' };
  if (step.to) return { x: Math.round((from + to) / 2), space: Math.max(leastGap, Math.abs(to - from) - barWidth), anchor: 'middle' };
  const x = xOf(step.lifeline) + 12;
  if (['app', 'kit'].includes(step.lifeline) && width - x > 160) return { x, space: width - x - 8, anchor: 'start' };
  return { x: xOf(step.lifeline) - 12, space: xOf(step.lifeline) - margin - 24, anchor: 'end' };
}

/** One step with its top at `y`; `at` is where its arrow or dot is. */
function row(step, y, layout, before) {
  const { isNarrow, xOf } = layout;
  const bar = (lifeline) => (['provider', 'backend'].includes(lifeline) && step.slot !== undefined ? xOf(lifeline) - barWidth / 2 + step.slot * (barWidth + 3) : xOf(lifeline));
  const [from, to] = [bar(step.from), bar(step.to)];
  const { x, space, anchor } = placeOfText(step, from, to, layout);
  const label = labelOf(step);
  const time = `+${duration(step.at).replace('<1', '0')}`;
  const isNew = !before || before.at !== step.at || before.thread !== step.thread;
  const lines = wrapped(isNarrow && isNew ? [label, step.thread, time].filter(Boolean).join(' · ') : label, space);
  const top = y + 14;
  const last = top + (lines.length - 1) * lineHeight;
  const at = step.lifeline && !isNarrow ? last : last + 7;
  const when = isNarrow || !isNew ? [] : [
    svg('text', { class: 'time', x: 54, y: top, 'text-anchor': 'end' }, time),
    svg('text', { class: `thread ${step.thread === 'main' ? 'main' : ''}`, x: 60, y: top }, step.thread)];
  const tip = to > from ? -7 : 7;
  const mark = step.lifeline
    ? svg('circle', { cx: xOf(step.lifeline), cy: isNarrow ? at + 2 : top - 4, r: 4 })
    : svg('g', { class: step.result ? 'reply' : 'call' },
      svg('line', { x1: from, y1: at, x2: to, y2: at }), svg('path', { d: `M${to} ${at}l${tip} -4v8z` }));
  const text = svg('text', { class: 'label', x, y: top, 'text-anchor': anchor },
    ...lines.map((line, index) => svg('tspan', { x, dy: index === 0 ? 0 : lineHeight }, line)));
  return { at, parts: [...when, mark, text] };
}

/**
 * Draws steps on a sheet of so many pixels; those after the event `known` are new. With `isScaled`,
 * steps are as far apart as they were in time.
 */
export function drawn(steps, sheet, known = Infinity, isScaled = false) {
  const layout = layoutOf(steps, sheet);
  const { width, heads, xOf } = layout;
  const rows = [];
  /** Of each call, from its arrow to its reply's. */
  const bars = new Map();
  const whole = Math.max(1, (steps.at(-1)?.at ?? 0) - (steps[0]?.at ?? 0));
  let y = headHeight + 8;
  let before = null;
  for (const step of steps) {
    if (isScaled && before) y += Math.round(((step.at - before.at) / whole) * scaledHeight);
    const { at, parts } = row(step, y, layout, before);
    rows.push(svg('g', { class: step.number > known ? 'new' : null, 'data-tone': step.tone }, ...parts));
    if (bars.has(step.replyTo)) bars.get(step.replyTo).end = at;
    else if (step.slot !== undefined && !step.replyTo) bars.set(step.number, { step, start: at, end: null });
    y = at + (layout.isNarrow ? 9 : 6);
    before = step;
  }
  const height = y + 14;
  return svg('svg', { width, height, viewBox: `0 0 ${width} ${height}`, 'aria-hidden': 'true', xmlns: 'http://www.w3.org/2000/svg' },
    ...heads.map(({ x }) => svg('line', { class: 'lifeline', x1: x, x2: x, y1: headHeight - 4, y2: height - 6 })),
    ...[...bars.values()].map(({ step, start, end }) => svg('rect', {
      class: end ? 'bar' : 'bar open', x: xOf(step.to) - barWidth / 2 + step.slot * (barWidth + 3), y: start, width: barWidth,
      height: Math.max(4, (end ?? height - 6) - start), rx: 2,
    })),
    ...rows,
    ...heads.map(head));
}
