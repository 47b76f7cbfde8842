// The console's app, in whichever sandbox it is asked for.
import assert from 'node:assert/strict';
import { onServer } from './documents.js';

onServer('the kit follows the guest and the sandbox', async ({ call, expect }) => {
  await expect(201, 'provider', 'PUT /v1/sandboxes/a');
  const ask = (...request) => expect(200, 'console', ...request);
  const add = (below) => call('console', `POST ${below}/app/cards`, { body: { test_card: 'visa' } });
  const stored = (below) => ask(`GET ${below}/stored`);
  for (const below of ['', '/sandboxes/a', '/sandboxes/default']) {
    for (const email of ['one@example.com', 'two@example.com']) {
      await ask(`PUT ${below}/app/guest`, { body: { email } });
      assert.equal((await add(below)).body.failure, null);
      const { pairs } = await stored(below);
      await ask(`POST ${below}/v1/sandbox/scenarios`, { body: { name: 'instrument-without-card', guest: email } });
      await ask(`POST ${below}/app/foreground`, { body: {} });
      assert.equal((await stored(below)).pairs.length, pairs.length, `the kit synchronises ${email} in '${below}'`);
    }
  }
  const { guest, pairs } = await stored('/sandboxes/a');
  assert.deepEqual([guest.email, pairs.length], ['two@example.com', 1]);
  await expect(204, 'provider', 'DELETE /v1/sandboxes/a');
  assert.equal((await add('/sandboxes/a')).body.error.code, 'no-such-sandbox');
  assert.equal((await add('')).status, 200);
});

onServer('operations of two sandboxes at once all get a reply', async ({ expect }) => {
  await expect(201, 'provider', 'PUT /v1/sandboxes/a');
  for (let round = 0; round < 50; ++round) {
    await Promise.all(['', '/sandboxes/a'].map((below) => expect(200, 'console', `PUT ${below}/app/network`, { body: { on: true } })));
  }
});
