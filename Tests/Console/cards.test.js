// A guest's cards: added, typed, changed, deleted, refused.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { atEachSize, onConsole } from './stage.js';

atEachSize('a further card, its new address, and its deletion reach both sides', async (guest) => {
  await guest.settleIn();
  await guest.add({ card: 'mastercard', useCase: 'private', city: 'Hamburg' });
  await guest.sees('Added mastercard •••• 4444.');
  await seesCount(guest.matched, 2);
  const card = guest.cards.filter({ hasText: '4444' });
  await sees(card.filter({ hasText: 'private' }).filter({ hasText: 'Hamburg' }));

  await guest.button('Update address of mastercard •••• 4444').click();
  const dialog = guest.page.getByRole('dialog', { name: 'Billing address of mastercard •••• 4444' });
  assert.equal(await dialog.getByLabel('City').inputValue(), 'Hamburg');
  await dialog.getByLabel('City').fill('Bremen');
  await dialog.getByRole('button', { name: 'Update' }).click();
  await guest.sees('The billing address is changed.');
  await sees(card.filter({ hasText: 'Bremen' }));

  await guest.button('Delete mastercard •••• 4444').click();
  await guest.sees('Deleted mastercard •••• 4444.');
  await seesCount(guest.cards, 1);
  await seesCount(guest.matched, 1);
  await seesCount(guest.drifted, 0);
});

onConsole('a typed card leaves nothing on the page but its last four digits', async (guest) => {
  const number = '4242'.repeat(4);
  const code = '97' + '3';
  const typed = {
    'Card number': number.replace(/(.{4})/g, '$1 '), Month: '11', Year: '2039', 'Security code': code, 'Name on the card': 'A. Guest',
  };
  await guest.signIn();
  await guest.choose('Card', 'type one…');
  for (const [label, text] of Object.entries(typed)) await guest.app.getByLabel(label, { exact: true }).fill(text);
  await guest.button('Add card').click();
  await guest.sees('Added visa •••• 4242.');
  await sees(guest.cards.filter({ hasText: '11/2039' }));
  for (const label of ['Card number', 'Security code']) {
    assert.ok(await guest.app.getByLabel(label).inputValue() === '', `${label} is still there`);
  }
  await guest.goTo('Timeline');
  await guest.seesStep('app: addPaymentInstrument: guest');
  const exports = [await guest.exported('Export text'), await guest.exported('Export SVG')];
  const digits = [await guest.everything(), ...exports].map((text) => text.replace(/\D/g, ''));
  assert.ok(!digits.some((text) => text.includes(number)), 'the number is still there');
  const words = [await guest.page.innerText('body'), exports[0]].join('\n').split(/\W+/);
  assert.ok(!words.includes(code), 'the code is still there');
});

atEachSize('an add is refused, and says so, without network and without a guest', async (guest) => {
  await guest.signIn();
  const network = guest.app.getByRole('switch', { name: 'Network' });
  await network.uncheck();
  await guest.sees('The network is off.');
  await guest.add();
  await guest.sees('No network connection is available. (HLVURLErrorDomain 1)');
  await sees(guest.happened.getByText('There was no connection'));
  await network.check();
  await guest.sees('The network is on.');

  await guest.button('Sign out').click();
  await guest.sees('Signed out.');
  await sees(guest.verdict.filter({ hasText: 'Nobody is signed in.' }));
  await guest.add();
  await guest.sees('Nobody is signed in.');
  await seesCount(guest.cards, 0);
  await guest.signIn();
  await guest.button('Sign out').click();
  await guest.button('Undo').click();
  await guest.sees('Signed in again.');
});
