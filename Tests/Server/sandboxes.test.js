// Sandboxes of one server: each is a world of its own.
import assert from 'node:assert/strict';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { onServer } from './documents.js';
import { newCard, registeredCard } from './server.js';

const email = 'guest@example.com';
const guest = `/v1/guests/${email}`;
const create = ({ expect }, body) => expect(201, 'provider', 'POST /v1/sandboxes', { body });
const user = { body: { email, use_case: 'default', credit_card: newCard() } };

/** A guest with a token, who has one card at both sides. Returns what both sides made up. */
async function live({ expect }, below) {
  await expect(200, 'backend', `PUT ${below}${guest}`);
  const { token } = await expect(201, 'provider', `POST ${below}/v1/users`, user);
  const { credit_card: { id } } = await expect(201, 'backend', `POST ${below}${guest}/cards`, { body: registeredCard('ins_x') });
  return [token, id];
}

onServer('sandboxes are created as asked and share nothing', async (given) => {
  const { call, expect } = given;
  const made = await create(given, { id: 'a', seed: 7, clock: '2033-01-31T00:00:00Z', in_memory: true });
  assert.deepEqual([made.seed, made.in_memory, made.clock.slice(0, 14)], [7, true, '2033-01-31T00:']);
  const { text } = await call('provider', 'PUT /v1/sandboxes/largest', { body: '{"seed": 18446744073709551615}' });
  assert.match(text, /"seed":18446744073709551615\b/);
  await expect(201, 'provider', 'PUT /v1/sandboxes/b', { body: { seed: 7 } });
  await expect(200, 'backend', `PUT ${guest}`);
  const lived = await live(given, '/sandboxes/b');
  const code = async (request) => (await call('backend', request)).body.error.code;
  assert.equal(await code(`GET /sandboxes/a${guest}`), 'unknown-guest');
  assert.deepEqual((await expect(200, 'backend', `GET ${guest}`)).credit_cards, []);
  assert.equal((await call('backend', `GET /sandboxes/default${guest}`)).text, (await call('backend', `GET ${guest}`)).text);
  for (const [id, inMemory] of [['c', true], ['d', false]]) {
    await create(given, { id, seed: 7, in_memory: inMemory });
    assert.deepEqual(await live(given, `/sandboxes/${id}`), lived, 'the same seed');
  }
  await expect(200, 'provider', 'POST /sandboxes/b/v1/sandbox/faults', { body: { operation: 'fetchGuestCreditCards', kind: 'error' } });
  await expect(200, 'provider', 'PUT /sandboxes/c/v1/sandbox/network', { body: { on: false } });
  for (const [id, status] of [['d', 200], ['c', 503], ['b', 500]]) await expect(status, 'backend', `GET /sandboxes/${id}${guest}/cards`);
  assert.equal((await expect(200, 'provider', 'GET /sandboxes/d/v1/sandbox/requests?path=/v1/users')).requests.length, 1);

  await expect(204, 'provider', 'DELETE /v1/sandboxes/b');
  assert.equal(await code(`GET /sandboxes/b${guest}`), 'no-such-sandbox');
  await create(given, { id: 'b' });
  assert.equal(await code(`GET /sandboxes/b${guest}`), 'unknown-guest', 'a new one');
  const { sandboxes, next } = await expect(200, 'provider', 'GET /v1/sandboxes?limit=2&after=a');
  assert.deepEqual([sandboxes.map(({ id }) => id), next], [['b', 'c'], 'c']);
});

onServer('a sandbox goes back to a snapshot and has a clock of its own', async (given) => {
  const { server, call, expect } = given;
  const below = '/sandboxes/a';
  await create(given, { id: 'a' });
  await live(given, below);
  const guestIn = (at) => expect(200, 'backend', `GET ${at}${guest}`);
  const { snapshot } = await expect(201, 'provider', `POST ${below}/v1/sandbox/snapshots`, { body: {} });
  const { session } = await expect(200, 'backend', `PUT ${below}/v1/guests/x@y`);
  await expect(201, 'backend', `POST ${below}${guest}/cards`, { body: registeredCard('ins_y') });
  const later = await guestIn(below);
  assert.equal(later.credit_cards.length, 2);

  assert.equal((await expect(200, 'provider', `POST ${below}/v1/sandbox/restore`, { body: { snapshot } })).guests, 1);
  const before = await guestIn(below);
  assert.equal(before.credit_cards.length, 1);
  assert.ok(before.revision > later.revision, 'it never goes back');
  await expect(401, 'backend', `GET ${below}/v1/guests/x@y`, { headers: { Authorization: `Bearer ${session}` } });
  const logOf = async (at) => {
    const { gaps, requests } = await expect(200, 'provider', `GET ${at}/v1/sandbox/requests`);
    assert.deepEqual(gaps, []);
    return requests.map(({ path }) => path);
  };
  // It is kept, whatever happened to the rest.
  const log = await logOf(below);
  for (const path of ['/v1/guests/x@y', '/v1/sandbox/restore']) assert.ok(log.includes(below + path), path);
  for (const [id, inMemory] of [['m', true], ['f', false]]) {
    const other = `/sandboxes/${id}`;
    assert.equal((await create(given, { id, snapshot, in_memory: inMemory })).guests, 1);
    assert.deepEqual((await guestIn(other)).credit_cards, before.credit_cards);
    for (const path of await logOf(other)) assert.ok(path.startsWith(other), path);
  }

  // SQLite keeps the application's version in the bytes 60 to 63 of its header.
  const snapshots = join(server.folder, 'store.sqlite.sandboxes', 'snapshots');
  const file = join(snapshots, `${snapshot}.sqlite`);
  writeFileSync(file, readFileSync(file).fill(1, 60, 64));
  for (const request of [`POST ${below}/v1/sandbox/restore`, 'POST /v1/sandboxes']) {
    const { status, body, text } = await call('provider', request, { body: { snapshot } });
    assert.equal(`${status} ${body.error.code}`, '409 snapshot-version');
    assert.ok(!text.includes(server.folder), "a path of the server's");
  }
  assert.deepEqual(await guestIn(below), before);
  await expect(204, 'provider', `DELETE /v1/snapshots/${snapshot}`);
  assert.deepEqual((await expect(200, 'provider', 'GET /v1/snapshots')).snapshots, []);
  assert.deepEqual(readdirSync(snapshots), []);

  const state = async () => (await expect(200, 'provider', `GET ${below}/v1/sandbox/sides?guest=${email}`)).instruments[0].state;
  const usable = await state();
  await expect(200, 'provider', `PUT ${below}/v1/sandbox/clock`, { body: { now: '2100-12-31T00:00:00Z' } });
  assert.notEqual(await state(), usable);
  await expect(201, 'provider', 'POST /v1/users', user);
  await expect(200, 'provider', `POST ${below}/v1/sandbox/reset`, { body: {} });
  await expect(201, 'provider', `POST ${below}/v1/users`, user);
});
