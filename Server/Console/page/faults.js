// How to make calls fail, and how to bring the two sides apart.
import { Problem, request } from './connection.js';
import { act, element, find, options, replaceItems } from './dom.js';

const scenarios = {
  'instrument-without-card': 'The provider has an instrument that the backend does not know.',
  'card-without-instrument': 'The provider has lost the instrument of the newest card.',
  'half-deleted': 'The newest card is gone at the backend, and not at the provider.',
  'same-card-twice': 'The provider has the newest card a second time.',
  'lost-token': "The backend has forgotten the guest's token.",
};

function described(fault) {
  const parts = [`${fault.operation}: ${fault.kind}`];
  if (fault.kind === 'error') parts.push(`code ${fault.code}`);
  if (fault.status) parts.push(`status ${fault.status}`);
  parts.push(...Object.entries(fault.headers ?? {}).map(([name, value]) => `${name}: ${value}`));
  if (fault.kind === 'cut') parts.push(`after ${fault.bytes} bytes`);
  if (fault.kind === 'slow') parts.push(`${fault.bytes_per_second} bytes a second`);
  if (fault.delay_ms || fault.spread_ms) parts.push(`${fault.delay_ms} ms${fault.spread_ms ? ` ± ${fault.spread_ms} ${fault.distribution}` : ''}`);
  if (fault.use_case) parts.push(`use case ${fault.use_case}`);
  if (fault.probability < 100) parts.push(`${fault.probability} in 100`);
  parts.push(fault.times === null ? 'always' : fault.times === 1 ? 'once' : `${fault.times} times`);
  return parts.join(', ');
}

/** "Retry-After: 3", one header a line. */
function headersIn(text) {
  const lines = text.split('\n').map((line) => line.split(':')).filter(([name]) => name.trim());
  return Object.fromEntries(lines.map(([name, ...value]) => [name.trim(), value.join(':').trim()]));
}

const arm = ({ number, ...fault }) => request('POST', 'v1/sandbox/faults', fault);

export class FaultsPanel {
  #operations;
  #stored = null;
  #shown = null;
  /** The number of the fault that the form changes; null arms a new one. */
  #edited = null;

