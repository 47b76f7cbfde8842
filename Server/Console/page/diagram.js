// One operation as a sequence diagram: a grid with a line at each participant, and two rows for each step.
import { element } from './dom.js';
import { exchangesOf } from './explain.js';

const services = ['provider', 'backend'];
const everyLifeline = ['app', 'main queue', 'kit', ...services];
/** So many pixels stand for the whole time when waits are drawn to scale. */
const scaledHeight = 600;
const isConfirmation = /^getPaymentInstrumentsList/;
const afterConfirming = /^(addCreditCardForGuest|updateCurrentGuestWithRequest)/;

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

/** Names may be broken between their words. */
const breakable = (text) => text.split(/(?<=[a-z])(?=[A-Z])/).flatMap((word) => [element('wbr'), word]);

/** Draws steps; those after the event `known` are new. With `isScaled`, they are as far apart as they were in time. */
export function drawn(steps, known = Infinity, isScaled = false) {
  const lifelines = everyLifeline.filter((name) => steps.some(({ from, to, lifeline }) => [from, to, lifeline].includes(name)));
  const lineOf = (name) => lifelines.indexOf(name) + 2;
  const picture = element('div', { class: 'sequence', 'aria-hidden': 'true' });
  picture.style.setProperty('--gaps', Math.max(1, lifelines.length - 1));
  const place = (gridRow, gridColumn, attributes, ...children) => {
    const part = element('div', attributes, ...children);
    Object.assign(part.style, { gridRow, gridColumn });
    picture.append(part);
    return part;
  };
  const end = 2 * steps.length + 3;
  for (const name of lifelines) {
    place(`1 / ${end}`, lineOf(name), { class: 'lifeline' });
    place(`1 / ${end}`, lineOf(name), { class: 'head' }, ...name.split(' ').map((word) => element('span', {}, `${word} `)));
  }
  const whole = Math.max(1, (steps.at(-1)?.at ?? 0) - (steps[0]?.at ?? 0));
  /** Of each call, with the rows of its arrow and of its reply's. */
  const bars = new Map();
  for (const [index, step] of steps.entries()) {
    const { at, thread, lifeline, slot, replyTo } = step;
    const row = 2 * index + 2;
    const [from, to] = [lineOf(step.from ?? lifeline), lineOf(step.to ?? lifeline)];
    // Its arrow ends, or its dot is, on the right.
    const isRight = lifeline ? services.includes(lifeline) : from < to;
    const noted = isRight ? `2 / ${to}` : `${from} / -1`;
    const columns = lifeline ? noted : `${Math.min(from, to)} / ${Math.max(from, to)}`;
    const sort = lifeline ? 'note' : step.result ? 'reply' : 'call';
    const looks = `${sort} ${isRight ? 'right' : ''} ${step.number > known ? 'new' : ''}`;
    const before = steps[index - 1];
    const isNew = before?.at !== at || before.thread !== thread;
    const when = isNew ? [`+${duration(at).replace('<1', '0')}`, thread].filter(Boolean) : [];
    place(row, 1, { class: 'when' }, ...when.map((part) => element('span', {}, part)));
    const text = element('span', {}, ...breakable(labelOf(step)));
    const label = place(row, columns, { class: `label ${looks}`, 'data-tone': step.tone, 'data-when': when.join(' · ') }, text);
    if (isScaled && before) label.style.marginTop = `${Math.round(((at - before.at) / whole) * scaledHeight)}px`;
    const arrow = place(row + 1, columns, { class: `arrow ${looks}`, 'data-tone': step.tone });
    if (slot !== undefined && [step.from, step.to].some((side) => services.includes(side))) arrow.style.setProperty('--slot', slot);
    if (bars.has(replyTo)) bars.get(replyTo).last = row + 1;
    else if (slot !== undefined && !replyTo) bars.set(step.number, { step, first: row + 1, last: null });
  }
  for (const { step, first, last } of bars.values()) {
    const bar = place(`${first} / ${last ?? end}`, lineOf(step.to), { class: last ? 'bar' : 'bar open' });
    bar.style.setProperty('--slot', step.slot);
  }
  return picture;
}
