// Requests that the documents' schemas make: good ones, and such as are spoilt wherever something can be.
import { newCard, require } from './server.js';

const fc = require('fast-check');

/** Where the driver's requests act, so that what one group does to a sandbox does not reach the others. */
export const sandboxes = { services: '/sandboxes/drive-services', control: '/sandboxes/drive-control' };
const guests = ['a@example.com', 'b@example.com', 'c@example.com'];

const oddValues = fc.oneof(fc.jsonValue(), fc.string({ unit: 'binary' }), fc.constantFrom(
  '', ' ', 'ß'.repeat(600), '\u202Eabc', '\uFEFF', '\u0000', '\u001b[31m', 'a\nb', '１２３４', '\uD800', "' OR 1=1 --", '../../etc/passwd',
  '%00', 'null', 'x'.repeat(1_024), 'x'.repeat(1_025), 'x'.repeat(9_000), '😀'.repeat(256), -1, 1.5, 1e300, 2 ** 63, 2 ** 64, [null], { a: {} }));
const oddBodies = fc.oneof(fc.json(), fc.string({ unit: 'binary' }), fc.uint8Array().map((bytes) => Buffer.from(bytes)), fc.constantFrom(
  '', '{', '[1,2', '1e999', '{"a":1,}', '{"a":1}{"b":2}', "{'a':1}", '{"a":\u00001}', '\uFEFF{}', '['.repeat(50_000), '{"a":'.repeat(2_000),
  '{"a":1,"a":2}', `{"${'k'.repeat(5_000)}":1}`, `"${'x'.repeat(65_000)}"`, 'x'.repeat(70_000), Buffer.from([0x7b, 0x22, 0xff, 0xfe, 0x22, 0x7d]), Buffer.from([0xc0, 0x80])));
const oddParts = fc.constantFrom('', '.', '..', '%00', '%ff', '%', '%zz', '%2F', '%2e%2e', '*', 'x'.repeat(300), 'x'.repeat(3_000), '%F0%9F%98%80', 'a@b', '-1', '0', '99999999999', '%27%20OR%201=1');
const oddQueries = fc.oneof(fc.webQueryParameters(), fc.constantFrom('&', '=', '&&==', 'x=%', 'x=%zz', 'x=%00', 'after=-1', 'after=x', 'limit=0', 'limit=-5', 'limit=1e9',
  'limit=99999999999', 'use_case=', 'use_case=other', 'use_case=private&use_case=business', 'number=x', 'guest=', 'guest=nobody@example.com', 'status=9xx', 'fault=other', `q=${'x'.repeat(3_000)}`));
const oddHeaders = fc.constantFrom(
  { 'X-API-Key': undefined }, { 'X-API-Key': '' }, { Authorization: 'Bearer ses_unknown' }, { Authorization: 'Bearer' }, { Authorization: 'x'.repeat(4_000) },
  { 'Content-Type': 'text/plain' }, { 'Content-Type': '' }, { 'Content-Encoding': 'gzip' }, { Prefer: '=,;' }, { 'Idempotency-Key': '' }, { 'Idempotency-Key': 'x'.repeat(201) },
  { Host: 'elsewhere.example' }, { Host: '' }, { Origin: 'http://elsewhere.example' }, { Origin: 'null' }, { Range: 'bytes=0-1' }, { Expect: '200-ok' }, { 'X-Filler': 'x'.repeat(60_000) });
const oddPrefixes = fc.constantFrom('/sandboxes/none', '/sandboxes/', '/sandboxes', '/sandboxes/UPPER', '/sandboxes/%00', '/sandboxes/default/sandboxes/default', '//', '/v1');
const methods = fc.constantFrom('GET', 'HEAD', 'POST', 'PUT', 'PATCH', 'DELETE', 'OPTIONS', 'PROPFIND', 'LOCK', 'MKCOL');

export class Requests {
  #documents;
  #operations;
  /** What replies have named so far. */
  #known = { token: [], id: [], identifier: [], session: [], number: ['1'], request: [], snapshot: [] };
  #isGood;

  constructor(documents) {
    this.#documents = documents;
    // What does not end has a test of its own.
    this.#operations = [...documents.operations()].filter(({ operation }) => operation.operationId !== 'streamRequests');
  }

  get count() {
    return this.#operations.length;
  }

