// What calls that are never answered, and connections that ask for nothing, cost the others.
// Usage: crowds.js HELD IDLE ROUNDS SECONDS
import assert from 'node:assert/strict';
import { Client, inTime } from '../../Tests/Server/server.js';
import { guest, median, range, withServed, wrk } from './measure.js';

const [held, idle, rounds, seconds] = process.argv.slice(2).map(Number);

/** The slowest hundredth of other calls, with and without the held ones, in turns. */
async function heldCalls({ server, wanted }) {
  const url = server.urls.backend + guest;
  const [without, withHeld] = [[], []];
  const isArmed = async () => (await wanted(200, 'provider', 'GET /v1/sandbox/faults')).faults.length > 0;
  for (let round = 0; round < rounds; ++round) {
    without.push((await wrk(url, seconds, 4)).p99);
    // Armed until so many have met it.
    await wanted(200, 'provider', 'POST /v1/sandbox/faults', { operation: 'fetchGuestCreditCards', kind: 'never', times: held });
    const client = new Client(held);
    for (let call = 0; call < held; ++call) client.request('GET', `${url}/cards`).catch(() => {});
    await inTime((async () => { while (await isArmed()); })(), 'the calls meet the fault', 60_000);
    withHeld.push((await wrk(url, seconds, 4)).p99);
    client.close();
  }
  const [one, other] = [median(without), median(withHeld)];
  console.log(`99 % of calls take ${one.toFixed(2)} ms at most, and ${other.toFixed(2)} ms while ${held} others are never answered: ` +
    `${(other / one).toFixed(2)} times; 1.5 are wanted.`);
}

/** Each has had a reply, and then asks for nothing. */
async function idleConnections({ server, wanted, memory }) {
  const before = memory();
  const client = new Client(idle);
  const ask = async (count) => {
    const replies = await Promise.all(range(count).map(() => client.request('GET', server.urls.backend + guest)));
    assert.ok(replies.every(({ status }) => status === 200), 'a call has no reply');
  };
  await ask(idle);
  const grown = memory() - before;
  await wanted(200, 'backend', `GET ${guest}`);
  const [kept, again] = [client.connections, Math.min(idle, 100)];
  await ask(again);
  console.log(`${kept} idle connections, each of which had a reply, cost ${grown.toFixed(0)} MiB; less than 200 are wanted. ${again} that ask again have one, too.`);
  assert.deepEqual([kept, client.connections], [idle, idle], 'a connection has ended');
  client.close();
}

await withServed(async (served) => {
  await served.wanted(200, 'backend', `PUT ${guest}`);
  await heldCalls(served);
  await idleConnections(served);
}, '--answer-limit', '600000');
