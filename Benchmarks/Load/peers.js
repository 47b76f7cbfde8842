// The servers that ours is measured beside. `scripts/setup load` fetches them.
import { writeFileSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { setTimeout as wait } from 'node:timers/promises';
import { Program } from '../../Tests/Server/server.js';

const card = {
  id: 'crd_azyeghwywhuqvvjlhacj', brand: 'visa', last_four_digits: '1111', use_case: 'default', external_identifier: 'ins_jmoxichhszbmmydxjwxu',
  card_holder: 'Erika Mustermann', expiry_month: '12', expiry_year: '2099',
  billing_address: { street: null, city: null, country_code: null, zip: null, business_name: null },
};
const instrument = {
  identifier: 'ins_jmoxichhszbmmydxjwxu', number: 1, masked_number: '************1111', brand: 'visa', expiry_month: '12', expiry_year: '2099', state: 0,
};
/** Both lists, as each peer is asked to return them. */
const lists = { '/v1/guests/{name}/cards': { credit_cards: [card] }, '/v1/users/{name}/instruments': { instruments: [instrument] } };

/** A document whose examples are the replies. */
const openAPI = {
  openapi: '3.0.3', info: { title: 'Lists', version: '1' },
  paths: Object.fromEntries(Object.entries(lists).map(([path, example]) => [path, {
    parameters: [{ name: 'name', in: 'path', required: true, schema: { type: 'string' } }],
    get: { responses: { 200: { description: 'The list.', content: { 'application/json': { schema: { type: 'object' }, example } } } } },
  }])),
};

/** An environment whose routes have the replies as they are; what is missing is repaired. */
const mockoon = (port) => ({
  uuid: 'load', lastMigration: 33, name: 'load', port, hostname: '127.0.0.1', rootChildren: Object.keys(lists).map((uuid) => ({ type: 'route', uuid })),
  routes: Object.entries(lists).map(([uuid, reply]) => ({
    uuid, type: 'http', method: 'get', endpoint: uuid.slice(1).replace('{name}', ':name'),
    responses: [{ uuid: `${uuid}-200`, body: JSON.stringify(reply), statusCode: 200, bodyType: 'INLINE', disableTemplating: true, headers: [{ key: 'Content-Type', value: 'application/json' }] }],
  })),
});

class Peer extends Program {
  constructor(name, port, [program, ...options], [file, content], [cards, instruments] = ['/v1/guests/a@b/cards', '/v1/users/tok/instruments']) {
    super();
    const url = `http://127.0.0.1:${port}`;
    Object.assign(this, { name, url, program, options, file, content, cards: url + cards, instruments: url + instruments });
  }

  /** Begins anew: nothing of an earlier run is left. */
  async start(modules) {
    writeFileSync(join(this.folder, this.file), JSON.stringify(this.content));
    this.spawn(join(resolve(modules), '.bin', this.program), this.options, this.folder);
    for (let tries = 0; tries < 600 && !this.hasEnded; ++tries) {
      const reply = await fetch(this.cards).catch(() => wait(50));
      if (reply) return reply.text();
    }
    throw new Error(`${this.name} does not start: ${this.output}`);
  }
}

/** Each as fast as its own options allow: no logs, no checks of what nobody asks for. */
export const makePeers = ([prism, jsonServer, mock]) => [
  new Peer('Prism', prism, ['prism', 'mock', '-m', 'false', '-v', 'silent', '-p', prism, 'lists.json'], ['lists.json', openAPI]),
  // 0.17 writes the whole of its file at each change, without a sync.
  new Peer('json-server', jsonServer, ['json-server', '--quiet', '--port', jsonServer, 'db.json'],
    ['db.json', { cards: [card], instruments: [instrument], added: [] }], ['/cards', '/instruments']),
  new Peer('Mockoon', mock, ['mockoon-cli', 'start', '--data', 'mockoon.json', '--port', mock, '--repair', '--disable-log-to-file', '--disable-admin-api'],
    ['mockoon.json', mockoon(mock)]),
];
