// Requests that are sent again.
import assert from 'node:assert/strict';
import { onServer } from './documents.js';
import { newCard, registeredCard } from './server.js';

const email = 'guest@example.com';
const cards = `/v1/guests/${email}/cards`;
const other = `5${'5'.repeat(11)}4444`;
const declined = `4${'0'.repeat(14)}2`;

/** What makes users and cards under keys, counts both, and arms faults. */
async function made({ call, expect }) {
  await expect(200, 'backend', `PUT /v1/guests/${email}`);
  const keyed = (key, body) => ({ body, headers: { 'Idempotency-Key': key, Prefer: 'return=minimal' } });
  return {
    user: (key, number) => call('provider', 'POST /v1/users', keyed(key, { email, use_case: 'default', credit_card: newCard(number) })),
    card: (key, identifier = 'ins_x') => call('backend', `POST ${cards}`, keyed(key, registeredCard(identifier))),
    count: async () => Object.values(await expect(200, 'provider', `GET /v1/sandbox/sides?guest=${email}`)).map((side) => side.length),
    arm: (operation, fault) => expect(200, 'provider', 'POST /v1/sandbox/faults', { body: { operation, ...fault } }),
  };
}
const seen = ({ status, headers, text }) => [status, headers['preference-applied'], text];
const code = async (reply) => (await reply).body.error.code;

onServer('the same request has one effect and one reply, also after a restart', async (given) => {
  const { user, card, count } = await made(given);
  const first = [await user('a'), await card('a')];
  assert.deepEqual(first.map((reply) => seen(reply).slice(0, 2)), [[201, undefined], [201, 'return=minimal']]);
  for (const restarts of [false, true]) {
    if (restarts) {
      await given.server.end();
      await given.server.start();
    }
    const again = [await user('a'), await card('a')];
    assert.deepEqual(again.map(seen), first.map(seen));
    assert.equal(await code(user('a', other)), 'idempotency-key-reused');
    assert.equal((await card('a', 'ins_y')).status, 422);
    assert.deepEqual(await count(), [1, 1]);
  }
  assert.notEqual((await card('b')).text, first[1].text);
  assert.deepEqual(await count(), [2, 1]);
  await given.expect(200, 'provider', 'POST /v1/sandbox/reset', { body: {} });
  assert.equal((await user('a', other)).status, 201, 'a reset forgets them');
});

onServer('what is sent twice at the same time happens once', async (given) => {
  const { card, count, arm } = await made(given);
  await arm('addCreditCardForGuest', { kind: 'delay', delay_ms: 5 });
  const replies = await Promise.all(Array.from({ length: 8 }, () => card('at-once')));
  assert.equal(new Set(replies.map(({ text, status }) => text + status)).size, 1);
  assert.equal(replies[0].status, 201);
  assert.deepEqual(await count(), [1, 0]);
});

onServer('a refusal is kept, and a failure of the service is not', async (given) => {
  const { user, card, count, arm } = await made(given);
  for (const each of ['card-declined', 'card-declined']) assert.equal(await code(user('declined', declined)), each);
  assert.equal(await code(user('declined')), 'idempotency-key-reused');
  await arm('createUserToken', { kind: 'error' });
  for (const status of [500, 201]) assert.equal((await user('failed')).status, status);
  await arm('createUserToken', { kind: 'error', status: 429, headers: { 'Retry-After': '3' } });
  const { status, headers } = await user('busy');
  assert.deepEqual([status, headers['retry-after']], [429, '3']);
  assert.equal((await user('busy', other)).status, 201);
  for (const on of [false, true]) {
    await given.expect(200, 'provider', 'PUT /v1/sandbox/network', { body: { on } });
    assert.equal((await card('offline')).status, on ? 201 : 503);
  }
  for (const key of ['k'.repeat(201), 'a b', '']) assert.equal(await code(card(key)), 'malformed-idempotency-key');
  assert.equal((await count())[0], 1);
});
