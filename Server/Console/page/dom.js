// Elements without markup, as nothing that the server sends is ever read as HTML; and actions.
import { Problem } from './connection.js';

export const find = (id) => document.getElementById(id);

/** An element; names that begin with "on" are listeners, and null children are left out. */
export function element(name, attributes = {}, ...children) {
  return filled(document.createElement(name), attributes, children);
}

export function svg(name, attributes = {}, ...children) {
  return filled(document.createElementNS('http://www.w3.org/2000/svg', name), attributes, children);
}

function filled(made, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) made.addEventListener(name.slice(2), value);
    else if (value === true) made.setAttribute(name, '');
    else if (value !== false && value !== null) made.setAttribute(name, value);
  }
  made.append(...children.filter((child) => child !== null));
  return made;
}

export const options = (names) => names.map((name) => element('option', { value: name }, name));

/** Replaces a list's items; the focus stays on what has the same `data-key`, or goes to `otherwise`. */
export function replaceItems(list, items, otherwise) {
  const key = list.contains(document.activeElement) ? document.activeElement.dataset.key : null;
  list.replaceChildren(...items);
  if (key) ([...list.querySelectorAll('[data-key]')].find((each) => each.dataset.key === key) ?? otherwise)?.focus();
}

/** The small buttons of a row; `key` keeps the focus where the row is made anew. */
export const quiet = (text, label, key, onclick) =>
  element('button', { type: 'button', class: 'quiet', 'aria-label': label, 'data-key': key, onclick }, text);

/** What a form, or a part of one, asks for now: null for what is empty. */
export function valuesOf(place) {
  const fields = [...place.querySelectorAll('[name]:enabled')];
  return Object.fromEntries(fields.map((field) => [field.name,
    field.type === 'checkbox' ? field.checked : field.value === '' ? null : field.type === 'number' ? field.valueAsNumber : field.value]));
}

export function onSubmit(id, run) {
  find(id).addEventListener('submit', (event) => {
    event.preventDefault();
    run(event.submitter);
  });
}

export const onClick = (id, run) => find(id).addEventListener('click', ({ currentTarget }) => run(currentTarget));

/** Where what is asked for says how it came out. */
for (const place of document.querySelectorAll('.acts')) place.append(element('p', { class: 'outcome', role: 'status' }));

function say(place, tone, sentence, undo) {
  place.dataset.tone = tone;
  place.replaceChildren(sentence);
  if (undo) place.append(' ', quiet('Undo', null, null, (event) => act(event.currentTarget, undo.run, () => undo.done)));
  if (sentence) place.scrollIntoView({ block: 'nearest' });
}

/**
 * Runs one action and says beside `button` how it came out. `done` makes the sentence of the result,
 * or `{ text, undo: { run, done } }`. Returns whether it was done.
 */
export async function act(button, what, done) {
  if (button.ariaBusy === 'true') return false;
  button.ariaBusy = 'true';
  const place = button.closest('.acts').querySelector('.outcome');
  for (const outcome of document.querySelectorAll('.outcome')) outcome.replaceChildren();
  try {
    const result = await what();
    const { failure } = result ?? {};
    const said = failure ? `${failure.message} (${failure.domain} ${failure.number})` : done(result);
    say(place, failure ? 'bad' : 'good', said.text ?? said, said.undo);
    return true;
  } catch (problem) {
    if (!(problem instanceof Problem)) throw problem;
    say(place, 'bad', problem.message);
    return false;
  } finally {
    button.ariaBusy = 'false';
  }
}
