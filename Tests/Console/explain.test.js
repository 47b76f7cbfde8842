// What happened, in a sentence made from an operation's events, and the manual's row that it leads to.
import assert from 'node:assert/strict';
import { sees } from './person.js';
import { onConsole } from './stage.js';

const add = (card) => ['POST', 'app/cards', { test_card: card, use_case: 'default', billing_address: {} }];
const expired = ['POST', 'app/cards', { credit_card: { number: '4242'.repeat(4), expiry_month: '12', expiry_year: '2020', security_code: '9'.repeat(3), card_holder: 'A Guest' }, use_case: 'default', billing_address: {} }];
const update = ['PATCH', 'app/cards/ID', { city: 'Bonn' }];
const remove = ['DELETE', 'app/cards/ID'];
const foreground = ['POST', 'app/foreground', {}];
const offline = ['PUT', 'app/network', { on: false }];
const orphan = ['POST', 'v1/sandbox/scenarios', { name: 'instrument-without-card', guest: 'GUEST' }];

/**
 * F: a guest; C: a first card, too; -: nobody. Then the calls that meet a fault, `error` unless it is named, what is
 * done, what is said, and the row, if any.
 */
const rows = [
  ['-', '', [foreground], 'The kit did not synchronise: nobody is signed in.'],
  ['F', '', [foreground], 'the guest has no token yet', 'a synchronisation for a guest without a token'],
  ['F', '', [expired], 'The card is not valid', 'the card is not valid'],
  ['F', '', [offline, add('visa')], 'There was no connection, so the kit asked neither side', 'no connection'],
  ['F', 'createUserToken', [add('visa')], 'did not confirm that it stored the card', 'the provider refuses to create a token'],
  ['F', '', [add('no-token')], 'replied without a token', 'neither a token nor an error'],
  ['F', 'getPaymentInstrumentsList', [add('visa')], 'its list of instruments failed', 'the lookup fails'],
  ['F', '', [add('no-identifier')], 'no usable instrument', 'the stored instrument has no identifier'],
  ['F', '', [add('backend-refused')], 'the app got the error', 'What becomes of the two backend requests'],
  ['F', 'updateCurrentGuestWithRequest', [add('visa')], "refused the guest's token", 'What becomes of the two backend requests'],
  ['F', 'addCreditCardForGuest never', [add('visa')], 'to which the backend has not replied', 'the backend never answers'],
  ['C', '', [add('amex')], 'The provider stored the card, and the backend registered it.'],
  ['C', 'addPaymentInstrument', [add('amex')], 'did not confirm that it stored the card', 'the provider refuses the card'],
  ['C', '', [add('backend-refused')], 'the kit reports no error (kept for compatibility)', 'the backend refuses the card'],
  ['C', 'updateCreditCard', [update], 'The backend refused the billing address', 'the backend refuses the update'],
  ['C', '', [offline, update], 'There was no connection, so the billing address is what it was.'],
  ['C', '', [remove], 'the provider removed its instrument'],
  ['C', 'deleteCreditCardWithID', [remove], 'The backend refused to delete the card', 'the backend refuses'],
  ['C', 'getPaymentInstrumentsList', [remove], "the provider's list failed", "the provider's list fails, or is missing"],
  ['C', 'removePaymentInstrument', [remove], 'the provider did not remove the instrument', 'the removal fails'],
  ['C', 'removePaymentInstrument never', [remove], 'to which the provider has not replied', 'the provider never answers'],
  ['C', '', [foreground], 'each instrument has a card, so nothing was removed'],
  ['C', '', [orphan, foreground], 'the instrument without a card removed from the provider'],
  ['C', 'removePaymentInstrument', [orphan, foreground], 'could not be removed', 'a removal fails'],
  ['C', '', [remove, foreground], 'there was nothing to do', 'the provider holds nothing'],
  ['C', 'fetchGuestCreditCards', [foreground], 'failed at fetchGuestCreditCards of the backend', "the backend's list fails"],
  ['C', 'getPaymentInstrumentsList,fetchGuestCreditCards', [foreground], 'failed at getPaymentInstrumentsList of the provider', 'a provider list fails'],
  ['C', 'fetchGuestCreditCards never', [foreground], 'to which the backend has not replied', 'a service never answers'],
  ['C', 'fetchGuestCreditCards', [foreground, foreground], 'The kit dropped the synchronisation', 'a synchronisation is under way'],
];

onConsole('what happened is said in a sentence that leads to its row of the manual', async (guest, { urls: { console } }) => {
  const call = ([method, path, data]) => guest.page.request.fetch(`${console}/${path}`, { method, data });
  const manual = await (await call(['GET', 'failures.md'])).text();
  for (const [number, [before, faults, done, text, row]] of rows.entries()) {
    const email = `guest-${number}@example.com`;
    if (before !== '-') await call(['PUT', 'app/guest', { email }]);
    if (before === 'C') await call(add('visa'));
    const id = (await (await call(['GET', 'stored'])).json()).pairs[0]?.card?.id;
    for (const [operation, kind = 'error'] of faults.split(',').filter(Boolean).map((fault) => fault.split(' '))) {
      await call(['POST', 'v1/sandbox/faults', { operation, kind, times: 1 }]);
    }
    for (const [method, path, body] of done) {
      await call([method, path.replace('ID', id), body?.guest ? { ...body, guest: email } : body]);
    }
    await sees(guest.happened.getByRole('status').filter({ hasText: text }));
    const link = guest.happened.getByRole('link', { name: /^Manual/ });
    assert.equal(await link.count() > 0 ? await link.innerText() : 'none', row ? `Manual: “${row}”` : 'none', text);
    assert.ok(!row || manual.includes(row), `the manual has no row '${row}'`);
    await call(['PUT', 'app/network', { on: true }]);
    await call(['DELETE', 'v1/sandbox/faults']);
  }
});
