// The timeline: every operation, drawn while it happens, and what happened in it.
import { drawn, duration, headsOf, sentenceOf, stepsOf } from './diagram.js';
import { element, find, onClick, showList } from './dom.js';
import { explained } from './explain.js';
import { download, plainText, svgText } from './export.js';

const mostSteps = 400;
const marks = { good: ['✓', 'succeeded'], bad: ['✕', 'failed'], waits: ['…', 'waits'], dropped: ['⊘', 'dropped'], none: ['', ''] };
const manual = (row) => `failures.md#:~:text=${encodeURIComponent(row).replaceAll('-', '%2D')}`;

export class TimelineView {
  #operations = new Map();
  /** The operation that is looked at; null follows the latest. */
  #chosen = null;
  #isPaused = false;
  #waiting = [];
  #lastDrawn = null;
  #isPlanned = false;
  /** Called after every change of the operations, which `operations` has. */
  onDraw = () => {};

  constructor() {
    onClick('pause', (button) => this.#pause(button));
    onClick('skip', () => find('filter').focus());
    find('filter').addEventListener('input', () => this.#plan());
    find('kinds').addEventListener('change', () => this.#plan());
    onClick('export-text', () => this.#export('txt', 'text/plain', plainText));
    onClick('export-svg', () => this.#export('svg', 'image/svg+xml', svgText));
    new ResizeObserver(() => this.#plan()).observe(find('diagram'));
    this.#plan();
  }

  /** Those in which something happened, oldest first. */
  operations() {
    return [...this.#operations.values()].filter((operation) => operation.events.length > 0);
  }

  choose(number) {
    this.#chosen = number ? Number(number) : null;
    this.#plan();
  }

  /** Takes what the server sends: all that is kept, or what is new. */
  add(news) {
    if (this.#isPaused) {
      this.#waiting.push(news);
      find('pause').textContent = 'Resume (more has come)';
      return;
    }
    if (news.whole) {
      // The server sends the last ones; those before are what they were.
      this.#forget((number) => number >= (news.operations[0]?.number ?? 0));
      this.#lastDrawn = null;
    }
    for (const { number, name, events } of news.operations) {
      const known = this.#operations.get(number)?.events ?? [];
      const last = known.at(-1)?.number ?? 0;
      this.#operations.set(number, { number, name, events: [...known, ...events.filter((event) => event.number > last)] });
    }
    this.#plan();
  }

  /** The server keeps no operation before that one; 0 is none at all. */
  forgetBefore(oldest) {
    if (!this.#isPaused) this.#forget((number) => oldest === 0 || number < oldest);
  }

  #forget(isGone) {
    for (const number of [...this.#operations.keys()]) if (isGone(number)) this.#operations.delete(number);
    this.#plan();
  }

  #pause(button) {
    this.#isPaused = !this.#isPaused;
    button.ariaPressed = this.#isPaused;
    button.textContent = this.#isPaused ? 'Resume' : 'Pause';
    if (!this.#isPaused) this.#waiting.splice(0).forEach((news) => this.add(news));
  }

  #plan() {
    if (this.#isPlanned) return;
    this.#isPlanned = true;
    requestAnimationFrame(() => {
      this.#isPlanned = false;
      this.#draw();
      this.onDraw();
    });
  }

  #shown() {
    const all = this.operations();
    return all.find((operation) => operation.number === this.#chosen) ?? all.at(-1) ?? null;
  }

  #stepsShown(operation) {
    const word = find('filter').value.trim().toLowerCase();
    const sorts = [...find('kinds').querySelectorAll('[value]:checked')].map((box) => box.value);
    return stepsOf(operation.events)
      .filter((step) => sorts.includes(step.sort ?? 'calls'))
      .filter((step) => sentenceOf(step).toLowerCase().includes(word));
  }

  #draw() {
    const operation = this.#shown();
    find('no-timeline').hidden = operation !== null;
    find('diagram').hidden = operation === null;
    for (const id of ['export-svg', 'export-text']) find(id).disabled = operation === null;
    this.#drawList(operation);
    this.#explain(operation);
    const place = find('diagram');
    if (!operation || place.clientWidth === 0) return;
    const all = this.#stepsShown(operation);
    const steps = all.slice(-mostSteps);
    const isSame = this.#lastDrawn?.operation === operation.number;
    const isAtEnd = place.scrollTop + place.clientHeight >= place.scrollHeight - 40;
    const picture = drawn(steps, place.clientWidth, isSame ? this.#lastDrawn.event : Infinity, find('scaled').checked);
    place.replaceChildren(headsOf(picture), picture);
    if (all.length > steps.length) {
      place.prepend(element('p', { class: 'hint' }, `${all.length - steps.length} earlier steps are not drawn.`));
    }
    if (steps.length === 0) place.append(element('p', { class: 'hint' }, 'No step fits the filter.'));
    find('steps').replaceChildren(...steps.map((step) => element('li', {}, sentenceOf(step))));
    if (!isSame) place.scrollTop = 0;
    else if (isAtEnd) place.scrollTop = place.scrollHeight;
    this.#lastDrawn = { operation: operation.number, event: operation.events.at(-1).number };
  }

  #drawList(shown) {
    const rows = this.operations().reverse().map((operation) => ({
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

  #explain(operation) {
    const { tone, sentences, row } = operation ? explained(operation) : { tone: 'none', sentences: [], row: null };
    const text = sentences.join(' ') || (operation ? 'Nothing but what is in the timeline.' : 'Nothing yet. Sign a guest in to begin.');
    find('happened').dataset.tone = tone;
    find('happened-title').textContent = operation ? `${operation.number} ${operation.name}` : 'What happened';
    // Said once only.
    if (find('happened-text').textContent !== text) find('happened-text').textContent = text;
    find('happened-link').hidden = operation === null;
    find('happened-link').href = `#timeline/${operation?.number}`;
    find('happened-manual').hidden = row === null;
    if (row) Object.assign(find('happened-manual'), { href: manual(row), textContent: `Manual: “${row}”` });
  }

  #export(extension, type, written) {
    const operation = this.#shown();
    const name = `paylevenkit-${operation.number}-${operation.name.replaceAll(/\W+/g, '-')}.${extension}`;
    download(name, type, written(operation, this.#stepsShown(operation)));
  }
}
