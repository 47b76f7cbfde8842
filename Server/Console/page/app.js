// The left panel: what a guest does in the app.
import { addressFields, addressLine, expiry, nameOf } from './cards.js';
import { Problem, request } from './connection.js';
import { element, find } from './dom.js';

const typedCard = 'typed';

function chip(group, value, label, checked) {
  return element('label', { class: 'chip' },
    element('input', { type: 'radio', name: group, value, checked }),
    element('span', {}, label));
}

function fillAddress(place) {
  place.replaceChildren(...addressFields.map(([name, label]) =>
    element('label', { class: name === 'street' || name === 'business_name' ? 'wide' : '' },
      label + ' ', element('input', { name, maxlength: 100, autocomplete: 'off' }))));
}

function addressIn(place) {
  const address = {};
  for (const field of place.querySelectorAll('input')) {
    if (field.value !== '') address[field.name] = field.value;
  }
  return address;
}

function tell(sentence, kind = 'good') {
  const place = find('outcome');
  place.dataset.kind = kind;
  place.textContent = sentence;
}

/** Runs one thing that the app does, says how it came out, and answers whether it was done. */
async function act(button, what, done) {
  const hadFocus = document.activeElement === button;
  button.disabled = true;
  tell('');
  try {
    const outcome = await what();
    if (outcome.failure) tell(`${outcome.failure.message} (${outcome.failure.domain} ${outcome.failure.number})`, 'bad');
    else tell(done(outcome));
    return true;
  } catch (problem) {
    if (!(problem instanceof Problem)) throw problem;
    tell(problem.message, 'bad');
    return false;
  } finally {
    button.disabled = false;
    // A browser takes the focus from what is disabled.
    if (hadFocus && document.activeElement === document.body) button.focus();
  }
}

const unanswered = 'The kit has not answered: the story shows where it waits.';

export class AppPanel {
  #choices;
  #shown = null;
  #truth = null;

  constructor(choices) {
    this.#choices = choices;
    this.#fillCardForm();
    fillAddress(find('new-address'));
    fillAddress(find('changed-address'));
    this.#listen();
  }

