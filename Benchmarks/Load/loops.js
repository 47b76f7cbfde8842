// 200 clients in 200 sandboxes at once, each the command with a kit of its own that runs a guest's cards from the
// first to the last; and then lists of cards, on one event loop and on two, in turns. Clients and server share the
// processors, so what two loops could serve is computed from what a reply costs the server.
// Usage: loops.js CLIENTS ROUNDS SECONDS
import assert from 'node:assert/strict';
import { join } from 'node:path';
import { registeredCard } from '../../Tests/Server/server.js';
import { guest, median, range, run, withServed, wrk } from './measure.js';

const cards = 100;
const [clients, rounds, seconds] = process.argv.slice(2).map(Number);

/** One client. Returns whether all that it finds in the end is its own. */
async function live({ server, wanted }, number) {
  const below = `/sandboxes/life${number}`;
  await wanted(201, 'provider', `PUT /v1${below}`);
  const { backend, provider } = server.urls;
  const where = ['--json', '--store', join(server.folder, `life${number}`), '--backend', backend + below, '--provider', provider + below];
  const act = async (...given) => JSON.parse((await run(process.env.PAYLEVENKIT, [...where, ...given])).stdout);
  await act('sign-in', `guest${number}@example.com`);
  const { backend: [{ id: first }] } = await act('add', '--test-card', 'visa');
  const { backend: [, { id: second }] } = await act('add', '--test-card', 'amex', '--use-case', 'business');
  await act('update', first, '--city', `City ${number}`);
  await act('delete', second);
  await act('orphan', '--test-card', 'mastercard');
  const { agreement, backend: found } = await act('sync');
  return agreement && found.length === 1 && found[0].id === first && found[0].billing_address.city === `City ${number}`;
}

/** Lists per second, and per second of the server's processor time. */
async function lists({ server, wanted, processorSeconds }) {
  const below = '/sandboxes/s0';
  await wanted(201, 'provider', `PUT /v1${below}`);
  await wanted(200, 'backend', `PUT ${below}${guest}`);
  for (const number of range(cards)) await wanted(201, 'backend', `POST ${below}${guest}/cards`, registeredCard(`ins_${number}`));
  const { snapshot } = await wanted(201, 'provider', `POST ${below}/v1/sandbox/snapshots`);
  for (const number of range(clients).slice(1)) await wanted(201, 'provider', `PUT /v1/sandboxes/s${number}`, { snapshot });
  const before = processorSeconds();
  const { perSecond } = await wrk(server.urls.backend, seconds, clients, { script: 'sandboxes.lua', given: [`${guest}/cards`, clients] });
  return { perSecond, perProcessorSecond: perSecond * seconds / (processorSeconds() - before) };
}

let own;
await withServed(async (served) => {
  own = (await Promise.all(range(clients).map((number) => live(served, number)))).filter(Boolean).length;
});
console.log(`${clients} clients with kits in ${clients} sandboxes: ${own} found their own.`);
const measured = { 1: [], 2: [] };
for (let round = 0; round < rounds; ++round) {
  for (const loops of [1, 2]) await withServed(async (served) => { measured[loops].push(await lists(served)); }, '--loops', String(loops));
}
const [one, two] = [measured[1], measured[2]].map((all) => median(all.map(({ perSecond }) => perSecond)));
console.log(`${clients} clients in ${clients} sandboxes: ${one.toFixed(0)} lists of ${cards} cards per second on one loop, ${two.toFixed(0)} on two: ${(two / one).toFixed(2)} times.`);
const [cheap, dear] = [measured[1], measured[2]].map((all) => median(all.map(({ perProcessorSecond }) => perProcessorSecond)));
console.log(`A second of the server's processor time serves ${cheap.toFixed(0)} lists on one loop and ${dear.toFixed(0)} on two: ` +
  `with a processor each, two serve ${(2 * dear / cheap).toFixed(2)} times what one serves; 1.6 are wanted.`);
assert.equal(own, clients, 'a client found what is not its own');
