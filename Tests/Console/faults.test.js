// What goes wrong, on purpose: faults, scenarios, and a server that dies.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { onConsole } from './stage.js';

onConsole('a fault has the kinds of its call, and replies with its status and headers', async (guest, server) => {
  await guest.testing.getByText('Chance, spread').click();
  await guest.testing.getByLabel('HTTP status').fill('503');
  await guest.testing.getByLabel('Headers').fill('Retry-After: 3');
  await guest.arm('createUserToken', 'error');
  await guest.sees('createUserToken: error, code 500, status 503, Retry-After: 3, once');
  const reply = await fetch(`${server.urls.provider}/v1/users`, {
    method: 'POST', headers: { 'X-API-Key': 'any', 'Content-Type': 'application/json' },
    body: JSON.stringify({ email: 'guest@example.com', credit_card: { number: '4242'.repeat(4), expiry_month: '12', expiry_year: '2035', security_code: '9'.repeat(3), card_holder: 'A. Guest' } }),
  });
  assert.deepEqual([reply.status, reply.headers.get('Retry-After')], [503, '3']);
  await guest.arm('deleteCreditCardWithID', 'cut');
  const kinds = await guest.testing.getByRole('combobox', { name: 'What happens' }).getByRole('option').allTextContents();
  assert.ok(kinds.includes('never') && !kinds.includes('no-token'), kinds.join());
});

const scenarios = [
  { name: 'instrument without card', matched: 1, drifted: 1, verdict: '1 does not match.' },
  { name: 'card without instrument', matched: 0, drifted: 1, verdict: '1 does not match.' },
  { name: 'lost token', matched: 1, drifted: 0, verdict: 'The backend has no token' },
];

onConsole('drift is marked, and the same to a page that begins later', async (guest) => {
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
  const before = server.urls.console;
  await server.start();
  assert.equal(server.urls.console, before);
  await isSaid('Live');
  await guest.add({ card: 'mastercard', useCase: 'private' });
  await guest.sees('Added mastercard •••• 4444.');
  await seesCount(guest.cards, 2);
  await seesCount(guest.matched, 2);
});
