// What a guest does in the app.
import { addressFields, addressLine, expiry, nameOf } from './cards.js';
import { request } from './connection.js';
import { act, element, find, onClick, onSubmit, options, quiet, showList, valuesOf } from './dom.js';

const typedCard = 'typed';
const noReply = 'The kit has not called the completion: the timeline shows what it waits for.';

function fillAddress(place) {
  place.replaceChildren(...addressFields.map(([name, label]) =>
    element('label', { class: name === 'street' || name === 'business_name' ? 'wide' : '' },
      label, element('input', { name, maxlength: 100, autocomplete: 'off' }))));
}

const pathOf = (id) => `app/cards/${encodeURIComponent(id)}`;
const signIn = (email) => request('PUT', 'app/guest', { email });

export class AppPanel {
  #testCards;
  #stored = null;

  constructor(choices) {
    this.#testCards = choices.test_cards;
    const form = find('card-form').elements;
    form.card.append(...this.#testCards.map((card) =>
      element('option', { value: card.name }, card.name === card.brand ? nameOf(card) : `${card.name} (${nameOf(card)})`)),
    element('option', { value: typedCard }, 'type one…'));
    form.use_case.append(...options(choices.use_cases));
    fillAddress(find('new-address'));
    fillAddress(find('changed-address'));
    this.#explainCard();
    this.#listen();
  }

  /** Shows the guest, the network switch and the guest's cards. */
  show(stored) {
    this.#stored = stored;
    const isSignedIn = stored.guest !== null;
    const hadFocus = find('guest-form').contains(document.activeElement);
    const changes = find('signed-in').hidden === isSignedIn;
    find('signed-out').hidden = isSignedIn;
    find('signed-in').hidden = !isSignedIn;
    find('guest-name').textContent = isSignedIn ? stored.guest.email : '';
    // What is being switched is not switched back by what was stored before.
    if (find('network').ariaBusy !== 'true') find('network').checked = stored.network;
    if (isSignedIn) find('email').value = stored.guest.email;
    if (hadFocus && changes) find(isSignedIn ? 'sign-out' : 'email').focus();
    const cards = stored.pairs.map((pair) => pair.card).filter(Boolean);
    showList(find('cards'), cards, (card) => this.#card(card), find('add'));
  }

  #card(card) {
    const name = nameOf(card);
    return element('li', { class: 'card' },
      element('div', { class: 'grow' },
        element('b', {}, name), ` ${expiry(card)} · ${card.use_case}`,
        element('div', { class: 'hint' }, `${card.card_holder}, ${addressLine(card.billing_address) || 'no billing address'}`)),
      quiet('Update address', `Update address of ${name}`, `update ${card.id}`, () => this.#askForAddress(card)),
      quiet('Delete', `Delete ${name}`, `delete ${card.id}`, ({ currentTarget }) =>
        act(currentTarget, () => request('DELETE', pathOf(card.id)), ({ answers }) => (answers ? `Deleted ${name}.` : noReply))));
  }

  #askForAddress(card) {
    const dialog = find('address-dialog');
    find('address-title').textContent = `Billing address of ${nameOf(card)}`;
    for (const field of dialog.querySelectorAll('input')) field.value = card.billing_address[field.name] ?? '';
    dialog.dataset.id = card.id;
    dialog.showModal();
  }

  #explainCard() {
    const name = find('card-form').elements.card.value;
    find('typed').hidden = name !== typedCard;
    find('effect').textContent = this.#testCards.find((each) => each.name === name)?.effect ??
      'Typed here, it goes to the kit and nowhere else.';
  }

  #newCard() {
    const { card, use_case: useCase, number, security_code: code } = find('card-form').elements;
    const body = { use_case: useCase.value, billing_address: valuesOf(find('new-address')) };
    if (card.value !== typedCard) return { ...body, test_card: card.value };
    const typed = [...find('typed').querySelectorAll('input')].map(({ name, value }) => [name, value]);
    // What a person typed of a card does not stay on the page.
    for (const field of [number, code]) field.value = '';
    return { ...body, credit_card: Object.fromEntries(typed) };
  }

  #listen() {
    onSubmit('guest-form', (button) => act(button, () => signIn(find('email').value), () => 'Signed in.'));
    onClick('sign-out', (button) => {
      const { email } = this.#stored.guest;
      act(button, () => request('DELETE', 'app/guest'),
        () => ({ text: 'Signed out.', undo: { run: () => signIn(email), done: 'Signed in again.' } }));
    });
    find('network').addEventListener('change', async ({ target }) => {
      const on = target.checked;
      const isDone = await act(target, () => request('PUT', 'app/network', { on }),
        () => `The network is ${on ? 'on' : 'off'}.`);
      if (!isDone && this.#stored) target.checked = this.#stored.network;
    });
    onClick('foreground', (button) => act(button, () => request('POST', 'app/foreground'), () => 'The app came to the foreground.'));
    find('card-form').addEventListener('change', () => this.#explainCard());
    onSubmit('card-form', (button) => {
      const body = this.#newCard();
      act(button, () => request('POST', 'app/cards', body), (outcome) => {
        if (outcome.credit_card) return `Added ${nameOf(outcome.credit_card)}.`;
        return outcome.answers ? 'The kit reports no error, but no card came back.' : noReply;
      });
    });
    onClick('address-cancel', () => find('address-dialog').close());
    onSubmit('address-form', () => {
      find('address-dialog').close();
      act(find('cards'), () => request('PATCH', pathOf(find('address-dialog').dataset.id), valuesOf(find('changed-address'))),
        ({ answers }) => (answers ? 'The billing address is changed.' : noReply));
    });
  }
}
