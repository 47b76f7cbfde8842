// The story as something to work with: filtered, paused, exported, seen twice.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { onConsole } from './stage.js';

onConsole('an older operation is chosen and filtered while new ones come', async (guest) => {
  await guest.settleIn();
  await guest.comeToForeground();
  await guest.seesStep('kit: debug: Will start');
  await guest.story.getByRole('checkbox', { name: 'log lines' }).uncheck();
  await seesCount(guest.steps.filter({ hasText: 'debug:' }), 0);
  await guest.seesStep('will enter foreground');

  const older = guest.operations.filter({ hasText: /\dadd/ });
  await older.click();
  await guest.seesStep('createUserToken');
  assert.equal(await older.getAttribute('aria-current'), 'true');
  await guest.story.getByLabel('Filter').fill('CREATEUSERTOKEN');
  await seesCount(guest.steps, 2);
  await guest.comeToForeground();
  await sees(guest.operations.filter({ hasText: 'foreground' }).nth(1));
  await seesCount(guest.steps.filter({ hasText: 'createUserToken' }), 2);
  await guest.story.getByLabel('Filter').fill('no such word');
  await sees(guest.story.getByText('No step fits the filter.'));
});

onConsole('a paused story stands still, and catches up', async (guest) => {
  await guest.settleIn();
  await guest.button('Pause').click();
  await guest.comeToForeground();
  await sees(guest.button('Resume (more has come)'));
  await seesCount(guest.operations.filter({ hasText: 'foreground' }), 0);
  await guest.button('Resume (more has come)').click();
  await guest.seesStep('Successfully synchronized');
  await sees(guest.button('Pause'));
});

onConsole('exports tell the whole operation, and not who the guest is', async (guest) => {
  await guest.settleIn();
  const text = await guest.exported('Export text');
  const picture = await guest.exported('Export SVG');
  assert.match(text, /^Operation \d+: add\n\n +1 {2}app → kit: addPaymentInstrument/);
  assert.equal(text.trim().split('\n').length - 2, await guest.steps.count());
  const anywhere = await guest.page.context().newPage();
  const names = await anywhere.evaluate((source) => {
    const sheet = new DOMParser().parseFromString(source, 'image/svg+xml');
    return [...sheet.querySelectorAll('svg .head')].map((label) => label.textContent);
  }, picture);
  assert.deepEqual(names, ['app', 'main queue', 'kit', 'provider', 'backend']);
  for (const written of [text, picture]) {
    assert.ok(!/@|\d(?:[ -]?\d){11}/.test(written), 'an export holds an address or a long number');
  }
  const long = '1234 5678-'.repeat(2);
  const redacted = await guest.page.evaluate(async (line) => (await import('./export.js')).redacted(line),
    `guest@example.com gave ${long}and 2030`);
  assert.ok(redacted === '(address) gave •••• 5678-and 2030', 'what is redacted');
});

onConsole('a sandbox has a console below its URL, and each sees its own guest', async (guest, server, open) => {
  const made = await fetch(`${server.url}/v1/sandboxes`, {
    method: 'POST',
    headers: { 'Content-Type': 'application/json' },
    body: '{"id": "beside", "in_memory": true}',
  });
  const neighbour = await open((await made.json()).urls.console);
  assert.equal(neighbour.page.url(), `${server.url}/sandboxes/beside/`);
  await neighbour.settleIn();
  await neighbour.makeScene('half deleted');
  await seesCount(neighbour.drifted, 1);
  await sees(guest.truth.getByText('Nobody is signed in.'));
  await seesCount(guest.operations, 0);

  // A page behind others is drawn late.
  await guest.page.bringToFront();
  await guest.settleIn();
  await guest.add({ card: 'mastercard', useCase: 'private' });
  await guest.told('Added mastercard •••• 4444.');
  await seesCount(guest.matched, 2);
  await neighbour.page.bringToFront();
  await neighbour.comeToForeground();
  await sees(neighbour.verdict.filter({ hasText: 'Both sides agree.' }));
  await seesCount(neighbour.cards, 0);
  await seesCount(guest.matched, 2);
});

onConsole('two pages see the same story', async (guest, server, open) => {
  const watcher = await open();
  await guest.settleIn();
  await watcher.seesStep('app: addPaymentInstrument: guest');
  await seesCount(watcher.matched, 1);
  assert.deepEqual(await watcher.steps.allTextContents(), await guest.steps.allTextContents());
  await watcher.button('Delete visa •••• 1111').click();
  await seesCount(guest.cards, 0);
  await guest.seesStep('app: deletePaymentInstrumentWithID');
});
