// Requests that the documents' schemas make: good ones, and the same ones spoilt in every way that is known.
import { newCard } from './server.js';

/** Where the driver's requests act, so that what one group does to a sandbox does not reach the others. */
export const sandboxes = { services: '/sandboxes/drive-services', control: '/sandboxes/drive-control' };
const guests = ['a@example.com', 'b@example.com', 'c@example.com'];

/** Repeats for the same seed. */
export class Random {
  #state;
  constructor(seed) { this.#state = seed >>> 0; }

  below(limit) {
    this.#state = (this.#state + 0x6D2B79F5) >>> 0;
    let mixed = Math.imul(this.#state ^ (this.#state >>> 15), this.#state | 1);
    mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
    return ((mixed ^ (mixed >>> 14)) >>> 0) % limit;
  }

  of(list) { return list[this.below(list.length)]; }
  chance(percent) { return this.below(100) < percent; }
  letters(count) { return Array.from({ length: count }, () => String.fromCharCode(97 + this.below(26))).join(''); }
}

const oddTexts = [
  '', ' ', 'ü', 'ß'.repeat(600), 'אבג', '👩‍👩‍👧', 'e\u0301', '\u202Eabc', '\uFEFF', '\u0000', '\u001b[31m', 'a\nb', '１２３４', '\uD800',
  "' OR 1=1 --", '../../etc/passwd', '<script>', '%00', '{{7}}', 'null', 'x'.repeat(1_024), 'x'.repeat(1_025), 'x'.repeat(9_000), '😀'.repeat(256),
];
const oddValues = [
  null, true, false, 0, -1, 1, 1.5, 1e300, -9_007_199_254_740_993n, 18_446_744_073_709_551_616n, [], {}, [[]], [null], { a: {} }, 'text',
];
const oddBodies = [
  '', ' ', '{', '}', '[]', '[1,2', 'null', 'true', '1e999', '"text"', '{"a":1,}', '{"a":1}{"b":2}', "{'a':1}", '{"a":\u00001}', '{"a":NaN}',
  '\uFEFF{}', '['.repeat(50_000), '{"a":'.repeat(2_000), '{"a":1,"a":2}', `{"${'k'.repeat(5_000)}":1}`, `"${'x'.repeat(65_000)}"`, 'x'.repeat(70_000),
  Buffer.from([0x7b, 0x22, 0xff, 0xfe, 0x22, 0x7d]), Buffer.from([0xc0, 0x80]), Buffer.alloc(300), Buffer.from('{"a":"\xff"}', 'latin1'),
];
const oddParts = ['', '.', '..', '%00', '%ff', '%', '%zz', '%2F', '%2e%2e', '*', 'x'.repeat(300), 'x'.repeat(3_000), '%F0%9F%98%80', 'a@b', '-1', '0', '99999999999', "'", '%27%20OR%201=1'];
const oddQueries = ['', '&', '=', '&&==', 'x=%', 'x=%zz', 'x=%00', 'after=-1', 'after=x', 'limit=0', 'limit=-5', 'limit=1e9', 'limit=99999999999', 'use_case=', 'use_case=other', 'use_case=private&use_case=business',
  'number=x', 'number=1.5', 'guest=', 'guest=nobody@example.com', 'status=4', 'status=9xx', 'fault=other', `q=${'x'.repeat(3_000)}`, 'a[]=1', 'unknown=1'];
const oddHeaders = [
  { 'X-API-Key': undefined }, { 'X-API-Key': '' }, { Authorization: 'Bearer ses_unknown' }, { Authorization: 'Bearer' }, { Authorization: 'x'.repeat(4_000) },
  { 'Content-Type': 'text/plain' }, { 'Content-Type': '' }, { 'Content-Encoding': 'gzip' }, { Prefer: '=,;' }, { 'Idempotency-Key': '' }, { 'Idempotency-Key': 'x'.repeat(201) },
  { Host: 'elsewhere.example' }, { Host: '' }, { Origin: 'http://elsewhere.example' }, { Origin: 'null' }, { Range: 'bytes=0-1' }, { Expect: '200-ok' }, { 'X-Filler': 'x'.repeat(60_000) },
];
const methods = ['GET', 'HEAD', 'POST', 'PUT', 'PATCH', 'DELETE', 'OPTIONS', 'PROPFIND', 'LOCK', 'MKCOL'];

/** A text that JSON can hold; big numbers stay what they are. */
const jsonOf = (value) => {
  const big = [];
  const text = JSON.stringify(value, (_, each) => (typeof each === 'bigint' ? `@${big.push(each) - 1}@` : each));
  return text?.replace(/"@(\d+)@"/g, (_, at) => String(big[at]));
};

export class Requests {
  #documents;
  #operations;
  /** What replies have named so far. */
  known = { token: [], id: [], identifier: [], session: [], number: ['1'], request: [], snapshot: [] };

  constructor(documents, random) {
    this.#documents = documents;
    this.random = random;
    this.#operations = [...documents.operations()].filter(({ operation }) =>
      // It does not end, and has a test of its own.
      operation.operationId !== 'streamRequests');
  }

  get count() {
    return this.#operations.length;
  }

  /** A request of the operation of that number: `{port, method, target, options, isGood}`. */
  make(number, isGood) {
    const chosen = this.#operations[number % this.#operations.length];
    const { name, path, method, operation, parameters } = chosen;
    const body = this.#documents.resolve(name, operation.requestBody)?.content['application/json'].schema;
    const request = {
      port: name === 'backend' || name === 'provider' ? name : this.random.of(['provider', 'console']),
      prefix: { backend: sandboxes.services, provider: sandboxes.services, control: sandboxes.control, sandboxes: '' }[name],
      method, parts: path.split('/').slice(1).map((part) => this.#part(name, operation, part)),
      query: this.#query(name, parameters), headers: this.#headers(name, parameters),
      // Whatever takes no body takes an empty one.
      body: body ? this.#sample(name, body, operation.operationId) : method === 'POST' ? {} : undefined,
      id: operation.operationId,
    };
    if (!isGood) for (let times = 1 + this.random.below(2); times > 0; --times) this.#spoil(request);
    const query = request.query.length > 0 ? `?${request.query.join('&')}` : '';
    const content = Buffer.isBuffer(request.body) || typeof request.body === 'string' ? request.body : jsonOf(request.body);
    return {
      port: request.port, method: request.method, target: `${request.prefix}/${request.parts.join('/')}${query}`, isGood,
      id: request.id, options: { body: content, headers: request.headers },
    };
  }

  /** Keeps what the reply names, for requests to come. */
  learn({ id }, { status, body }) {
    if (status >= 300 || !body) return;
    const remember = (kind, value) => {
      if (typeof value === 'string' || typeof value === 'number') this.known[kind] = [...this.known[kind].slice(-7), String(value)];
    };
    remember('token', body.token);
    remember('id', body.credit_card?.id);
    remember('identifier', body.instruments?.[0]?.identifier);
    remember('number', body.fault?.number);
    remember('snapshot', body.snapshot);
    if (id === 'signIn') remember('session', `${body.email} ${body.session}`);
    if (id === 'listRequests') remember('request', body.requests?.at(-1)?.id);
  }

  #one(kind) {
    return this.known[kind].length > 0 && this.random.chance(90) ? this.random.of(this.known[kind]) : 'none';
  }

  #part(name, { operationId }, part) {
    if (!part.startsWith('{')) return part;
    const isDrastic = /^(delete|reset|restore|create)Named|^deleteSandbox/.test(operationId);
    switch (part) {
      case '{email}': return this.random.of(guests);
      case '{token}': return this.#one('token');
      case '{identifier}': return this.#one('identifier');
      case '{number}': return this.#one('number');
      default:
    }
    if (name === 'backend') return this.#one('id');
    if (name === 'control') return this.#one('request');
    if (operationId === 'deleteSnapshot') return this.#one('snapshot');
    return isDrastic || operationId === 'createNamedSandbox' ? `made-${this.random.below(20)}` : this.random.of(['default', 'drive-control', 'made-3', 'none']);
  }

