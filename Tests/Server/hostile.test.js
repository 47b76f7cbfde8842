// What anybody may send, a disk that is full, and what is left of cards.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { onServer, streamOf } from './documents.js';
import { newCard, registeredCard } from './server.js';

const email = 'guest@example.com';
const guest = `/v1/guests/${email}`;
const cards = `${guest}/cards`;
const { number } = newCard();
const user = (more = {}, who = email) => ({ email: who, use_case: 'default', credit_card: { ...newCard(), ...more } });
const card = (more) => ({ ...registeredCard('ins_x'), credit_card: { ...registeredCard('ins_x').credit_card, ...more } });

/** A guest with a card at both sides. `kept` returns everything that is kept of them, and of the console's guest. */
async function settled({ expect }) {
  await expect(200, 'backend', `PUT ${guest}`);
  const { token } = await expect(201, 'provider', 'POST /v1/users', { body: user() });
  await expect(200, 'backend', `PATCH ${guest}`, { body: { payment_token: token } });
  const { credit_card: { id } } = await expect(201, 'backend', `POST ${cards}`, { body: card() });
  const kept = async () => [await expect(200, 'backend', `GET ${guest}`), await expect(200, 'provider', `GET /v1/sandbox/sides?guest=${email}`),
    (await expect(200, 'console', 'GET /stored')).guest];
  return { id, list: `/v1/users/${token}/instruments`, kept };
}

onServer('what is bad is refused and changes nothing', async (given) => {
  const { call, expect } = given;
  const { id, list, kept } = await settled(given);
  const { created } = await expect(201, 'provider', 'POST /v1/sandboxes', { body: { id: 'a' } });
  const rows = {
    backend: [
      [`POST ${cards}`, '['.repeat(60_000), '400 malformed-json'],
      [`POST ${cards}`, card({ pan: 1 }), '422 unknown-member'],
      [`POST ${cards}`, card({ brand: null }), '422 wrong-type'],
      [`POST ${cards}`, card({ use_case: 'theirs' }), '400 invalid-request'],
      [`POST ${cards}`, card({ card_holder: `no ${number}` }), '422 card-number-refused'],
      [`POST ${cards}`, card({ card_holder: 'a\0b' }), '422 unreadable-text'],
      ['POST /v1/guests/other@example.com/cards', card(), '404 unknown-guest'],
      [`PATCH ${cards}/${id}`, { city: number }, '422 card-number-refused'],
      [`PATCH ${cards}/none`, {}, '404 unknown-card'],
      [`DELETE ${cards}/${number}`, undefined, '404 unknown-card'],
      [`PUT /v1/guests/${number}@example.com`, undefined, '400 invalid-request'],
    ],
    provider: [
      ['POST /v1/users', `${number}x`, '400 malformed-json'],
      ['POST /v1/users', user({}, `${number}@example.com`), '422 card-number-refused'],
      ['POST /v1/users', user({ number: `4${'0'.repeat(14)}2` }), '422 card-declined'],
      ['POST /v1/users', user({ pin: '1' }), '422 unknown-member'],
      [`GET ${list}?use_case=${number}`, undefined, '422 unknown-use-case'],
      [`GET /v1/users/${number}/instruments?use_case=default`, undefined, '404 unknown-token'],
      [`DELETE ${list}/none?use_case=default`, undefined, '404 instrument-gone'],
      ['POST /v1/sandbox/faults', { operation: 'createUserToken', kind: 'error', times: 0 }, '422 fault-refused'],
      ['PATCH /v1/sandbox/faults/x', {}, '404 no-such-fault'],
      ['POST /v1/sandbox/scenarios', { name: 'x' }, '422 scenario-refused'],
      ['POST /v1/sandbox/scenarios', { name: 'lost-token', guest: 'x@y' }, '404 unknown-guest'],
      [`GET /v1/sandbox/requests/${number}`, undefined, '404 no-such-request'],
      ['GET /v1/sandbox/requests?limit=0', undefined, '422 wrong-type'],
      ['POST /v1/sandboxes', { id: 'a' }, '409 sandbox-exists'],
      [`PUT /v1/sandboxes/${number}`, undefined, '422 invalid-id'],
      ['POST /v1/sandboxes', { snapshot: '../../store' }, '404 no-such-snapshot'],
      ['POST /v1/sandboxes', { ttl_seconds: 0 }, '422 invalid-time-to-live'],
      ['DELETE /v1/sandboxes/default', undefined, '409 default-sandbox'],
      [`GET /sandboxes/${number}/v1/sandbox`, undefined, '404 no-such-sandbox'],
    ],
    console: [
      ['PUT /app/guest', { email: 'nobody' }, '422 address-refused'],
      ['PUT /app/network', { on: 'yes' }, '422 wrong-type'],
      ['POST /app/cards', { test_card: 'gold' }, '422 no-such-test-card'],
      ['POST /app/cards', { credit_card: { ...newCard(), pin: '1' } }, '422 unknown-member'],
      ['POST /app/cards', { test_card: 'visa' }, '409 not-signed-in'],
    ],
  };
  const before = await kept();
  for (const [port, asked] of Object.entries(rows)) {
    for (const [at, [request, body, refusal]] of asked.entries()) {
      const reply = await call(port, request, { body });
      assert.equal(`${reply.status} ${reply.body.error.code}`, refusal, `row ${at} of the ${port}`);
    }
  }
  assert.deepEqual(await kept(), before);
  const { sandboxes } = await expect(200, 'provider', 'GET /v1/sandboxes');
  assert.deepEqual(sandboxes.map((each) => each.id === 'a' && each.created), [created, false]);
});

