// The right panel: what each side holds, and how to bring them apart.
import { digits, expiry } from './cards.js';
import { Problem, request } from './connection.js';
import { element, find } from './dom.js';

const sceneTexts = {
  'instrument-without-card': 'The provider holds an instrument that the backend does not know.',
  'card-without-instrument': 'The provider has lost the instrument of the newest card.',
  'half-deleted': 'The newest card is gone at the backend, and not at the provider.',
  'same-card-twice': 'The provider holds the newest card a second time.',
  'lost-token': "The backend has forgotten the guest's token.",
};

function side(one, identifier) {
  const state = one.state ? ` · state ${one.state}` : '';
  return element('div', { class: 'side' },
    element('b', {}, one.brand),
    element('span', { class: 'digits' }, `•••• ${digits(one)}`),
    element('div', {}, `${expiry(one)} · ${one.use_case}${state}`),
    element('div', { class: 'identifier' }, identifier ?? 'no identifier'));
}

function missing(sentence) {
  return element('div', { class: 'side missing' }, sentence);
}

function pairRow({ card, instrument }) {
  const isDrift = !card || !instrument;
  const said = isDrift ? (card ? 'Drift: no instrument stands for' : 'Drift: the backend does not know') : 'Matched:';
  return element('li', { class: isDrift ? 'pair drift' : 'pair' },
    element('span', { class: 'visually-hidden' }, said),
    card ? side(card, card.id) : missing('not at the backend'),
    element('div', { class: 'join', 'aria-hidden': 'true' }),
    instrument ? side(instrument, instrument.identifier) : missing('not at the provider'));
}

function faultLine(fault) {
  const parts = [`${fault.operation}: ${fault.kind}`];
  if (fault.kind === 'error') parts.push(`code ${fault.code}`);
  if (fault.kind === 'cut') parts.push(`after ${fault.bytes} bytes`);
  if (fault.kind === 'slow') parts.push(`${fault.bytes_per_second} bytes a second`);
  if (fault.delay_ms || fault.spread_ms) parts.push(`${fault.delay_ms}${fault.spread_ms ? `–${fault.delay_ms + fault.spread_ms}` : ''} ms`);
  if (fault.use_case) parts.push(`use case ${fault.use_case}`);
  if (fault.probability < 100) parts.push(`${fault.probability} in 100`);
  parts.push(fault.times === null ? 'always' : fault.times === 1 ? 'once' : `${fault.times} times`);
  return element('li', {}, parts.join(', '));
}

export class TruthPanel {
  constructor(choices) {
    const form = find('fault-form').elements;
    const options = (names) => names.map((name) => element('option', { value: name }, name));
    form.operation.append(...options(choices.operations));
    form.kind.append(...options(choices.kinds));
    form.use_case.append(...options(choices.use_cases));
    find('scenes').replaceChildren(...choices.scenes.map((name) =>
      element('button', { type: 'button', 'data-scene': name, onclick: () => this.#try(() => request('POST', 'scenes', { name })) },
        name.replaceAll('-', ' '), element('small', {}, sceneTexts[name] ?? ''))));
    this.#listen();
  }

  show(truth) {
    const drift = truth.pairs.filter((pair) => !pair.card || !pair.instrument).length;
    const sentences = [];
    if (drift > 0) sentences.push(`${drift} ${drift === 1 ? 'does' : 'do'} not match.`);
    if (truth.guest?.has_token === false && truth.pairs.length > 0) sentences.push('The backend has no token of the guest.');
    const verdict = find('verdict');
    const sentence = sentences.join(' ') || (truth.guest ? 'Both sides agree.' : '');
    verdict.dataset.kind = sentences.length === 0 ? 'good' : 'drift';
    if (verdict.textContent !== sentence) verdict.textContent = sentence;
    find('pairs').replaceChildren(...truth.pairs.map(pairRow));
    find('no-pairs').hidden = truth.pairs.length > 0;
    find('no-pairs').textContent = truth.guest ? 'Neither side holds anything of this guest.' : 'Nobody is signed in.';
    find('faults').replaceChildren(...truth.faults.map(faultLine));
    find('no-faults').hidden = truth.faults.length > 0;
  }

  #listen() {
    const form = find('fault-form');
    form.addEventListener('change', () => this.#showWhatIsNeeded());
    this.#showWhatIsNeeded();
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      this.#try(() => request('POST', 'faults', this.#fault()));
    });
    find('clear-faults').addEventListener('click', () => this.#try(() => request('DELETE', 'faults')));
    find('reset').addEventListener('click', () => {
      if (confirm('Forget guests, cards, instruments, faults and the story?')) this.#try(() => request('POST', 'reset'));
    });
  }

  #showWhatIsNeeded() {
    const form = find('fault-form');
    const { often, kind } = form.elements;
    // What is not asked for may be empty.
    const ask = (what, isAsked) => {
      const label = form.querySelector(`[data-for="${what}"]`);
      label.hidden = !isAsked;
      label.querySelector('input').disabled = !isAsked;
    };
    ask('n', often.value === 'n');
    for (const name of ['error', 'cut', 'slow']) ask(name, kind.value === name);
  }

  #fault() {
    const { operation, kind, often, times, probability, delay_ms, spread_ms, code, bytes, bytes_per_second, use_case } = find('fault-form').elements;
    return {
      operation: operation.value,
      kind: kind.value,
      times: { 1: 1, n: times.valueAsNumber, always: null }[often.value],
      probability: probability.valueAsNumber,
      delay_ms: delay_ms.valueAsNumber,
      spread_ms: spread_ms.valueAsNumber,
      code: code.valueAsNumber,
      bytes: bytes.disabled ? null : bytes.valueAsNumber,
      bytes_per_second: bytes_per_second.disabled ? null : bytes_per_second.valueAsNumber,
      use_case: use_case.value || null,
    };
  }

  async #try(what) {
    const place = find('fault-problem');
    place.textContent = '';
    try {
      await what();
    } catch (problem) {
      if (!(problem instanceof Problem)) throw problem;
      place.textContent = problem.message;
    }
  }
}
