// The middle panel: every operation, drawn while it happens.
import { drawn, headsOf, sentenceOf, stepsOf } from './diagram.js';
import { element, find } from './dom.js';
import { download, plainText, svgText } from './export.js';

const mostSteps = 400;
const marks = { good: '✓', bad: '✕', waits: '…', none: '' };
const spoken = { good: 'succeeded', bad: 'failed', waits: 'not answered', none: '' };

function outcomeOf(operation) {
  const calls = operation.events.filter((event) => event.from === 'app' && event.to === 'kit' && /Instrument/.test(event.what));
  const answers = operation.events.filter((event) => event.from === 'kit' && event.to === 'app');
  const failed = operation.events.some((event) => (event.from === 'kit' && event.to === 'app' && event.result.startsWith('error')) ||
    (event.to === 'log' && event.what.startsWith('Failed to')));
  if (failed) return 'bad';
  if (calls.length > answers.length) return 'waits';
  const synchronised = operation.events.some((event) => event.to === 'log' && event.what.startsWith('Successfully synchronized'));
  return answers.length || synchronised ? 'good' : 'none';
}

export class StoryPanel {
  #operations = new Map();
  /** The operation that is looked at; null follows the latest. */
  #chosen = null;
  #isPaused = false;
  #waiting = [];
  #lastDrawn = null;
  #isPlanned = false;

  constructor() {
    find('pause').addEventListener('click', () => this.#pause());
    find('filter').addEventListener('input', () => this.#plan());
    find('kinds').addEventListener('change', () => this.#plan());
    find('export-text').addEventListener('click', () => this.#export('txt', 'text/plain', plainText));
    find('export-svg').addEventListener('click', () => this.#export('svg', 'image/svg+xml', svgText));
    new ResizeObserver(() => this.#plan()).observe(find('diagram'));
    this.#showExports();
  }

  /** Takes what the server tells: all that is kept, or what is new. */
  add(news) {
    if (this.#isPaused) {
      this.#waiting.push(news);
      find('pause').textContent = 'Resume (more has come)';
      return;
    }
    if (news.whole) {
      this.#operations.clear();
      this.#lastDrawn = null;
    }
    for (const { number, name, events } of news.operations) {
      const known = this.#operations.get(number) ?? { number, name, events: [] };
      const last = known.events.at(-1)?.number ?? 0;
      known.events.push(...events.filter((event) => event.number > last));
      this.#operations.set(number, known);
    }
    this.#plan();
  }

  /** The server keeps no operation before that one; 0 is none at all. */
  forgetBefore(oldest) {
    if (this.#isPaused) return;
    for (const number of [...this.#operations.keys()]) {
      if (oldest === 0 || number < oldest) this.#operations.delete(number);
    }
    this.#plan();
  }

  #pause() {
    const button = find('pause');
    this.#isPaused = !this.#isPaused;
    button.setAttribute('aria-pressed', this.#isPaused);
    button.textContent = this.#isPaused ? 'Resume' : 'Pause';
    if (!this.#isPaused) this.#waiting.splice(0).forEach((news) => this.add(news));
  }

  #plan() {
    if (this.#isPlanned) return;
    this.#isPlanned = true;
    requestAnimationFrame(() => {
      this.#isPlanned = false;
      this.#draw();
    });
  }

  /** Operations in which something was told, oldest first. */
  #told() {
    return [...this.#operations.values()].filter((operation) => operation.events.length > 0);
  }

  #shown() {
    const told = this.#told();
    return told.find((operation) => operation.number === this.#chosen) ?? told.at(-1) ?? null;
  }

  #stepsShown(operation) {
    const word = find('filter').value.trim().toLowerCase();
    const sorts = [...find('kinds').querySelectorAll(':checked')].map((box) => box.value);
    return stepsOf(operation.events)
      .filter((step) => sorts.includes(step.sort ?? 'calls'))
      .filter((step) => sentenceOf(step).toLowerCase().includes(word));
  }

  #draw() {
    const operation = this.#shown();
    find('no-story').hidden = operation !== null;
    find('diagram').hidden = operation === null;
    this.#showExports();
    this.#drawList(operation);
    if (!operation) return;
    const all = this.#stepsShown(operation);
    const steps = all.slice(-mostSteps);
    const place = find('diagram');
    const isSame = this.#lastDrawn?.operation === operation.number;
    const isAtEnd = place.scrollTop + place.clientHeight >= place.scrollHeight - 40;
    const picture = drawn(steps, place.clientWidth, isSame ? this.#lastDrawn.event : Infinity);
    place.replaceChildren(headsOf(picture), picture);
    if (all.length > steps.length) {
      place.prepend(element('p', { class: 'hint' }, `${all.length - steps.length} earlier steps are not drawn.`));
    }
    if (steps.length === 0) place.append(element('p', { class: 'hint' }, 'No step fits the filter.'));
    find('steps').replaceChildren(...steps.map((step) => element('li', {}, sentenceOf(step))));
    if (isSame && isAtEnd) place.scrollTop = place.scrollHeight;
    this.#lastDrawn = { operation: operation.number, event: operation.events.at(-1).number };
  }

  #drawList(shown) {
    const list = find('operations');
    const focused = document.activeElement?.closest('#operations button')?.dataset.number;
    const latest = this.#told().at(-1)?.number;
    list.replaceChildren(...this.#told().reverse().map((operation) => {
      const outcome = outcomeOf(operation);
      return element('li', {}, element('button', {
        type: 'button',
        'data-number': operation.number,
        'data-outcome': outcome,
        'aria-current': operation === shown ? 'true' : null,
        onclick: () => {
          this.#chosen = operation.number === latest ? null : operation.number;
          this.#plan();
        },
      },
      element('span', { class: 'number' }, String(operation.number)),
      operation.name,
      element('span', { class: 'mark', 'aria-hidden': 'true' }, marks[outcome]),
      element('span', { class: 'visually-hidden' }, ` ${spoken[outcome]}`)));
    }));
    if (focused) list.querySelector(`[data-number="${focused}"]`)?.focus();
  }

  #showExports() {
    const isEmpty = this.#shown() === null;
    for (const id of ['export-svg', 'export-text']) find(id).disabled = isEmpty;
  }

  #export(extension, type, written) {
    const operation = this.#shown();
    const name = `paylevenkit-${operation.number}-${operation.name.replaceAll(' ', '-')}.${extension}`;
    download(name, type, written(operation, this.#stepsShown(operation)));
  }
}
