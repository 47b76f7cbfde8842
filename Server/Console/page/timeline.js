// The timeline: every operation, drawn while it happens, and what happened in it.
import { drawn, duration, sentenceOf, stepsOf } from './diagram.js';
import { element, find, onClick, say, showList } from './dom.js';
import { explained } from './explain.js';
import { download, plainText, svgText } from './export.js';

const mostSteps = 400;
const marks = { good: ['✓', 'succeeded'], bad: ['✕', 'failed'], waits: ['…', 'waits'], dropped: ['⊘', 'dropped'], none: ['', ''] };
const manual = (row) => `failures.md#:~:text=${encodeURIComponent(row).replaceAll('-', '%2D')}`;

const operations = new Map();
/** The operation that is looked at; null follows the latest. */
let chosen = null;
/** What there was when the timeline was paused; null while it follows. */
let paused = null;
let lastDrawn = null;
let isPlanned = false;
let onDraw;

/** Calls `listener` after every change of the operations. */
export function startTimeline(listener) {
  onDraw = listener;
  onClick('pause', pause);
  onClick('skip', () => find('filter').focus());
  find('filter').addEventListener('input', plan);
  find('kinds').addEventListener('change', plan);
  onClick('export-text', () => save('txt', 'text/plain', plainText));
  onClick('export-svg', () => save('svg', 'image/svg+xml', svgText));
  plan();
}

/** Those in which something happened, oldest first. */
export const allOperations = (known = operations) => [...known.values()].filter(({ events }) => events.length > 0);

export function chooseOperation(number) {
  chosen = number ? Number(number) : null;
  plan();
}

/** Takes what the server sends: all that is kept, or what is new. */
export function addEvents(news) {
  if (paused) find('pause').textContent = 'Resume (more has come)';
  if (news.whole) {
    // The server sends the last ones; those before are what they were.
    forget((number) => number >= (news.operations[0]?.number ?? 0));
    lastDrawn = null;
  }
  for (const { number, name, events } of news.operations) {
    const known = operations.get(number)?.events ?? [];
    const last = known.at(-1)?.number ?? 0;
    operations.set(number, { number, name, events: [...known, ...events.filter((event) => event.number > last)] });
  }
  plan();
}

/** The server keeps no operation before that one; 0 is none at all. */
export const forgetBefore = (oldest) => forget((number) => oldest === 0 || number < oldest);

function forget(isGone) {
  for (const number of [...operations.keys()]) if (isGone(number)) operations.delete(number);
  plan();
}

function pause(button) {
  paused = paused ? null : new Map(operations);
  button.ariaPressed = paused !== null;
  button.textContent = paused ? 'Resume' : 'Pause';
  plan();
}

function plan() {
  if (isPlanned) return;
  isPlanned = true;
  requestAnimationFrame(() => {
    isPlanned = false;
    draw();
    onDraw();
  });
}

function shown() {
  const all = allOperations(paused ?? operations);
  return all.find((operation) => operation.number === chosen) ?? all.at(-1) ?? null;
}

function stepsShown(operation) {
  const word = find('filter').value.trim().toLowerCase();
  const sorts = [...find('kinds').querySelectorAll('[value]:checked')].map((box) => box.value);
  return stepsOf(operation.events)
    .filter((step) => sorts.includes(step.sort ?? 'calls'))
    .filter((step) => sentenceOf(step).toLowerCase().includes(word));
}

function draw() {
  const operation = shown();
  find('no-timeline').hidden = operation !== null;
  find('diagram').hidden = operation === null;
  for (const id of ['export-svg', 'export-text']) find(id).disabled = operation === null;
  drawList(operation);
  explain(operation);
  const place = find('diagram');
  if (!operation || place.clientWidth === 0) return;
  const all = stepsShown(operation);
  const steps = all.slice(-mostSteps);
  const isSame = lastDrawn?.operation === operation.number;
  const isAtEnd = place.scrollTop + place.clientHeight >= place.scrollHeight - 40;
  place.replaceChildren(drawn(steps, isSame ? lastDrawn.event : Infinity, find('scaled').checked));
  if (all.length > steps.length) {
    place.prepend(element('p', { class: 'hint' }, `${all.length - steps.length} earlier steps are not drawn.`));
  }
  if (steps.length === 0) place.append(element('p', { class: 'hint' }, 'No step fits the filter.'));
  find('steps').replaceChildren(...steps.map((step) => element('li', {}, sentenceOf(step))));
  if (!isSame) place.scrollTop = 0;
  else if (isAtEnd) place.scrollTop = place.scrollHeight;
  lastDrawn = { operation: operation.number, event: operation.events.at(-1).number };
}

function drawList(shown) {
  const rows = allOperations(paused ?? operations).reverse().map((operation) => ({
    number: operation.number, name: operation.name, isShown: operation === shown, tone: explained(operation).tone,
    took: Date.parse(operation.events.at(-1).at) - Date.parse(operation.events[0].at),
  }));
  showList(find('operations'), rows, ({ number, name, isShown, tone, took }) => element('li', {},
    element('a', { href: `#timeline/${number}`, 'data-key': number, 'aria-current': isShown ? 'true' : null },
      element('span', { class: 'hint' }, String(number)),
      element('span', { class: 'grow' }, name),
      element('span', { class: 'hint' }, duration(took)),
      element('span', { class: 'mark', 'data-tone': tone, 'aria-hidden': 'true' }, marks[tone][0]),
      element('span', { class: 'visually-hidden' }, ` ${marks[tone][1]}`))));
}

function explain(operation) {
  const { tone, sentences, row } = operation ? explained(operation) : { tone: 'none', sentences: [], row: null };
  const text = sentences.join(' ') || (operation ? 'Nothing but what is in the timeline.' : 'Nothing yet. Sign a guest in to begin.');
  find('happened').dataset.tone = tone;
  find('happened-title').textContent = operation ? `${operation.number} ${operation.name}` : 'What happened';
  say('happened-text', text);
  find('happened-link').hidden = operation === null;
  find('happened-link').href = `#timeline/${operation?.number}`;
  find('happened-manual').hidden = row === null;
  if (row) Object.assign(find('happened-manual'), { href: manual(row), textContent: `Manual: “${row}”` });
}

async function save(extension, type, written) {
  const operation = shown();
  const name = `paylevenkit-${operation.number}-${operation.name.replaceAll(/\W+/g, '-')}.${extension}`;
  download(name, type, await written(operation, stepsShown(operation)));
}
