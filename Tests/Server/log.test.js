// Every request is on record, whatever became of it.
import assert from 'node:assert/strict';
import { once } from 'node:events';
import net from 'node:net';
import { onServer, streamOf } from './documents.js';
import { registeredCard } from './server.js';

const guest = '/v1/guests/guest@example.com';
const cards = `${guest}/cards`;
const log = '/v1/sandbox/requests';
const pathsOf = ({ requests }) => requests.map(({ path }) => path);

onServer('the log has every request, rejected ones included, and finds them', async ({ server, call, expect }) => {
  await expect(200, 'backend', `PUT ${guest}`);
  await expect(200, 'provider', 'POST /v1/sandbox/faults', { body: { operation: 'addCreditCardForGuest', kind: 'delay', delay_ms: 1 } });
  const stream = await streamOf(server.urls.provider, `${log}/stream`);
  await expect(404, 'backend', 'GET /v1/guests/nobody@x');
  await expect(415, 'backend', `POST ${cards}`);
  await expect(401, 'provider', 'POST /v1/users', { body: {}, headers: { 'X-API-Key': undefined } });
  await expect(403, 'console', 'GET /stored', { headers: { Origin: 'http://evil.example' } });
  const socket = net.connect(new URL(server.urls.backend).port, '127.0.0.1').end('garbage\r\n\r\n');
  assert.match(String(await once(socket, 'data')), / 400 /);
  const { headers: { 'x-request-id': id } } = await call('backend', `POST ${cards}`, { body: registeredCard('ins_x') });
  await expect(405, 'backend', `DELETE ${guest}`);
  // A read that finds nothing is undone, and takes no record with it.
  await expect(404, 'provider', `GET ${log}/unknown`);
  await stream.upTo('event: request', 8);

  const read = (query) => expect(200, 'provider', `GET ${log}?${query}`);
  assert.deepEqual(pathsOf(await read('status=404')), ['/v1/guests/nobody@x', `${log}/unknown`]);
  assert.equal((await read('status=4xx')).requests.length, 7);
  assert.deepEqual(pathsOf(await read('method=DELETE')), [guest]);
  assert.deepEqual(pathsOf(await read('fault=any')), [cards]);
  assert.deepEqual(pathsOf(await read('path=cards&status=415')), [cards]);
  const record = await expect(200, 'provider', `GET ${log}/${id}`);
  assert.deepEqual([record.fault, record.listener, record.events.length], ['delay', 'backend', 3]);
  assert.ok(record.duration_ms > 0 && record.reply_bytes > record.request_bytes);
  assert.equal(record.events[1].what, "fault 'delay' met addCreditCardForGuest");

  // Page after page, each request once, and what is read does not shift the pages.
  const numbers = [];
  for (let next = 0; next !== null && numbers.length < 9;) {
    const page = await read(`limit=2&after=${next}`);
    assert.ok(page.requests.length <= 2);
    numbers.push(...page.requests.map(({ number }) => number));
    ({ next } = page);
  }
  assert.ok(numbers.length >= 9 && numbers.every((number, at) => at === 0 || number > numbers[at - 1]));
  assert.deepEqual((await read('')).gaps, []);

  const { log: { entries: [entry, ...more] } } = await expect(200, 'provider', 'GET /v1/sandbox/har?status=201');
  assert.deepEqual(more, []);
  assert.deepEqual([entry._id, entry.time, entry.response.bodySize], [id, record.duration_ms, record.reply_bytes]);
});

onServer("a sandbox's log is followed until it is deleted", async ({ server, expect }) => {
  await expect(201, 'provider', 'PUT /v1/sandboxes/a');
  const stream = await streamOf(server.urls.provider, `/sandboxes/a${log}/stream`);
  await expect(404, 'backend', 'GET /nothing');
  await expect(404, 'backend', 'GET /sandboxes/a/nowhere');
  assert.ok(!(await stream.upTo('/nowhere')).includes('/nothing'));
  await expect(204, 'provider', 'DELETE /v1/sandboxes/a');
  await stream.end();
});

onServer('the log says what a process that was killed took with it', async ({ server, expect }) => {
  await expect(404, 'backend', `GET ${guest}`);
  const before = await expect(200, 'provider', `GET ${log}`);
  assert.equal(pathsOf(before).at(-1), guest);
  for (const signal of ['SIGKILL', 'SIGTERM']) {
    await server.end(signal);
    await server.start();
    const { gaps, requests } = await expect(200, 'provider', `GET ${log}`);
    assert.equal(gaps.length, 1, 'what ends in order leaves none');
    assert.ok(gaps[0].after >= before.requests.at(-1).number && requests.length >= before.requests.length);
  }
});
