// What is no proper request: each is answered or its connection closed, and nothing fails.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Documents } from './documents.js';
import { Client, connect, inTime, masked, withServer } from './server.js';

const head = (line, ...fields) => [line, 'Host: 127.0.0.1', 'X-API-Key: any', ...fields, '', ''].join('\r\n');
const get = 'GET /openapi.json HTTP/1.1';
const post = 'POST /v1/guests/a@example.com/cards HTTP/1.1';
const json = 'Content-Type: application/json';

/** Bytes, or pieces that are sent one after the other. What has no statuses may get any, or none. */
const oddities = [
  // No request at all.
  ['nothing', '', []],
  ['one byte', 'G'],
  ['CRLF', '\r\n'],
  ['many CRLF', '\r\n'.repeat(100)],
  ['garbage', 'garbage\r\n\r\n', [400]],
  ['NULs', '\0'.repeat(64)],
  ['bytes', Buffer.from(Array.from({ length: 256 }, (_, at) => at))],
  ['a long line', 'x'.repeat(100_000)],
  ['a TLS hello', Buffer.from('16030100c8010000c40303', 'hex')],
  ['an HTTP/2 preface', 'PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n'],
  ['a reply', 'HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n'],
  ['JSON', '{"a": 1}\r\n\r\n'],
  // Request lines.
  ['HTTP/0.9', 'GET /openapi.json\r\n\r\n'],
  ['HTTP/1.0', 'GET /openapi.json HTTP/1.0\r\nHost: 127.0.0.1\r\nX-API-Key: any\r\n\r\n', [200, 400]],
  ['HTTP/1.2', head('GET /openapi.json HTTP/1.2'), [200, 400, 505]],
  ['HTTP/9.9', head('GET /openapi.json HTTP/9.9'), [400, 505]],
  ['http/1.1', head('GET /openapi.json http/1.1'), [400]],
  ['no version', head('GET /openapi.json'), [400]],
  ['no target', head('GET HTTP/1.1'), [400]],
  ['two spaces', head('GET  /openapi.json HTTP/1.1'), [400]],
  ['a tab', head('GET\t/openapi.json\tHTTP/1.1'), [400]],
  ['a space before', head(' GET /openapi.json HTTP/1.1'), [400]],
  ['CRLF before', `\r\n${head(get)}`],
  ['a bad method', head('G@T /openapi.json HTTP/1.1'), [400]],
  ['a long method', head(`${'G'.repeat(5_000)} / HTTP/1.1`)],
  ['an unknown method', head('BREW /openapi.json HTTP/1.1')],
  ['a lower-case method', head('get /openapi.json HTTP/1.1')],
  ['TRACE', head('TRACE /openapi.json HTTP/1.1')],
  ['CONNECT', head('CONNECT example.com:443 HTTP/1.1')],
  ['OPTIONS *', head('OPTIONS * HTTP/1.1')],
  ['an absolute target', head('GET http://127.0.0.1/openapi.json HTTP/1.1')],
  ['a foreign absolute target', head('GET http://elsewhere.example/openapi.json HTTP/1.1')],
  ['no slash', head('GET openapi.json HTTP/1.1')],
  ['a fragment', head('GET /openapi.json#a HTTP/1.1')],
  ['a space in the target', head('GET /open api.json HTTP/1.1'), [400]],
  ['a NUL in the target', head('GET /open\0api.json HTTP/1.1'), [400]],
  ['bytes in the target', Buffer.from(head('GET /\xff\xfe HTTP/1.1'), 'latin1')],
  ['a long target', head(`GET /${'a'.repeat(2_000)} HTTP/1.1`), [414]],
  ['a very long target', head(`GET /${'a'.repeat(60_000)} HTTP/1.1`)],
  // Heads.
  ['LF only', 'GET /openapi.json HTTP/1.1\nHost: 127.0.0.1\n\n'],
  ['CR only', 'GET /openapi.json HTTP/1.1\rHost: 127.0.0.1\r\r'],
  ['no Host', 'GET /openapi.json HTTP/1.1\r\n\r\n'],
  ['two Hosts', head(get, 'Host: elsewhere.example')],
  ['an empty Host', 'GET /openapi.json HTTP/1.1\r\nHost:\r\n\r\n'],
  ['a foreign Host', 'GET /openapi.json HTTP/1.1\r\nHost: elsewhere.example\r\n\r\n', [403]],
  ['an odd Host', 'GET /openapi.json HTTP/1.1\r\nHost: 127.0.0.1:1:2@[::\r\n\r\n', [400, 403]],
  ['no colon', head(get, 'Field')],
  ['no name', head(get, ': x'), [400]],
  ['a space before the colon', head(get, 'Field : x'), [400]],
  ['a folded field', head(get, 'Field: a\r\n b')],
  ['a NUL in a field', head(get, 'Field: a\0b'), [400]],
  ['a bare CR in a field', head(get, 'Field: a\rb'), [400]],
  ['bytes in a field', Buffer.from(head(get, 'Field: \xff\xfe'), 'latin1')],
  ['many fields', head(get, ...Array.from({ length: 2_000 }, (_, at) => `F${at}: x`))],
  ['a huge field', head(get, `Field: ${'x'.repeat(40_000)}`)],
  ['a long name', head(get, `${'f'.repeat(20_000)}: x`)],
  // Bodies.
  ['no length', head(post, json), [400, 411, 415]],
  ['a length of -5', head(post, json, 'Content-Length: -5'), [400]],
  ['a length of +5', `${head(post, json, 'Content-Length: +5')}{"a":`, [400]],
  ['a length of 5x', head(post, json, 'Content-Length: 5x'), [400]],
  ['a hexadecimal length', head(post, json, 'Content-Length: 0x5'), [400]],
  ['an endless length', head(post, json, `Content-Length: ${'9'.repeat(11)}`), [400, 413]],
  ['an overflowing length', head(post, json, `Content-Length: ${'9 '.repeat(30).replaceAll(' ', '')}`), [400, 413]],
  ['two lengths', `${head(post, json, 'Content-Length: 2', 'Content-Length: 3')}{} `, [400]],
  ['two equal lengths', `${head(post, json, 'Content-Length: 2', 'Content-Length: 2')}{}`],
  ['a list of lengths', `${head(post, json, 'Content-Length: 2, 2')}{}`],
  ['chunked', `${head(post, json, 'Transfer-Encoding: chunked')}2\r\n{}\r\n0\r\n\r\n`, [411, 404, 422]],
  ['chunked and a length', `${head(post, json, 'Transfer-Encoding: chunked', 'Content-Length: 2')}2\r\n{}\r\n0\r\n\r\n`, [400, 411]],
  ['chunked twice', `${head(post, json, 'Transfer-Encoding: chunked, chunked')}0\r\n\r\n`, [400, 411, 501]],
  ['another encoding', `${head(post, json, 'Transfer-Encoding: gzip')}xx`, [400, 411, 501]],
  ['a hidden encoding', `${head(post, json, 'Transfer-Encoding: \x0bchunked', 'Content-Length: 2')}{}`, [400, 411]],
  ['a bad chunk', `${head(post, json, 'Transfer-Encoding: chunked')}zz\r\n{}`, [400, 411]],
  ['a huge chunk', `${head(post, json, 'Transfer-Encoding: chunked')}ffffffffffffffff\r\n{}`, [400, 411, 413]],
  ['a body too large', `${head(post, json, 'Content-Length: 70000')}${'x'.repeat(70_000)}`, [413]],
  ['a body on GET', `${head(get, json, 'Content-Length: 2')}{}`],
  ['100-continue', `${head(post, json, 'Content-Length: 2', 'Expect: 100-continue')}{}`],
  ['another expectation', `${head(post, json, 'Content-Length: 2', 'Expect: coffee')}{}`],
  ['an upgrade', head(get, 'Connection: Upgrade', 'Upgrade: websocket'), [200, 400]],
  ['a cleartext HTTP/2 upgrade', head(get, 'Connection: Upgrade, HTTP2-Settings', 'Upgrade: h2c', 'HTTP2-Settings: AAMA')],
  // In pieces.
  ['byte by byte', [...head(get, 'Connection: close')], [200]],
  ['two at once', head(get) + head(get, 'Connection: close'), [200]],
  ['a hundred at once', head(get).repeat(100) + head(get, 'Connection: close'), [200]],
  ['garbage behind a request', `${head(get)}garbage\r\n\r\n`, [200]],
  ['a smuggled request', `${head(post, json, 'Content-Length: 4', 'Transfer-Encoding: chunked')}0\r\n\r\nGET /openapi.json HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n`, [400, 411]],
];

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
  if (reply === '') return statuses?.length > 0 && statuses.every((status) => status < 300) ? 'no reply' : '';
  const match = /^HTTP\/1\.[01] (\d{3})[^\r]*\r\n([\s\S]*?)\r\n\r\n([\s\S]*)/.exec(reply);
  if (!match) return 'no HTTP';
  const status = Number(match[1]);
  if (status === 100) return problemOf(documents, match[3], statuses);
  if (status >= 500 && !statuses?.includes(status)) return `status ${status}`;
  if (statuses?.length > 0 && !statuses.includes(status)) return `status ${status}`;
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
    const results = await Promise.all(oddities.map(async ([name, bytes, statuses]) => {
      const reply = await exchange(server.urls[port], bytes, statuses?.length > 0).catch((error) => error);
      if (reply instanceof Error) return `${name}: ${reply.message}`;
      // The statuses are the backend's; the other ports do not have what it is asked for.
      const problem = problemOf(documents, reply, port === 'backend' ? statuses : undefined);
      return problem && `${name}: ${problem}: ${reply.slice(0, 200)}`;
    }));
    problems.push(...results.filter(Boolean).map((problem) => masked(`${port}: ${problem}`)));
  }
  assert.deepEqual(problems, []);
  const cards = await client.request('GET', `${server.urls.backend}/v1/guests/a@example.com/cards`);
  assert.deepEqual([cards.status, cards.body], [200, { credit_cards: [] }]);
  client.close();
}));
