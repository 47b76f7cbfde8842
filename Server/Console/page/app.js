// What a guest does in the app.
import { addressFields, addressLine, expiry, nameOf } from './cards.js';
import { request } from './connection.js';
import { act, element, find, onClick, onSubmit, options, quiet, showList, valuesOf } from './dom.js';

const typedCard = 'typed';
const noReply = 'The kit has not called the completion: the timeline shows what it waits for.';
const pathOf = (id) => `app/cards/${encodeURIComponent(id)}`;
const signIn = (email) => request('PUT', 'app/guest', { email });
const form = find('card-form').elements;
let stored = null;

/** Shows the guest, the network switch and the guest's cards. */
export function showApp(news) {
  stored = news;
  const { guest, network, pairs } = news;
  find('email').readOnly = guest !== null;
  if (guest) find('email').value = guest.email;
  find('sign').textContent = guest ? 'Sign out' : 'Sign in';
  // What is being switched is not switched back by what was stored before.
  if (find('network').ariaBusy !== 'true') find('network').checked = network;
  showList(find('cards'), pairs.map(({ card }) => card).filter(Boolean), cardRow, find('add'));
}

function cardRow(card) {
  const name = nameOf(card);
  return element('li', { class: 'card' },
    element('div', { class: 'grow' },
      element('b', {}, name), ` ${expiry(card)} · ${card.use_case}`,
      element('div', { class: 'hint' }, `${card.card_holder}, ${addressLine(card.billing_address) || 'no billing address'}`)),
    quiet('Update address', `Update address of ${name}`, `update ${card.id}`, () => askForAddress(card)),
    quiet('Delete', `Delete ${name}`, `delete ${card.id}`, (button) =>
      act(button, () => request('DELETE', pathOf(card.id)), ({ answers }) => (answers ? `Deleted ${name}.` : noReply))));
}

function askForAddress(card) {
  const dialog = find('address-dialog');
  find('address-title').textContent = `Billing address of ${nameOf(card)}`;
  for (const field of dialog.querySelectorAll('input')) field.value = card.billing_address[field.name] ?? '';
  dialog.dataset.id = card.id;
  dialog.showModal();
}

function newCard() {
  const body = { use_case: form.use_case.value, billing_address: valuesOf(find('new-address')) };
  if (form.card.value !== typedCard) return { ...body, test_card: form.card.value };
  const typed = [...find('typed').querySelectorAll('input')].map(({ name, value }) => [name, value]);
  // What a person typed of a card does not stay on the page.
  for (const name of ['number', 'security_code']) form[name].value = '';
  return { ...body, credit_card: Object.fromEntries(typed) };
}

export function startApp({ test_cards: testCards, use_cases: useCases }) {
  const explainCard = () => {
    const card = testCards.find(({ name }) => name === form.card.value);
    find('typed').hidden = Boolean(card);
    find('effect').textContent = card?.effect ?? 'Typed here, it goes to the kit and nowhere else.';
  };
  form.card.append(...testCards.map((card) =>
    element('option', { value: card.name }, card.name === card.brand ? nameOf(card) : `${card.name} (${nameOf(card)})`)),
  element('option', { value: typedCard }, 'type one…'));
  form.use_case.append(...options(useCases));
  for (const id of ['new-address', 'changed-address']) {
    find(id).append(...addressFields.map(([name, label]) => element('label', {}, label, element('input', { name, maxlength: 100, autocomplete: 'off' }))));
  }
  explainCard();
  find('card-form').addEventListener('change', explainCard);
  onSubmit('guest-form', (button) => {
    const email = find('email').value;
    if (!stored?.guest) act(button, () => signIn(email), () => 'Signed in.');
    else act(button, () => request('DELETE', 'app/guest'), () => ({ text: 'Signed out.', undo: { run: () => signIn(email), done: 'Signed in again.' } }));
  });
  find('network').addEventListener('change', async ({ target }) => {
    const on = target.checked;
    const isDone = await act(target, () => request('PUT', 'app/network', { on }), () => `The network is ${on ? 'on' : 'off'}.`);
    if (!isDone && stored) target.checked = stored.network;
  });
  onClick('foreground', (button) => act(button, () => request('POST', 'app/foreground'), () => 'The app came to the foreground.'));
  onSubmit('card-form', (button) => {
    const body = newCard();
    act(button, () => request('POST', 'app/cards', body), (outcome) => {
      if (outcome.credit_card) return `Added ${nameOf(outcome.credit_card)}.`;
      return outcome.answers ? 'The kit reports no error, but no card came back.' : noReply;
    });
  });
  onSubmit('address-form', () => {
    find('address-dialog').close();
    act(find('cards'), () => request('PATCH', pathOf(find('address-dialog').dataset.id), valuesOf(find('changed-address'))),
      ({ answers }) => (answers ? 'The billing address is changed.' : noReply));
  });
}
