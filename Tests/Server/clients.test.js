// Many clients at once: none gets what is another's, and none waits for another.
import assert from 'node:assert/strict';
import { onServer } from './documents.js';
import { Client, inTime, newCard, registeredCard } from './server.js';

const guest = (name) => `/v1/guests/${name}@example.com`;
const range = (count) => Array.from({ length: count }, (_, at) => at);
const arm = (expect, operation, kind, more = {}) =>
  expect(200, 'provider', 'POST /v1/sandbox/faults', { body: { operation, kind, times: null, ...more } });

for (const withSession of [false, true]) {
  onServer(`race: a guest is changed while it and others sign in and out, ${withSession ? 'with' : 'without'} sessions`, async ({ expect }) => {
    const names = ['a', 'b', 'c', 'd'];
    const changes = 50;
    const signIn = (name) => expect(200, 'backend', `PUT ${guest(name)}`);
    const sessions = Object.fromEntries(await Promise.all(names.map(async (name) => [name, (await signIn(name)).session])));
    const headers = (name) => (withSession ? { Authorization: `Bearer ${sessions[name]}` } : {});
    const change = async (name) => {
      for (const number of range(changes)) {
        const token = `tok_${name}_${number}`;
        const { guest: changed } = await expect(200, 'backend', `PATCH ${guest(name)}`, { body: { payment_token: token }, headers: headers(name) });
        assert.deepEqual([changed.email, changed.payment_token], [`${name}@example.com`, token]);
        const { guest: owner, credit_card: card } = await expect(201, 'backend', `POST ${guest(name)}/cards`,
          { body: registeredCard(`ins_${name}_${number}`), headers: { ...headers(name), Prefer: 'return=minimal' } });
        assert.deepEqual([owner.email, owner.payment_token, card.external_identifier], [`${name}@example.com`, token, `ins_${name}_${number}`]);
        assert.ok(!('credit_cards' in owner), 'a minimal reply grows with the cards');
      }
    };
    const signInAndOut = async () => {
      for (const number of range(changes)) {
        const { session } = await signIn(['x', 'y', ...names][number % (names.length + 2)]);
        await expect(204, 'backend', 'DELETE /v1/session', { headers: { Authorization: `Bearer ${session}` } });
      }
    };
    await Promise.all([...names.map(change), signInAndOut(), signInAndOut()]);
    for (const name of names) {
      const kept = await expect(200, 'backend', `GET ${guest(name)}`, { headers: headers(name) });
      assert.equal(kept.payment_token, `tok_${name}_${changes - 1}`);
      assert.deepEqual(kept.credit_cards.map((card) => card.external_identifier), range(changes).map((number) => `ins_${name}_${number}`));
    }
  });
}

onServer('starvation: calls that are never answered hold up nobody', async ({ server, expect }) => {
  const held = 300;
  await expect(200, 'backend', `PUT ${guest('a')}`);
  const { token } = await expect(201, 'provider', 'POST /v1/users', { body: { email: 'a@example.com', use_case: 'default', credit_card: newCard() } });
  await arm(expect, 'fetchGuestCreditCards', 'never');
  await arm(expect, 'getPaymentInstrumentsList', 'never');
  const targets = { backend: `${guest('a')}/cards`, provider: `/v1/users/${token}/instruments?use_case=default` };
  const holding = new Client(2 * held);
  let ended = 0;
  for (const [port, target] of Object.entries(targets)) {
    for (let call = 0; call < held; ++call) holding.request('GET', server.urls[port] + target).then(() => { ended += 1; }, () => {});
  }
  const until = (holds, what) => inTime((async () => { while (!await holds()); })(), what);
  // Each has met its fault by the time that it is counted.
  await until(async () => (await expect(200, 'provider', 'GET /v1/sandbox/firings')).firings.length >= 2 * held, 'every call meets its fault');
  await Promise.all(range(50).map(() => expect(200, 'backend', `GET ${guest('a')}`)));
  await Promise.all(range(50).map((number) => expect(201, 'provider', `POST /v1/users`,
    { body: { email: `b${number}@example.com`, use_case: 'default', credit_card: newCard() } })));
  const { fault } = await arm(expect, 'updateCreditCard', 'error');
  await expect(204, 'provider', `DELETE /v1/sandbox/faults/${fault.number}`);
  assert.equal(ended, 0, 'a held call is answered');
  // Whoever hangs up is let go at once, not after the answer limit, and is on record without a reply.
  holding.close();
  await until(async () => (await expect(200, 'provider', 'GET /v1/sandbox/requests?status=0&limit=1000')).requests.length >= 2 * held, 'every call that hung up is on record');
  await expect(200, 'provider', 'DELETE /v1/sandbox/faults');
  assert.deepEqual(await expect(200, 'backend', `GET ${guest('a')}/cards`), { credit_cards: [] });
});

for (const name of ['console', 'client']) {
  onServer(`phantom synchronisation: what a client stores is the client's to delete, as ${name}`, async ({ expect }) => {
    await expect(200, 'console', 'PUT /app/guest', { body: { email: 'console@example.com' } });
    await expect(200, 'console', 'POST /app/cards', { body: { test_card: 'visa' } });
    const signIn = (who) => expect(200, 'backend', `PUT ${guest(who)}`);
    await signIn(name);
    const { token } = await expect(201, 'provider', 'POST /v1/users', { body: { email: `${name}@example.com`, use_case: 'default', credit_card: newCard() } });
    await expect(200, 'backend', `PATCH ${guest(name)}`, { body: { payment_token: token } });
    // Is answered when the console's app has nothing more to do.
    const appIsIdle = () => expect(200, 'console', 'PUT /app/network', { body: { on: true } });
    await appIsIdle();
    const list = `/v1/users/${token}/instruments?use_case=default`;
    await expect(201, 'provider', `POST ${list}`, { body: { credit_card: newCard(`5${'5'.repeat(11)}4444`) } });
    const count = async () => (await expect(200, 'provider', `GET ${list}`)).instruments.length;
    const stored = await count();
    for (const who of [name, 'other', name]) {
      await signIn(who);
      await appIsIdle();
      assert.equal(await count(), stored);
    }
  });
}