  /** A request of the operation of that number: `{port, method, target, options, id}`. Repeats for the same seed and the same replies. */
  make(number, seed, isGood) {
    this.#isGood = isGood;
    const { name, path, method, operation, parameters } = this.#operations[number % this.count];
    const body = this.#documents.resolve(name, operation.requestBody)?.content['application/json'].schema;
    const isService = name === 'backend' || name === 'provider';
    const [request] = fc.sample(fc.record({
      port: isService ? fc.constant(name) : fc.constantFrom('provider', 'console'),
      method: this.#mostly(fc.constant(method), methods),
      prefix: this.#mostly(fc.constant(isService ? sandboxes.services : name === 'control' ? sandboxes.control : ''), oddPrefixes),
      parts: fc.tuple(...path.split('/').slice(1).map((part) => this.#mostly(this.#part(name, operation, part), oddParts))),
      query: this.#mostly(this.#query(name, parameters), oddQueries),
      headers: fc.tuple(this.#headers(name, parameters), this.#mostly(fc.constant({}), oddHeaders)).map(([good, odd]) => ({ ...good, ...odd })),
      // Whatever takes no body takes an empty one.
      body: this.#mostly(body ? this.#sample(name, body) : fc.constant(method === 'POST' ? {} : undefined), oddBodies),
    }), { seed: seed + number, numRuns: 1 });
    const { port, prefix, parts, query, headers } = request;
    const isText = Buffer.isBuffer(request.body) || typeof request.body === 'string';
    return {
      port, method: request.method, target: `${prefix}/${parts.join('/')}${query && `?${query}`}`, id: operation.operationId,
      options: { body: isText ? request.body : JSON.stringify(request.body), headers },
    };
  }

  /** Keeps what the reply names, for requests to come. */
  learn({ id }, { status, body }) {
    if (status >= 300 || !body) return;
    const remember = (kind, value) => {
      if (typeof value === 'string' || typeof value === 'number') this.#known[kind] = [...this.#known[kind].slice(-7), String(value)];
    };
    remember('token', body.token);
    remember('id', body.credit_card?.id);
    remember('identifier', body.instruments?.[0]?.identifier);
    remember('number', body.fault?.number);
    remember('snapshot', body.snapshot);
    if (id === 'signIn') remember('session', body.session);
    if (id === 'listRequests') remember('request', body.requests?.at(-1)?.id);
  }

  #mostly(good, odd) {
    return this.#isGood ? good : fc.oneof({ weight: 9, arbitrary: good }, { weight: 1, arbitrary: odd });
  }

  #one(kind) {
    return fc.constantFrom(...this.#known[kind], 'none');
  }

  #part(name, { operationId }, part) {
    if (!part.startsWith('{')) return fc.constant(part);
    switch (part) {
      case '{email}': return fc.constantFrom(...guests);
      case '{token}': return this.#one('token');
      case '{identifier}': return this.#one('identifier');
      case '{number}': return this.#one('number');
      default:
    }
    if (name === 'backend') return this.#one('id');
    if (name === 'control') return this.#one('request');
    if (operationId === 'deleteSnapshot') return this.#one('snapshot');
    // What the others act in stays.
    return operationId === 'getSandbox' ? fc.constantFrom('default', 'drive-control', 'made-3', 'none') : fc.nat(19).map((at) => `made-${at}`);
  }

  #query(document, parameters) {
    const asked = parameters.filter((each) => each.in === 'query').map(({ name, schema, example, required }) => {
      const one = (example === undefined ? this.#sample(document, schema, name) : fc.constant(example)).map((value) => `${name}=${encodeURIComponent(Buffer.from(String(value)))}`);
      return required ? one : fc.option(one, { nil: '' });
    });
    return fc.tuple(...asked).map((each) => each.filter(Boolean).join('&'));
  }

  #headers(document, parameters) {
    const named = parameters.filter((each) => each.in === 'header')
      .map(({ name, example }) => [name, name === 'Prefer' ? fc.constant(example) : fc.string({ unit: fc.constantFrom(...'abcdefgh'), minLength: 8 })]);
    if (document === 'backend' && this.#known.session.length > 0) named.push(['Authorization', this.#one('session').map((session) => `Bearer ${session}`)]);
    return fc.record(Object.fromEntries(named), { requiredKeys: [] });
  }

  /** A value that fits the schema, and means something where that is known. */
  #sample(name, unresolved, hint) {
    const own = this.#documents.resolve(name, unresolved);
    const schema = own.allOf ? { ...this.#documents.resolve(name, own.allOf[0]), ...own } : own;
    return this.#mostly(this.#fitting(name, schema, hint), oddValues);
  }

  #fitting(name, schema, hint) {
    if (schema.oneOf) return fc.oneof(...schema.oneOf.map((each) => this.#sample(name, each, hint)));
    if ('const' in schema) return fc.constant(schema.const);
    if (schema.enum) return fc.constantFrom(...schema.enum);
    const { properties = {}, required = [], minimum = 0, maximum = minimum + 1_000 } = schema;
    if (properties.number && properties.security_code) return fc.constant(newCard());
    switch ([schema.type].flat()[0]) {
      case 'object': {
        const named = Object.keys(properties).filter((each) => required.includes(each) || !properties[each].readOnly);
        const members = fc.record(Object.fromEntries(named.map((each) => [each, this.#sample(name, properties[each], each)])), { requiredKeys: this.#isGood ? required : required.slice(1) });
        return this.#isGood ? members : fc.tuple(members, this.#mostly(fc.constant({}), fc.dictionary(fc.string(), oddValues))).map(([own, odd]) => ({ ...own, ...odd }));
      }
      case 'array': return fc.constant([]);
      case 'boolean': return fc.constant(true);
      case 'integer': return fc.integer({ min: minimum, max: Math.min(maximum, minimum + 1_000) });
      default:
    }
    const { token, snapshot } = this.#known;
    const texts = {
      email: guests, guest: guests, payment_token: token, plv_token: token, snapshot,
      last_four_digits: ['1111'], brand: ['visa'], use_case: ['default'], expiry_month: ['12'], expiry_year: ['2099'], external_identifier: ['ins_a', 'ins_b'],
      id: ['made-1', 'made-2', 'made-3'], clock: ['2030-01-01T00:00:00Z'], now: ['2099-01-01T00:00:00Z'], after: ['0'], status: ['4xx'], method: ['GET'], path: ['guests'],
    };
    return fc.constantFrom(...texts[hint]?.length > 0 ? texts[hint] : ['Erika Mustermann']);
  }
}
