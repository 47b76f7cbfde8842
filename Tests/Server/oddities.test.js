// What is no proper request: each is answered or its connection closed, and nothing fails.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Documents } from './documents.js';
import { Client, connect, inTime, masked, withServer } from './server.js';

const head = (line, ...fields) => [line, 'Host: 127.0.0.1', 'X-API-Key: any', ...fields, '', ''].join('\r\n');
const get = 'GET /openapi.json HTTP/1.1';
const post = 'POST /v1/guests/a@example.com/cards HTTP/1.1';
const json = 'Content-Type: application/json';

/** Bytes, or pieces that are sent one after the other, by the statuses that they may get; without any, all, or none. */
const oddities = [
  // No request at all.
  [[], ['', 'G', '\r\n', '\r\n'.repeat(100), '\0'.repeat(64), Buffer.from(Array.from({ length: 256 }, (_, at) => at)), 'x'.repeat(100_000),
    Buffer.from('16030100c8010000c40303', 'hex'), 'PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n', 'HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n', '{"a": 1}\r\n\r\n']],
  // Request lines.
  [[200, 400, 505], ['1.0', '1.2', '9.9'].map((version) => head(`GET /openapi.json HTTP/${version}`))],
  [[400], ['GET /openapi.json http/1.1', 'GET /openapi.json', 'GET HTTP/1.1', 'GET  /openapi.json HTTP/1.1', 'GET\t/openapi.json\tHTTP/1.1',
    ' GET /openapi.json HTTP/1.1', 'G@T /openapi.json HTTP/1.1', 'GET /open api.json HTTP/1.1', 'GET /open\0api.json HTTP/1.1'].map((line) => head(line))],
  [[], ['BREW /openapi.json', 'get /openapi.json', 'TRACE /openapi.json', 'CONNECT example.com:443', 'OPTIONS *', 'GET http://127.0.0.1/openapi.json',
    'GET http://elsewhere.example/openapi.json', 'GET openapi.json', 'GET /openapi.json#a', `${'G'.repeat(5_000)} /`, `GET /${'a'.repeat(60_000)}`]
    .map((line) => head(`${line} HTTP/1.1`))],
  [[], ['GET /openapi.json\r\n\r\n', `\r\n${head(get)}`, Buffer.from(head('GET /\xff\xfe HTTP/1.1'), 'latin1')]],
  // Heads.
  [[], ['GET /openapi.json HTTP/1.1\nHost: 127.0.0.1\n\n', 'GET /openapi.json HTTP/1.1\rHost: 127.0.0.1\r\r', 'GET /openapi.json HTTP/1.1\r\n\r\n',
    'GET /openapi.json HTTP/1.1\r\nHost:\r\n\r\n']],
  [[400, 403], ['GET /openapi.json HTTP/1.1\r\nHost: 127.0.0.1:1:2@[::\r\n\r\n']],
  [[400], [': x', 'Field : x', 'Field: a\0b', 'Field: a\rb'].map((field) => head(get, field))],
  [[], ['Host: elsewhere.example', 'Field', 'Field: a\r\n b', `Field: ${'x'.repeat(40_000)}`, `${'f'.repeat(20_000)}: x`].map((field) => head(get, field))],
  [[], [Buffer.from(head(get, 'Field: \xff\xfe'), 'latin1'), head(get, ...Array.from({ length: 2_000 }, (_, at) => `F${at}: x`))]],
  // Bodies.
  [[400, 411, 415], [head(post, json)]],
  [[400], ['-5', '+5', '5x', '0x5'].map((length) => `${head(post, json, `Content-Length: ${length}`)}{"a":`)],
  [[400, 413], [9, 30].map((digits) => head(post, json, `Content-Length: ${'99'.repeat(digits)}`))],
  [[], [`${head(post, json, 'Content-Length: 2', 'Content-Length: 2')}{}`, `${head(post, json, 'Content-Length: 2, 2')}{}`, `${head(get, json, 'Content-Length: 2')}{}`,
    `${head(post, json, 'Content-Length: 2', 'Expect: 100-continue')}{}`, `${head(post, json, 'Content-Length: 2', 'Expect: coffee')}{}`]],
  [[400, 411, 413, 501], ['chunked', 'chunked, chunked', 'gzip', '\x0bchunked\r\nContent-Length: 2'].flatMap((encoding) =>
    ['2\r\n{}\r\n0\r\n\r\n', '0\r\n\r\n', 'zz\r\n{}', 'ffffffffffffffff\r\n{}'].map((body) => head(post, json, `Transfer-Encoding: ${encoding}`) + body))],
  [[400, 411], [`${head(post, json, 'Transfer-Encoding: chunked', 'Content-Length: 2')}2\r\n{}\r\n0\r\n\r\n`,
    `${head(post, json, 'Content-Length: 4', 'Transfer-Encoding: chunked')}0\r\n\r\nGET /openapi.json HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n`]],
  [[200, 400], [head(get, 'Connection: Upgrade', 'Upgrade: websocket'), head(get, 'Connection: Upgrade, HTTP2-Settings', 'Upgrade: h2c', 'HTTP2-Settings: AAMA')]],
  // In pieces.
  [[200], [[...head(get, 'Connection: close')], head(get) + head(get, 'Connection: close'), head(get).repeat(100) + head(get, 'Connection: close'),
    `${head(get)}garbage\r\n\r\n`]],
].flatMap(([statuses, all]) => all.map((bytes) => [bytes, statuses]));