  /** Shows a guest, the switches and the guest's cards. */
  show(truth) {
    this.#truth = truth;
    const isSignedIn = truth.guest !== null;
    find('signed-out').hidden = isSignedIn;
    find('signed-in').hidden = !isSignedIn;
    find('guest-name').textContent = isSignedIn ? truth.guest.email : '';
    find('network').checked = truth.network;
    find('authorised').checked = isSignedIn;
    if (isSignedIn) find('email').value = truth.guest.email;
    const cards = truth.pairs.map((pair) => pair.card).filter(Boolean);
    const now = JSON.stringify(cards);
    find('no-cards').hidden = cards.length > 0;
    // The list stays in place while nothing in it changes, so that the focus does.
    if (now === this.#shown) return;
    this.#shown = now;
    const list = find('cards');
    const focused = list.contains(document.activeElement) ? document.activeElement.dataset.does : null;
    list.replaceChildren(...cards.map((card) => this.#card(card)));
    if (focused) list.querySelector(`[data-does="${focused}"]`)?.focus();
  }

  #card(card) {
    const name = nameOf(card);
    return element('li', { class: 'card', 'data-id': card.id },
      element('div', { class: 'card-name' },
        element('span', {}, card.brand),
        element('span', { class: 'digits' }, `•••• ${card.last_four_digits}`)),
      element('p', { class: 'hint' }, `${expiry(card)} · ${card.use_case} · ${card.card_holder}`),
      element('p', { class: 'hint' }, addressLine(card.billing_address) || 'no billing address'),
      element('div', { class: 'row' },
        element('button', { type: 'button', 'data-does': `update ${card.id}`, 'aria-label': `Update the address of ${name}`, onclick: () => this.#askForAddress(card) }, 'Update address'),
        element('button', { type: 'button', class: 'danger', 'data-does': `delete ${card.id}`, 'aria-label': `Delete ${name}`, onclick: (event) => this.#delete(event.target, card) }, 'Delete')));
  }

  #delete(button, card) {
    act(button, () => request('DELETE', `app/cards/${encodeURIComponent(card.id)}`),
      (outcome) => (outcome.answers ? `Deleted ${nameOf(card)}.` : unanswered));
  }

  #askForAddress(card) {
    const dialog = find('address-dialog');
    find('address-title').textContent = `Billing address of ${nameOf(card)}`;
    for (const field of dialog.querySelectorAll('input')) field.value = card.billing_address[field.name] ?? '';
    dialog.dataset.id = card.id;
    dialog.showModal();
  }

  #fillCardForm() {
    const cards = this.#choices.test_cards;
    find('test-cards').replaceChildren(
      ...cards.map((card, index) => chip('card', card.name, card.name, index === 0)),
      chip('card', typedCard, 'type one…', false));
    find('use-cases').replaceChildren(
      ...this.#choices.use_cases.map((name, index) => chip('use_case', name, name, index === 0)));
    this.#explainCard();
  }

  #explainCard() {
    const name = new FormData(find('card-form')).get('card');
    const card = this.#choices.test_cards.find((each) => each.name === name);
    find('typed').hidden = Boolean(card);
    find('effect').textContent = card
      ? `${nameOf(card)}. ${card.effect}`
      : 'Typed here, it goes to the kit and nowhere else.';
  }

  #newCard() {
    const form = find('card-form');
    const given = new FormData(form);
    const body = { use_case: given.get('use_case'), billing_address: addressIn(find('new-address')) };
    if (given.get('card') !== typedCard) return { ...body, test_card: given.get('card') };
    const card = {};
    for (const field of find('typed').querySelectorAll('input')) card[field.name] = field.value;
    // What a person typed of a card does not stay on the page.
    for (const name of ['number', 'security_code']) form.elements[name].value = '';
    return { ...body, credit_card: card };
  }

  #listen() {
    find('guest-form').addEventListener('submit', (event) => {
      event.preventDefault();
      act(event.submitter, () => request('PUT', 'app/guest', { email: find('email').value }), () => 'Signed in.');
    });
    find('sign-out').addEventListener('click', (event) => this.#signOut(event.target));
    find('network').addEventListener('change', ({ target }) =>
      this.#turn(target, () => request('PUT', 'app/network', { on: target.checked }),
        () => (target.checked ? 'The network is on.' : 'The network is off.')));
    find('authorised').addEventListener('change', ({ target }) => {
      if (!target.checked) this.#signOut(target);
      else this.#turn(target, () => request('PUT', 'app/guest', { email: find('email').value }), () => 'Signed in.');
    });
    find('foreground').addEventListener('click', ({ target }) =>
      act(target, () => request('POST', 'app/foreground'), () => 'The app came to the foreground. What the kit did is in the story.'));
    find('card-form').addEventListener('change', () => this.#explainCard());
    find('card-form').addEventListener('submit', (event) => {
      event.preventDefault();
      const body = this.#newCard();
      act(event.submitter, () => request('POST', 'app/cards', body), (outcome) => {
        if (outcome.credit_card) return `Added ${nameOf(outcome.credit_card)}.`;
        return outcome.answers ? 'The kit reports no error, but no card came back.' : unanswered;
      });
    });
    find('address-cancel').addEventListener('click', () => find('address-dialog').close());
    find('address-form').addEventListener('submit', (event) => {
      const { id } = find('address-dialog').dataset;
      act(event.submitter, () => request('PATCH', `app/cards/${encodeURIComponent(id)}`, addressIn(find('changed-address'))),
        (outcome) => (outcome.answers ? 'The billing address is changed.' : unanswered));
    });
  }

  /** A switch that could not be turned goes back. */
  async #turn(button, what, done) {
    const isDone = await act(button, what, done);
    if (!isDone && this.#truth) this.show(this.#truth);
  }

  #signOut(button) {
    this.#turn(button, () => request('DELETE', 'app/guest'), () => 'Signed out.');
  }
}
