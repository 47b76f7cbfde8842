// What each side has stored of the guest.
import { digits, expiry } from './cards.js';
import { element, find, say } from './dom.js';

function side(one, identifier) {
  const state = one.state ? ` · state ${one.state}` : '';
  return element('div', { class: 'side' },
    element('b', {}, `${one.brand} ••••\u00a0${digits(one)}`),
    element('div', {}, `${expiry(one)} · ${one.use_case}${state}`),
    element('div', { class: 'hint mono' }, identifier ?? 'no identifier'));
}

function pairRow({ card, instrument }) {
  const missing = (where) => element('div', { class: 'side missing' }, `not at the ${where}`);
  const isDrift = !card || !instrument;
  const said = isDrift ? (card ? 'Drift: the provider has no' : 'Drift: the backend does not know') : 'Matched:';
  return element('li', { class: 'pair', 'data-tone': isDrift ? 'drift' : 'good' },
    element('span', { class: 'visually-hidden' }, said),
    card ? side(card, card.id) : missing('backend'),
    element('div', { class: 'join', 'aria-hidden': 'true' }),
    instrument ? side(instrument, instrument.identifier) : missing('provider'));
}

export function showStored({ guest, pairs }) {
  const drift = pairs.filter(({ card, instrument }) => !card || !instrument).length;
  const sentences = [];
  if (drift > 0) sentences.push(`${drift} ${drift === 1 ? 'does' : 'do'} not match.`);
  if (guest?.has_token === false && pairs.length > 0) sentences.push('The backend has no token of the guest.');
  const sentence = sentences.join(' ') || (guest ? 'Both sides agree.' : 'Nobody is signed in.');
  find('verdict').dataset.tone = sentences.length > 0 ? 'drift' : guest ? 'good' : 'none';
  say('verdict', sentence);
  find('pairs').replaceChildren(...pairs.map(pairRow));
  find('no-pairs').textContent = guest
    ? 'Neither side has stored anything of this guest.'
    : "Here is what the backend and the provider store of the app's guest.";
}
