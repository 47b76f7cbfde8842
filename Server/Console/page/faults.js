// How to make calls fail, and how to bring the two sides apart.
import { Problem, request } from './connection.js';
import { act, element, find, onClick, onSubmit, options, quiet, showList, valuesOf } from './dom.js';

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

const headersText = (headers) => Object.entries(headers ?? {}).map((pair) => pair.join(': ')).join('\n');

/** What a fault has none of unless the form asks for it. */
const nothing = { times: null, status: null, bytes: null, bytes_per_second: null, use_case: null };

const form = find('fault-form');
const arm = ({ number, ...fault }) => request('POST', 'v1/sandbox/faults', fault);

let operations = [];
let stored = null;
/** The number of the fault that the form changes; null arms a new one. */
let edited = null;

/** The focus goes on from what is hidden. */
function show(id, isShown) {
  const hadFocus = find(id) === document.activeElement;
  find(id).hidden = !isShown;
  if (hadFocus && !isShown) find('arm').focus({ preventScroll: true });
}

export function showFaults(news) {
  stored = news;
  const { faults } = news;
  show('clear-faults', faults.length > 1);
  showList(find('faults'), faults, (fault) => element('li', {},
    element('span', { class: 'grow' }, described(fault)),
    quiet('Edit', `Edit ${described(fault)}`, `edit ${fault.number}`, () => edit(fault)),
    quiet('Remove', `Remove ${described(fault)}`, `remove ${fault.number}`, (button) => disarm(button, [fault]))), find('arm'));
  if (!faults.some(({ number }) => number === edited)) edit(null);
}

function showWhatIsNeeded() {
  const { operation, kind, use_case: useCase } = form.elements;
  const { kinds, has_use_case: hasUseCase } = operations.find(({ name }) => name === operation.value);
  const before = kind.value;
  kind.replaceChildren(...options(kinds));
  if (kinds.includes(before)) kind.value = before;
  for (const label of form.querySelectorAll('[data-for]')) {
    label.hidden = label.dataset.for !== kind.value;
    // What is not asked for may be empty.
    label.querySelector('input, textarea').disabled = label.hidden;
  }
  useCase.disabled = !hasUseCase;
}

function edit(fault) {
  if (!fault && edited === null) return;
  edited = fault?.number ?? null;
  find('arm').textContent = fault ? 'Save' : 'Arm';
  show('fault-cancel', Boolean(fault));
  form.reset();
  if (fault) form.elements.operation.value = fault.operation;
  // The kinds are those of the call.
  showWhatIsNeeded();
  for (const [name, value] of Object.entries(fault ?? {})) {
    if (form.elements[name]) form.elements[name].value = name === 'headers' ? headersText(value) : value ?? '';
  }
  showWhatIsNeeded();
  if (fault) form.elements.operation.focus();
}

async function send(button) {
  const number = edited;
  const fault = { ...nothing, ...valuesOf(form) };
  fault.headers = headersIn(fault.headers ?? '');
  const isDone = await act(button, () => (number ? request('PATCH', `v1/sandbox/faults/${number}`, fault) : arm(fault)),
    () => `${number ? 'Changed' : 'Armed'} ${described(fault)}.`);
  if (isDone && number) edit(null);
}

function disarm(button, faults) {
  const [{ number }, ...others] = faults;
  act(button, () => request('DELETE', others.length > 0 ? 'v1/sandbox/faults' : `v1/sandbox/faults/${number}`), () => ({
    text: faults.length === 1 ? `Removed ${described(faults[0])}.` : `Removed ${faults.length} faults.`,
    undo: { run: () => Promise.all(faults.map(arm)), done: 'Armed again.' },
  }));
}

function bringApart(button, name) {
  act(button, async () => {
    if (!stored?.guest) throw new Problem('Nobody is signed in.');
    await request('POST', 'v1/sandbox/scenarios', { name, guest: stored.guest.email });
  }, () => `Done: ${name.replaceAll('-', ' ')}. See the stored data.`);
}

export function startFaults(choices) {
  operations = choices.operations;
  form.elements.operation.append(...options(operations.map(({ name }) => name)));
  form.elements.use_case.append(...options(choices.use_cases));
  find('scenarios').append(...choices.scenarios.map((name) => element('li', {},
    element('button', { type: 'button', onclick: (event) => bringApart(event.currentTarget, name) }, name.replaceAll('-', ' ')),
    element('span', { class: 'hint' }, scenarios[name] ?? ''))));
  form.addEventListener('change', showWhatIsNeeded);
  onSubmit('fault-form', send);
  onClick('fault-cancel', () => edit(null));
  onClick('clear-faults', (button) => disarm(button, stored.faults));
  showWhatIsNeeded();
}