  constructor(choices) {
    this.#operations = choices.operations;
    const form = find('fault-form');
    form.elements.operation.append(...options(choices.operations.map(({ name }) => name)));
    form.elements.use_case.append(...options(choices.use_cases));
    find('scenarios').replaceChildren(...choices.scenarios.map((name) => element('li', {},
      element('button', { type: 'button', onclick: (event) => this.#bringApart(event.currentTarget, name) }, name.replaceAll('-', ' ')),
      element('span', { class: 'hint' }, scenarios[name] ?? ''))));
    form.addEventListener('change', () => this.#showWhatIsNeeded());
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      this.#send(event.submitter);
    });
    find('fault-cancel').addEventListener('click', () => this.#edit(null));
    find('clear-faults').addEventListener('click', ({ currentTarget }) => this.#disarm(currentTarget, this.#stored.faults));
    this.#showWhatIsNeeded();
  }

  show(stored) {
    this.#stored = stored;
    const now = JSON.stringify(stored.faults);
    if (now === this.#shown) return;
    this.#shown = now;
    const { faults } = stored;
    find('no-faults').hidden = faults.length > 0;
    find('clear-faults').hidden = faults.length < 2;
    replaceItems(find('faults'), faults.map((fault) => element('li', {},
      element('span', { class: 'grow' }, described(fault)),
      element('button', { type: 'button', class: 'quiet', 'data-key': `edit ${fault.number}`, 'aria-label': `Edit ${described(fault)}`, onclick: () => this.#edit(fault) }, 'Edit'),
      element('button', { type: 'button', class: 'quiet', 'data-key': `remove ${fault.number}`, 'aria-label': `Remove ${described(fault)}`, onclick: (event) => this.#disarm(event.currentTarget, [fault]) }, 'Remove'))),
    find('arm'));
    if (!faults.some((fault) => fault.number === this.#edited)) this.#edit(null);
  }

  #showWhatIsNeeded() {
    const form = find('fault-form');
    const { operation, often, kind, use_case: useCase } = form.elements;
    const chosen = this.#operations.find(({ name }) => name === operation.value);
    const before = kind.value;
    kind.replaceChildren(...options(chosen.kinds));
    if (chosen.kinds.includes(before)) kind.value = before;
    // What is not asked for may be empty.
    for (const label of form.querySelectorAll('[data-for]')) {
      const isAsked = label.dataset.for === 'n' ? often.value === 'n' : label.dataset.for === kind.value;
      label.hidden = !isAsked;
      label.querySelector('input, textarea').disabled = !isAsked;
    }
    useCase.disabled = !chosen.has_use_case;
    if (!chosen.has_use_case) useCase.value = '';
  }

  #edit(fault) {
    const form = find('fault-form');
    if (!fault && this.#edited === null) return;
    this.#edited = fault?.number ?? null;
    find('arm').textContent = fault ? 'Save' : 'Arm';
    find('fault-cancel').hidden = !fault;
    form.reset();
    for (const [name, value] of Object.entries(fault ?? {})) {
      const field = form.elements[name];
      if (name === 'kind' || name === 'headers' || !field || value === null) continue;
      field.value = value;
    }
    if (fault) {
      form.elements.headers.value = Object.entries(fault.headers ?? {}).map((pair) => pair.join(': ')).join('\n');
      form.elements.often.value = fault.times === null ? 'always' : fault.times === 1 ? '1' : 'n';
      this.#showWhatIsNeeded();
      form.elements.kind.value = fault.kind;
    }
    this.#showWhatIsNeeded();
    if (fault) form.elements.operation.focus();
  }

  #fault() {
    const { operation, kind, often, times, probability, delay_ms, spread_ms, distribution, code, status, headers, bytes, bytes_per_second, use_case } = find('fault-form').elements;
    const numberIn = (field) => (field.disabled || field.value === '' ? null : field.valueAsNumber);
    return {
      operation: operation.value,
      kind: kind.value,
      times: { 1: 1, n: times.valueAsNumber, always: null }[often.value],
      probability: probability.valueAsNumber,
      delay_ms: delay_ms.valueAsNumber,
      spread_ms: spread_ms.valueAsNumber,
      distribution: distribution.value,
      code: code.disabled ? 500 : code.valueAsNumber,
      status: numberIn(status),
      headers: headers.disabled ? {} : headersIn(headers.value),
      bytes: numberIn(bytes),
      bytes_per_second: numberIn(bytes_per_second),
      use_case: use_case.value || null,
    };
  }

  async #send(button) {
    const number = this.#edited;
    const fault = this.#fault();
    const isDone = await act(button, find('fault-outcome'),
      () => (number ? request('PATCH', `v1/sandbox/faults/${number}`, fault) : arm(fault)),
      () => `${number ? 'Changed' : 'Armed'} ${described(fault)}.`);
    if (isDone && number) this.#edit(null);
  }

  #disarm(button, faults) {
    const one = faults.length === 1 && this.#stored.faults.length > 1;
    act(button, find('fault-outcome'), () => request('DELETE', one ? `v1/sandbox/faults/${faults[0].number}` : 'v1/sandbox/faults'),
      () => ({
        text: faults.length === 1 ? `Removed ${described(faults[0])}.` : `Removed ${faults.length} faults.`,
        undo: { label: 'Undo', run: () => Promise.all(faults.map(arm)), done: 'Armed again.' },
      }));
  }

  #bringApart(button, name) {
    act(button, find('scenario-outcome'),
      async () => {
        if (!this.#stored?.guest) throw new Problem('Nobody is signed in.');
        await request('POST', 'v1/sandbox/scenarios', { name, guest: this.#stored.guest.email });
      },
      () => `Done: ${name.replaceAll('-', ' ')}. See the stored data.`);
  }
}
