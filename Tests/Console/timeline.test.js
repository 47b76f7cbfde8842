// The timeline as something to work with: filtered, paused, exported, explained, seen by many.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { onConsole } from './stage.js';

const callsOfAFirstAdd = [
  'app → kit: addPaymentInstrument',
  'kit → provider: createUserToken use case default',
  'kit → provider: getPaymentInstrumentsList use case default',
  'kit → main queue: posts',
  'kit → backend: updateCurrentGuestWithRequest',
  'kit → backend: addCreditCardForGuest use case default',
  'kit → main queue: posts',
];

onConsole('a first card is drawn in order, and leaves nothing on the page but its last four digits', async (guest) => {
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
  await sees(guest.happened.getByText("stored the guest's first card, and the backend registered both"));
  await sees(guest.verdict.filter({ hasText: 'Both sides agree.' }));
  await guest.goTo('Timeline');
  await sees(guest.operations.filter({ hasText: /add.*succeeded/ }));
  const heads = await guest.timeline.locator('.head').allTextContents();
  assert.deepEqual(heads.map((head) => head.trim()), ['app', 'main queue', 'kit', 'provider', 'backend']);
  const texts = (await guest.steps.allTextContents()).map((text) => text.replace(/ \([^()]*\)$/, ''));
  assert.deepEqual(texts.filter((text) => !/: .*: /.test(text)), callsOfAFirstAdd);
  assert.match(texts.at(-1), /^main queue → app: addPaymentInstrument: guest, card crd_/);
  assert.equal(texts.filter((text) => /^(provider|backend) → kit: .*, after (<1|\d+) ms$/.test(text)).length, 4);
  const exports = [await guest.exported('Export text'), await guest.exported('Export SVG')];
  const digits = [await guest.everything(), ...exports].map((text) => text.replace(/\D/g, ''));
  assert.ok(!digits.some((text) => text.includes(number)), 'the number is still there');
  const words = [await guest.page.innerText('body'), exports[0]].join('\n').split(/\W+/);
  assert.ok(!words.includes(code), 'the code is still there');
});

onConsole('a wait is drawn to scale, parallel calls beside each other, and what is asked for meanwhile in one operation', async (guest) => {
  await guest.settleIn();
  for (const call of ['fetchGuestCreditCards', 'getPaymentInstrumentsList']) await guest.arm(call, 'delay', { delay: 300, times: '' });
  await guest.comeToForeground();
  await guest.goTo('Timeline');
  await guest.seesStep(/fetchGuestCreditCards: 1 card, after \d{3} ms/);
  const bars = guest.timeline.locator('.bar');
  const boxes = () => bars.evaluateAll((all) => all.map((bar) => bar.getBoundingClientRect()).map(({ x, y, height }) => ({ x, y, height })));
  const closely = Math.max(...(await boxes()).map(({ height }) => height));
  await guest.timeline.getByRole('checkbox', { name: 'time to scale' }).check();
  await bars.first().evaluate(() => new Promise((drawn) => { requestAnimationFrame(() => requestAnimationFrame(drawn)); }));
  const scaled = await boxes();
  assert.ok(Math.max(...scaled.map(({ height }) => height)) > closely + 400, 'the wait is not drawn to scale');
  assert.equal(new Set(scaled.map(({ x }) => x)).size, 4, 'parallel calls lie on each other');

  await guest.goTo('App');
  await guest.arm('addPaymentInstrument', 'delay', { delay: 500 });
  await guest.add({ card: 'amex' });
  await guest.comeToForeground();
  await guest.goTo('Timeline');
  await sees(guest.operations.filter({ hasText: /add \+ foreground|foreground \+ add/ }));
  await guest.seesStep('Will start synchrozation');
});

onConsole('an older operation is chosen, filtered and exported while new ones come', async (guest, server) => {
  const another = () => fetch(`${server.urls.console}/app/foreground`, { method: 'POST', headers: { 'Content-Type': 'application/json' }, body: '{}' });
  const filter = guest.timeline.getByLabel('Filter');
  const later = guest.operations.filter({ hasText: 'foreground' });
  await guest.settleIn();
  await guest.goTo('Timeline');
  await guest.operations.filter({ hasText: 'add' }).click();
  await filter.fill('CREATEUSERTOKEN');
  await another();
  await seesCount(later, 1);
  await seesCount(guest.steps.filter({ hasText: 'createUserToken' }), 2);
  await filter.fill('no such word');
  await sees(guest.timeline.getByText('No step fits the filter.'));
  await filter.fill('');
  await guest.button('Pause').click();
  await another();
  await sees(guest.button('Resume (more has come)'));
  await seesCount(later, 1);
  await guest.button('Resume (more has come)').click();
  await seesCount(later, 2);

  const text = await guest.exported('Export text');
  const picture = await guest.exported('Export SVG');
  assert.match(text, /^Operation \d+: add\n\n +1 {2}app → kit: addPaymentInstrument/);
  assert.equal(text.trim().split('\n').length - 2, await guest.steps.count());
  assert.match(picture, /^<svg .*<style.*User<wbr ?\/?>Token/s);
  for (const written of [text, picture.replace(/<style.*<\/style>/s, '')]) {
    assert.ok(!/@|\d(?:[ -]?\d){11}/.test(written), 'an export holds an address or a long number');
  }
  const long = '1234 5678-'.repeat(2);
  const redacted = await guest.page.evaluate(async (line) => (await import('./export.js')).redacted(line),
    `guest@example.com gave ${long}and 2030`);
  assert.ok(redacted === '(address) gave •••• 5678-and 2030', 'what is redacted');

  await later.first().click();
  await guest.seesStep('Successfully synchronized');
  await guest.timeline.getByRole('checkbox', { name: 'log lines' }).uncheck();
  await seesCount(guest.steps.filter({ hasText: 'Successfully' }), 0);
});
