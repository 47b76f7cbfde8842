// What each side has stored of the guest.
import { digits, expiry } from './cards.js';
import { element, find } from './dom.js';

function side(one, identifier) {
  const state = one.state ? ` · state ${one.state}` : '';
  return element('div', { class: 'side' },
    element('b', {}, one.brand, ' ', element('span', { class: 'digits' }, `•••• ${digits(one)}`)),
    element('div', {}, `${expiry(one)} · ${one.use_case}${state}`),
    element('div', { class: 'identifier' }, identifier ?? 'no identifier'));
}

const missing = (sentence) => element('div', { class: 'side missing' }, sentence);

function pairRow({ card, instrument }) {
  const isDrift = !card || !instrument;
  const said = isDrift ? (card ? 'Drift: the provider has no' : 'Drift: the backend does not know') : 'Matched:';
  return element('li', { class: isDrift ? 'pair drift' : 'pair' },
    element('span', { class: 'visually-hidden' }, said),
    card ? side(card, card.id) : missing('not at the backend'),
    element('div', { class: 'join', 'aria-hidden': 'true' }),
    instrument ? side(instrument, instrument.identifier) : missing('not at the provider'));
}

export function showStored(stored) {
  const drift = stored.pairs.filter((pair) => !pair.card || !pair.instrument).length;
  const sentences = [];
  if (drift > 0) sentences.push(`${drift} ${drift === 1 ? 'does' : 'do'} not match.`);
  if (stored.guest?.has_token === false && stored.pairs.length > 0) sentences.push('The backend has no token of the guest.');
  const sentence = sentences.join(' ') || (stored.guest ? 'Both sides agree.' : 'Nobody is signed in.');
  for (const verdict of [find('verdict'), find('verdict-above')]) {
    verdict.dataset.kind = sentences.length > 0 ? 'drift' : stored.guest ? 'good' : 'none';
    if (verdict.textContent !== sentence) verdict.textContent = sentence;
  }
  find('pairs').replaceChildren(...stored.pairs.map(pairRow));
  find('sides').hidden = stored.pairs.length === 0;
  find('no-pairs').hidden = stored.pairs.length > 0;
  find('no-pairs').textContent = stored.guest
    ? 'Neither side has stored anything of this guest.'
    : "Here is what the backend and the provider store of the app's guest.";
}
