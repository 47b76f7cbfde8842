// A card that somebody types.
import assert from 'node:assert/strict';
import { sees } from './person.js';
import { onConsole } from './stage.js';

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