onServer("a disk that is full is the server's fault and loses nothing", async (given) => {
  const { server, call, expect } = given;
  const { list, kept } = await settled(given);
  await expect(201, 'provider', 'PUT /v1/sandboxes/a');
  const again = { body: card(), headers: { 'Idempotency-Key': 'a' } };
  const before = await kept();
  const limit = (size) => assert.equal(spawnSync('prlimit', ['--pid', server.pid, `--fsize=${size}:unlimited`]).status, 0);
  limit(4_096);
  for (const [port, request, options] of [
    ['provider', 'POST /v1/users', { body: user({}, 'new@example.com') }],
    ['provider', `POST ${list}?use_case=default`, { body: { credit_card: newCard() } }],
    ['provider', 'POST /v1/sandbox/scenarios', { body: { name: 'lost-token', guest: email } }],
    ['provider', 'POST /v1/sandbox/reset', { body: {} }],
    ['provider', 'POST /v1/sandbox/snapshots', { body: {} }],
    ['provider', 'POST /v1/sandboxes', { body: { id: 'b' } }],
    ['provider', 'DELETE /v1/sandboxes/a'],
    ['backend', `POST ${cards}`, again],
    ['backend', 'PUT /v1/guests/new@example.com'],
    ['console', 'PUT /app/guest', { body: { email } }],
  ]) {
    const { status, body } = await call(port, request, options);
    assert.equal(`${status} ${body.error.code}`, '507 store-failed', request);
  }
  assert.deepEqual(await kept(), before);
  limit('unlimited');
  assert.deepEqual(await kept(), before);
  await expect(201, 'backend', `POST ${cards}`, again);
  await expect(201, 'provider', 'PUT /v1/sandboxes/b');
  await server.end();
  await server.start();
  for (const id of 'ab') await expect(200, 'provider', `GET /v1/sandboxes/${id}`);
});

onServer('a card goes over the wire and is found nowhere afterwards', async ({ server, call, expect }) => {
  const code = '7391';
  const amex = `3782${'822463'}10005`;
  // The holder is a field of its own, where people type the number by mistake.
  const body = JSON.stringify(user({ number: amex, security_code: code, card_holder: `A Guest ${amex}` }));
  const spaced = `${amex.slice(0, 4)}%20${amex.slice(4, 10)}%2d+${amex.slice(10)}`;
  await expect(200, 'console', 'PUT /app/guest', { body: { email } });
  const events = await streamOf(server.urls.console, '/events');
  let replies = '';
  const send = async (port, request, sent) => {
    const { text, headers } = await call(port, request, { body: sent, headers: { 'Idempotency-Key': amex } });
    replies += text + JSON.stringify(headers);
  };
  for (const sent of [body, `${body}}`, `[${body}]`]) {
    for (const port of ['backend', 'provider', 'console']) {
      for (const request of ['POST /v1/users', `PATCH ${guest}`, `POST ${cards}`, `PUT /v1/guests/${amex}`, `GET /v1/users/tok/instruments?use_case=${amex}`,
        `DELETE /${amex}?number=${spaced}`, `GET /sandboxes/${spaced}/v1/sandbox`, `PUT /v1/sandboxes/${amex}`, 'POST /app/cards', 'PATCH /app/cards/crd_x',
        'POST /v1/sandbox/scenarios']) await send(port, request, sent);
    }
  }
  await expect(200, 'console', 'PUT /app/network', { body: { on: false } });
  replies += await events.upTo('network off');
  for (const each of ['requests', 'har', 'firings', `sides?guest=${email}`]) await send('provider', `GET /v1/sandbox/${each}`);
  await send('console', 'GET /stored');
  assert.ok(replies.length > 10_000);
  for (const text of [replies, ...Object.values(server.left)]) assert.ok(!new RegExp(`(?<!\\d)(?<!\\d\\.)${code}(?!\\d)`).test(text));
});