/** Whether a whole reply stands at the beginning, of a status that ends an exchange. */
function isWhole(reply) {
  const head = reply.indexOf('\r\n\r\n') + 4;
  const length = /^HTTP\/1\.[01] (?!100)\d{3}[^]*\r\nContent-Length: (\d+)\r\n/i.exec(reply.slice(0, Math.max(head, 4) - 2))?.[1];
  return head >= 4 && length !== undefined && reply.length >= head + Number(length);
}

/**
 * What comes back. Whoever has to be answered waits for the first reply; nobody else waits: ending one's half of the
 * connection is leaving.
 */
async function exchange(url, bytes, isAnswered) {
  const socket = await connect(url);
  let reply = '';
  const over = new Promise((resolve) => {
    socket.on('data', (piece) => {
      reply += piece.toString('latin1');
      if (isWhole(reply)) resolve();
    });
    socket.on('close', resolve);
    socket.on('end', resolve);
  });
  for (const piece of [bytes].flat()) socket.write(piece);
  if (!isAnswered) socket.end();
  await inTime(over, 'a reply, or the end of the connection').finally(() => socket.destroy());
  return reply;
}

function problemOf(documents, reply, statuses) {
  if (reply === '') return statuses.length > 0 && statuses.every((status) => status < 300) ? 'no reply' : '';
  const match = /^HTTP\/1\.[01] (\d{3})[^\r]*\r\n([\s\S]*?)\r\n\r\n([\s\S]*)/.exec(reply);
  if (!match) return 'no HTTP';
  const status = Number(match[1]);
  if (status === 100) return problemOf(documents, match[3], statuses);
  if (status >= 500 && !statuses.includes(status)) return `status ${status}`;
  if (statuses.length > 0 && !statuses.includes(status)) return `status ${status}`;
  if (status < 400) return '';
  if (!/^X-Request-Id: req_[a-z]{20}$/im.test(match[2])) return 'no X-Request-Id';
  if (!/^Content-Type: application\/json/im.test(match[2])) return `status ${status} without an error`;
  const length = Number(/^Content-Length: (\d+)$/im.exec(match[2])?.[1]);
  const body = Buffer.from(match[3], 'latin1').subarray(0, length);
  return body.length === 0 ? '' : documents.mismatch('backend', 'schemas/Error', JSON.parse(body.toString()));
}

test('odd bytes', { timeout: 200_000 }, () => withServer(async (server) => {
  const client = new Client();
  assert.equal((await client.request('PUT', `${server.urls.backend}/v1/guests/a@example.com`)).status, 200);
  const documents = await Documents.of(server);
  const problems = [];
  for (const port of ['backend', 'provider', 'console']) {
    const results = await Promise.all(oddities.map(async ([bytes, statuses]) => {
      const name = JSON.stringify(String([bytes].flat().join(''))).slice(0, 100);
      const reply = await exchange(server.urls[port], bytes, statuses.length > 0).catch((error) => error);
      if (reply instanceof Error) return `${name}: ${reply.message}`;
      // The statuses are the backend's; the other ports do not have what it is asked for.
      const problem = problemOf(documents, reply, port === 'backend' ? statuses : []);
      return problem && `${name}: ${problem}: ${reply.slice(0, 200)}`;
    }));
    problems.push(...results.filter(Boolean).map((problem) => masked(`${port}: ${problem}`)));
  }
  assert.deepEqual(problems, []);
  const cards = await client.request('GET', `${server.urls.backend}/v1/guests/a@example.com/cards`);
  assert.deepEqual([cards.status, cards.body], [200, { credit_cards: [] }]);
  client.close();
}));
