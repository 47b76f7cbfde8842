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

function say(place, kind, sentence, undo) {
  place.dataset.kind = kind;
  place.replaceChildren(sentence, ...(undo ? [' ', element('button', {
    type: 'button', class: 'quiet', onclick: (event) => act(event.currentTarget, place, undo.run, () => undo.done),
  }, undo.label)] : []));
  if (sentence) place.scrollIntoView({ block: 'nearest' });
}

/**
 * Runs one action and says in `place`, which is beside the button, how it came out. `done` makes
 * the sentence of the result, or `{ text, undo: { label, run, done } }`. Returns whether it was done.
 */
export async function act(button, place, what, done) {
  if (button.ariaBusy === 'true') return false;
  button.ariaBusy = 'true';
  for (const outcome of document.querySelectorAll('.outcome')) outcome.replaceChildren();
  try {
    const result = await what();
    const said = result?.failure
      ? `${result.failure.message} (${result.failure.domain} ${result.failure.number})`
      : done(result);
    say(place, result?.failure ? 'bad' : 'good', said.text ?? said, said.undo);
    return true;
  } catch (problem) {
    if (!(problem instanceof Problem)) throw problem;
    say(place, 'bad', problem.message);
    return false;
  } finally {
    button.ariaBusy = 'false';
  }
}
