// The OpenAPI documents that a server has, and whether a reply is one that they describe.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { cardData, Client, masked, require, withServer } from './server.js';

const Ajv = require('ajv/dist/2020').default;
const addFormats = require('ajv-formats').default;

const places = {
  backend: ['backend', '/openapi.json'], provider: ['provider', '/openapi.json'],
  control: ['provider', '/v1/sandbox/openapi.json'], sandboxes: ['console', '/v1/sandboxes/openapi.json'],
};
/** Which documents describe a port. */
const described = { backend: ['backend'], provider: ['control', 'sandboxes', 'provider'], console: ['control', 'sandboxes'] };
const escaped = (text) => text.replaceAll('~', '~0').replaceAll('/', '~1');

/** A reply holds nothing that its schema does not name. */
function close(schema) {
  if (schema === null || typeof schema !== 'object') return;
  if (schema.properties) schema.additionalProperties ??= false;
  Object.values(schema).forEach(close);
}

export class Documents {
  #ajv = addFormats(new Ajv({ strict: false }));
  documents = {};

  static urls({ urls }) {
    return Object.fromEntries(Object.entries(places).map(([name, [port, path]]) => [name, urls[port] + path]));
  }

  static async of(server) {
    const self = new Documents();
    for (const [name, url] of Object.entries(Documents.urls(server))) {
      self.documents[name] = await (await fetch(url)).json();
      const closed = structuredClone(self.documents[name]);
      Object.values(closed.components.responses).forEach(({ content }) => close(content));
      close(closed.components.schemas);
      self.#ajv.addSchema({ ...closed, $id: name });
    }
    return self;
  }

  /** What a document of that name has at a reference of its own. */
  resolve(name, value) {
    return value?.$ref ? value.$ref.slice(2).split('/').reduce((at, part) => at[part], this.documents[name]) : value;
  }

  /** Every operation: `{name, path, method, operation, parameters}`. */
  *operations() {
    for (const [name, { paths }] of Object.entries(this.documents)) {
      for (const [path, { parameters: shared = [], ...methods }] of Object.entries(paths)) {
        for (const [method, operation] of Object.entries(methods)) {
          const parameters = [...shared, ...operation.parameters ?? []].map((each) => this.resolve(name, each));
          yield { name, path, method: method.toUpperCase(), operation, parameters };
        }
      }
    }
  }

  /** What sends 'METHOD /target' to a port, and returns a reply, which has to be described. */
  calling(client, urls) {
    return async (port, request, options) => {
      const [method, target] = request.split(' ');
      const reply = await client.request(method, urls[port] + target, options);
      assert.equal(this.problem(port, method, target, reply), '', masked(request));
      return reply;
    };
  }

  /** The same for a status: returns the body of a reply that has it. */
  expecting(client, urls) {
    const call = this.calling(client, urls);
    return async (status, ...request) => {
      const reply = await call(...request);
      assert.equal(reply.status, status, masked(`${request[1]}: ${reply.text.slice(0, 300)}`));
      return reply.body;
    };
  }

  /** What is wrong with a reply from the port of that name; empty when it is one that is described. */
  problem(port, method, target, { status, headers, body, text }) {
    if (status === 0) return '';
    if (cardData.test(text)) return 'a card number came back';
    const id = headers['x-request-id'];
    if (!/^req_[a-z]{20}$/.test(id ?? '')) return 'no X-Request-Id';
    if (headers['x-content-type-options'] !== 'nosniff' || headers['cache-control'] !== 'no-store' ||
      headers['referrer-policy'] !== 'no-referrer' || !headers['content-security-policy']) return 'a safety header is missing';
    if (status >= 400 && body?.error && body.error.request_id !== id) return 'the error has another request_id';
    const path = target.split('?')[0].replace(/^\/sandboxes\/[^/]*(?=\/)/, '').replace(/\/$/, '');
    const { name, operation } = this.#find(port, method === 'HEAD' ? 'GET' : method, path);
    // The page and its app are described in docs/, not here.
    if (!operation && status < 400) return port === 'console' ? '' : `status ${status}, but the operation is not described`;
    const response = operation?.responses[status] ?? operation?.responses[`${String(status)[0]}XX`];
    if (operation && !response) return `the status ${status} is not described`;
    if (method === 'HEAD') return '';
    if (!response) return this.mismatch(name, 'schemas/Error', body);
    const { content } = this.resolve(name, response);
    if (!content) return text === '' ? '' : 'there is a body';
    const [type] = Object.keys(content);
    if (!headers['content-type']?.startsWith(type)) return `not ${type}`;
    return this.mismatch(name, `${response.$ref.slice('#/components/'.length)}/content/${escaped(type)}/schema`, body);
  }

  #find(port, method, path) {
    const parts = path.split('/');
    const fits = (template) => {
      const names = template.split('/');
      return names.length === parts.length && names.every((part, at) => part === parts[at] || (part.startsWith('{') && parts[at]));
    };
    const found = described[port].flatMap((name) => Object.keys(this.documents[name].paths).filter(fits).map((template) => ({ name, template })));
    if (found.length === 0) return { name: described[port][0] };
    // Literal segments win.
    const [{ name, template }] = found.sort((a, b) => a.template.split('{').length - b.template.split('{').length);
    return { name, operation: this.documents[name].paths[template][method.toLowerCase()] };
  }

  /** What is wrong with a value that is to fit a schema below a document's components. */
  mismatch(name, place, body) {
    if (body === undefined) return 'the body is no JSON';
    if (this.#ajv.validate(`${name}#/components/${place}`, body)) return '';
    const [{ instancePath, message, params }] = this.#ajv.errors;
    return `body${instancePath} ${message} ${JSON.stringify(params)}`;
  }
}

/** A test that begins before a fresh server, whose replies all have to be described. */
export const onServer = (name, body) => test(name, { timeout: 200_000 }, () => withServer(async (server) => {
  const client = new Client(100);
  const documents = await Documents.of(server);
  const [call, expect] = [documents.calling(client, server.urls), documents.expecting(client, server.urls)];
  await body({ server, call, expect });
  client.close();
}));

/** A stream that is under way: what comes next of it, up to and with a text. */
export async function streamOf(url, path) {
  const { body } = await fetch(url + path, { headers: { 'X-API-Key': 'any' } });
  const reader = body.pipeThrough(new TextDecoderStream()).getReader();
  return {
    async upTo(text, count = 1) {
      let read = '';
      while (read.split(text).length <= count) {
        const { value, done } = await reader.read();
        assert.ok(!done, `no ${text}`);
        read += value;
      }
      return read;
    },
    async end() { while (!(await reader.read()).done); },
  };
}
