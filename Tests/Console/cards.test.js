// A guest's cards: typed and refused.
import assert from 'node:assert/strict';
import { sees } from './person.js';
import { atEachSize, onConsole } from './stage.js';

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

atEachSize('an add is refused, and says so, without network, and signing out is undone', async (guest) => {
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
  await guest.button('Undo').click();
  await guest.sees('Signed in again.');
});