  #query(document, parameters) {
    return parameters.filter((each) => each.in === 'query' && (each.required || this.random.chance(40)))
      .map(({ name, schema, example }) => `${name}=${encodeURIComponent(example ?? (name === 'guest' ? this.random.of(guests) : this.#sample(document, schema, name)))}`);
  }

  #headers(name, parameters) {
    const headers = {};
    for (const each of parameters.filter((parameter) => parameter.in === 'header' && this.random.chance(50))) {
      headers[each.name] = each.name === 'Prefer' ? each.example : this.random.letters(20);
    }
    if (name === 'backend' && this.known.session.length > 0 && this.random.chance(30)) {
      headers.Authorization = `Bearer ${this.random.of(this.known.session).split(' ')[1]}`;
    }
    return headers;
  }

  /** A value that fits the schema, and means something where that is known. */
  #sample(name, unresolved, hint) {
    const own = this.#documents.resolve(name, unresolved);
    const schema = own.allOf ? { ...this.#documents.resolve(name, own.allOf[0]), ...own } : own;
    if (schema.oneOf) return this.#sample(name, this.random.of(schema.oneOf), hint);
    if ('const' in schema) return schema.const;
    if (schema.enum) return this.random.of(schema.enum);
    if (schema.properties?.number && schema.properties.security_code) return newCard();
    const [type] = [schema.type].flat();
    switch (type) {
      case 'object': {
        const required = schema.required ?? [];
        const names = Object.keys(schema.properties ?? {}).filter((each) => required.includes(each) || (!schema.properties[each].readOnly && this.random.chance(35)));
        return Object.fromEntries(names.map((each) => [each, this.#sample(name, schema.properties[each], each)]));
      }
      case 'array': return [];
      case 'boolean': return true;
      case 'integer': {
        const least = schema.minimum ?? 0;
        return least + this.random.below(Math.min(schema.maximum ?? 1_000, least + 1_000) - least + 1);
      }
      default:
    }
    const texts = {
      email: () => this.random.of(guests), guest: () => this.random.of(guests), payment_token: () => this.#one('token'), plv_token: () => this.#one('token'),
      last_four_digits: () => '1111', brand: () => 'visa', use_case: () => 'default', expiry_month: () => '12', expiry_year: () => '2099',
      external_identifier: () => `ins_${this.random.letters(20)}`, snapshot: () => this.#one('snapshot'), id: () => `made-${this.random.below(20)}`,
      clock: () => '2030-01-01T00:00:00Z', now: () => '2099-01-01T00:00:00Z', after: () => '0', status: () => '4xx', method: () => 'GET', path: () => 'guests',
    };
    return texts[hint]?.() ?? 'Erika Mustermann';
  }

  #spoil(request) {
    const ways = [
      () => { request.method = this.random.of(methods); },
      () => { request.parts[this.random.below(request.parts.length)] = this.random.of(oddParts); },
      () => { request.parts.push(this.random.of(oddParts)); },
      () => { request.parts.pop(); },
      () => { request.query.push(this.random.of(oddQueries)); },
      () => { request.query = request.query.slice(1); },
      () => { Object.assign(request.headers, this.random.of(oddHeaders)); },
      () => { request.prefix = this.random.of(['/sandboxes/none', '/sandboxes/', '/sandboxes', '/sandboxes/UPPER', '/sandboxes/%00', '/sandboxes/default/sandboxes/default', '//', '/v1']); },
      () => { request.body = this.random.of(oddBodies); },
    ];
    // Most is to be found in bodies.
    if (request.body && typeof request.body === 'object' && !Buffer.isBuffer(request.body) && this.random.chance(60)) this.#spoilMember(request.body);
    else this.random.of(ways)();
  }

  #spoilMember(object) {
    const names = Object.keys(object);
    const name = names.length > 0 ? this.random.of(names) : 'unknown';
    if (object[name] && typeof object[name] === 'object' && this.random.chance(70)) return this.#spoilMember(object[name]);
    const ways = [
      () => { object[name] = structuredClone(this.random.of(oddValues)); },
      () => { object[name] = this.random.of(oddTexts); },
      () => { delete object[name]; },
      () => { object[this.random.of(['unknown', 'cvv', '__proto__x', '', 'é', 'k'.repeat(2_000)])] = structuredClone(this.random.of(oddValues)); },
    ];
    this.random.of(ways)();
    return undefined;
  }
}
