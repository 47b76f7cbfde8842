// What a guest does in the app.
import { addressFields, addressLine, expiry, nameOf } from './cards.js';
import { request } from './connection.js';
import { act, element, find, options, replaceItems } from './dom.js';

const typedCard = 'typed';
const noReply = 'The kit has not called the completion: the timeline shows what it waits for.';

function fillAddress(place) {
  place.replaceChildren(...addressFields.map(([name, label]) =>
    element('label', { class: name === 'street' || name === 'business_name' ? 'wide' : '' },
      label, element('input', { name, maxlength: 100, autocomplete: 'off' }))));
}

function addressIn(place) {
  const address = {};
  for (const field of place.querySelectorAll('input')) {
    if (field.value !== '') address[field.name] = field.value;
  }
  return address;
}

const signIn = (email) => request('PUT', 'app/guest', { email });

export class AppPanel {
  #testCards;
  #shown = null;
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
    find('no-cards').hidden = cards.length > 0;
    const now = JSON.stringify(cards);
    if (now === this.#shown) return;
    this.#shown = now;
    replaceItems(find('cards'), cards.map((card) => this.#card(card)), find('add'));
  }

  #card(card) {
    const name = nameOf(card);
    return element('li', { class: 'card' },
      element('div', { class: 'grow' },
        element('b', {}, name), ` ${expiry(card)} · ${card.use_case}`,
        element('div', { class: 'hint' }, `${card.card_holder}, ${addressLine(card.billing_address) || 'no billing address'}`)),
      element('button', { type: 'button', class: 'quiet', 'data-key': `update ${card.id}`, 'aria-label': `Update address of ${name}`, onclick: () => this.#askForAddress(card) }, 'Update address'),
      element('button', { type: 'button', class: 'quiet danger', 'data-key': `delete ${card.id}`, 'aria-label': `Delete ${name}`, onclick: (event) => this.#delete(event.currentTarget, card) }, 'Delete'));
  }

  #delete(button, card) {
    act(button, find('cards-outcome'), () => request('DELETE', `app/cards/${encodeURIComponent(card.id)}`),
      (outcome) => (outcome.answers ? `Deleted ${nameOf(card)}.` : noReply));
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
    const form = find('card-form').elements;
    const body = { use_case: form.use_case.value, billing_address: addressIn(find('new-address')) };
    if (form.card.value !== typedCard) return { ...body, test_card: form.card.value };
    const card = {};
    for (const field of find('typed').querySelectorAll('input')) card[field.name] = field.value;
    // What a person typed of a card does not stay on the page.
    for (const name of ['number', 'security_code']) form[name].value = '';
    return { ...body, credit_card: card };
  }

  #listen() {
    const onSubmit = (form, run) => find(form).addEventListener('submit', (event) => {
      event.preventDefault();
      run(event.submitter);
    });
    onSubmit('guest-form', (button) =>
      act(button, find('guest-outcome'), () => signIn(find('email').value), () => 'Signed in.'));
    find('sign-out').addEventListener('click', ({ currentTarget }) => {
      const { email } = this.#stored.guest;
      act(currentTarget, find('guest-outcome'), () => request('DELETE', 'app/guest'),
        () => ({ text: 'Signed out.', undo: { label: 'Undo', run: () => signIn(email), done: 'Signed in again.' } }));
    });
    find('network').addEventListener('change', async ({ target }) => {
      const on = target.checked;
      const isDone = await act(target, find('device-outcome'), () => request('PUT', 'app/network', { on }),
        () => `The network is ${on ? 'on' : 'off'}.`);
      if (!isDone && this.#stored) target.checked = this.#stored.network;
    });
    find('foreground').addEventListener('click', ({ currentTarget }) =>
      act(currentTarget, find('device-outcome'), () => request('POST', 'app/foreground'),
        () => 'The app came to the foreground.'));
    find('card-form').addEventListener('change', () => this.#explainCard());
    onSubmit('card-form', (button) => {
      const body = this.#newCard();
      act(button, find('card-outcome'), () => request('POST', 'app/cards', body), (outcome) => {
        if (outcome.credit_card) return `Added ${nameOf(outcome.credit_card)}.`;
        return outcome.answers ? 'The kit reports no error, but no card came back.' : noReply;
      });
    });
    find('address-cancel').addEventListener('click', () => find('address-dialog').close());
    onSubmit('address-form', (button) => {
      find('address-dialog').close();
      act(button, find('cards-outcome'),
        () => request('PATCH', `app/cards/${encodeURIComponent(find('address-dialog').dataset.id)}`, addressIn(find('changed-address'))),
        (outcome) => (outcome.answers ? 'The billing address is changed.' : noReply));
    });
  }
}
