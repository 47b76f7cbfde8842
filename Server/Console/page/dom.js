// Elements without markup, as nothing that the server sends is ever read as HTML; and actions.
import { Problem } from './connection.js';

export const find = (id) => document.getElementById(id);

const made = (namespace) => (name, attributes = {}, ...children) => {
  const element = document.createElementNS(namespace, name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key === 'onclick') element.onclick = value;
    else if (value !== null) element.setAttribute(key, value);
  }
  element.append(...children);
  return element;
};
/** Attributes that are null are left out. */
export const element = made('http://www.w3.org/1999/xhtml');
export const svg = made('http://www.w3.org/2000/svg');

/** A live region says the same text once only. */
export function say(id, text) {
  if (find(id).textContent !== text) find(id).textContent = text;
}

export const options = (names) => names.map((name) => element('option', { value: name }, name));

const shown = new WeakMap();

/**
 * Makes a list's items anew where its records have changed; the focus stays on what has the same
 * `data-key`, or goes to `otherwise`.
 */
export function showList(list, records, row, otherwise) {
  const now = JSON.stringify(records);
  if (shown.get(list) === now) return;
  shown.set(list, now);
  const key = list.contains(document.activeElement) ? document.activeElement.dataset.key : null;
  list.replaceChildren(...records.map((record) => row(record)));
  if (key) ([...list.querySelectorAll('[data-key]')].find((each) => each.dataset.key === key) ?? otherwise)?.focus({ preventScroll: true });
}

/** The small buttons of a row; `key` keeps the focus where the row is made anew. */
export const quiet = (text, label, key, run) =>
  element('button', { type: 'button', class: 'quiet', 'aria-label': label, 'data-key': key, onclick: ({ currentTarget }) => run(currentTarget) }, text);

/** What was filled in or chosen in a form, or a part of one. */
export function valuesOf(place) {
  const fields = [...place.querySelectorAll('[name]:enabled')].filter((field) => field.value !== '');
  return Object.fromEntries(fields.map((field) => [field.name,
    field.type === 'checkbox' ? field.checked : field.type === 'number' ? field.valueAsNumber : field.value]));
}

export function onSubmit(id, run) {
  find(id).addEventListener('submit', (event) => {
    event.preventDefault();
    run(event.submitter);
  });
}

export const onClick = (id, run) => find(id).addEventListener('click', ({ currentTarget }) => run(currentTarget));

/** Where what is asked for says how it came out. */
for (const place of document.querySelectorAll('.acts')) place.append(element('p', { class: 'outcome', role: 'status', tabindex: -1 }));

/**
 * Runs one action and says beside `button` how it came out. `done` makes the sentence of the result,
 * or `{ text, undo: { run, done } }`. Returns whether it was done.
 */
export async function act(button, what, done) {
  if (button.ariaBusy === 'true') return false;
  button.ariaBusy = 'true';
  const place = button.closest('.acts').querySelector('.outcome');
  const show = (tone, ...parts) => {
    place.dataset.tone = tone;
    place.replaceChildren(...parts);
  };
  // What undoes goes away.
  if (place.contains(button)) place.focus();
  for (const outcome of document.querySelectorAll('.outcome')) outcome.replaceChildren();
  try {
    const result = await what();
    const { failure } = result ?? {};
    const said = failure ? `${failure.message} (${failure.domain} ${failure.number})` : done(result);
    const { undo } = said;
    show(failure ? 'bad' : 'good', said.text ?? said,
      ...(undo ? [' ', quiet('Undo', null, null, (undoing) => act(undoing, undo.run, () => undo.done))] : []));
    return true;
  } catch (problem) {
    if (!(problem instanceof Problem)) throw problem;
    show('bad', problem.message);
    return false;
  } finally {
    button.ariaBusy = 'false';
  }
}
