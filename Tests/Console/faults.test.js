// What goes wrong, on purpose: faults, scenarios, and a server that dies.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { onConsole } from './stage.js';

const scenarios = [
  { name: 'instrument without card', matched: 1, drifted: 1, verdict: '1 does not match.' },
  { name: 'card without instrument', matched: 0, drifted: 1, verdict: '1 does not match.' },
  { name: 'lost token', matched: 1, drifted: 0, verdict: 'The backend has no token' },
];

onConsole('a fault has headers and the kinds of its call; drift is marked, also to a page that begins later', async (guest) => {
  await guest.testing.getByText('Chance, spread').click();
  await guest.testing.getByLabel('Headers').fill('Retry-After: 3');
  await guest.arm('deleteCreditCardWithID', 'error');
  await guest.sees('deleteCreditCardWithID: error, code 500, Retry-After: 3, once');
  const kinds = await guest.testing.getByRole('combobox', { name: 'What happens' }).getByRole('option').allTextContents();
  assert.ok(kinds.includes('never') && !kinds.includes('no-token'), kinds.join());
  for (const { name, matched, drifted, verdict } of scenarios) {
    await guest.app.getByLabel('E-mail address').fill(`${name.replaceAll(' ', '-')}@example.com`);
    await guest.settleIn();
    await guest.makeScenario(name);
    await guest.page.reload();
    await sees(guest.verdict.filter({ hasText: verdict }));
    await seesCount(guest.matched, matched);
    await seesCount(guest.drifted, drifted);
    await guest.button('Sign out').click();
    await guest.sees('Signed out.');
  }
});

onConsole('a page shows within a second that its server has gone, and is back', async (guest, server) => {
  const isSaid = async (text) => {
    const since = Date.now();
    await sees(guest.connection.filter({ hasText: text }));
    assert.ok(Date.now() - since < 1000, `'${text}' was said after ${Date.now() - since} ms`);
  };
  await guest.settleIn();
  await server.end('SIGKILL');
  await isSaid('The server is gone.');
  await guest.button('Come to the foreground').click();
  await guest.sees('No reply came: the server is gone');
  const before = { ...server.urls };
  await server.start();
  assert.deepEqual(server.urls, before);
  await isSaid('Live');
  await guest.add({ card: 'mastercard', useCase: 'private' });
  await guest.sees('Added mastercard •••• 4444.');
  await seesCount(guest.cards, 2);
  await seesCount(guest.matched, 2);
});
