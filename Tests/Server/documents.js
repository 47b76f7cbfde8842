// The OpenAPI documents, and whether a reply is one that they describe.
import { readFileSync } from 'node:fs';
import { require } from './modules.js';

const Ajv = require('ajv/dist/2020').default;
const addFormats = require('ajv-formats').default;

const load = (name) => JSON.parse(readFileSync(new URL(`../../Server/openapi/${name}.json`, import.meta.url)));
/** Which documents describe a port, the most particular paths first. */
const described = { backend: ['backend'], provider: ['control', 'sandboxes', 'provider'], console: ['control', 'sandboxes'] };
const escaped = (text) => text.replaceAll('~', '~0').replaceAll('/', '~1');

/** A reply holds nothing that its schema does not name. */
function close(schema) {
  if (Array.isArray(schema)) schema.forEach(close);
  if (schema === null || typeof schema !== 'object') return;
  if (schema.properties && schema.type?.includes('object')) schema.additionalProperties ??= false;
  Object.values(schema).forEach(close);
}

export class Documents {
  #ajv = addFormats(new Ajv({ strict: false, allErrors: false }));
  #checks = new Map();
  documents = {};

  constructor() {
    for (const name of ['backend', 'provider', 'control', 'sandboxes']) {
      this.documents[name] = load(name);
      const closed = load(name);
      Object.values(closed.components.responses).forEach(({ content }) => close(content));
      close(closed.components.schemas);
      this.#ajv.addSchema({ ...closed, $id: name });
    }
  }

  /** What a document of that name has at a reference of its own. */
  resolve(name, value) {
    if (!value?.$ref) return value;
    return value.$ref.slice(2).split('/').reduce((at, part) => at[part.replaceAll('~1', '/').replaceAll('~0', '~')], this.documents[name]);
  }

  /** Every operation: `{name, path, method, operation, parameters}`. */
  *operations() {
    for (const [name, document] of Object.entries(this.documents)) {
      for (const [path, { parameters: shared = [], ...methods }] of Object.entries(document.paths)) {
        for (const [method, operation] of Object.entries(methods)) {
          const parameters = [...shared, ...operation.parameters ?? []].map((each) => this.resolve(name, each));
          yield { name, path, method: method.toUpperCase(), operation, parameters };
        }
      }
    }
  }

  /** What is wrong with a reply from the port of that name; empty when it is one that is described. */
  problem(port, method, target, reply) {
    if (reply.status === 0) return '';
    const path = target.split('?')[0].replace(/^\/sandboxes\/[^/]*(?=\/)/, '').replace(/\/$/, '');
    return this.#wrongHead(reply) || this.#wrongBody(port, method, path, reply);
  }

  #wrongHead({ status, headers, body }) {
    const id = headers['x-request-id'];
    if (!/^req_[a-z]{20}$/.test(id ?? '')) return 'no X-Request-Id';
    if (headers['x-content-type-options'] !== 'nosniff' || headers['cache-control'] !== 'no-store' ||
      headers['referrer-policy'] !== 'no-referrer' || !headers['content-security-policy']) return 'a safety header is missing';
    if (status >= 400 && body?.error && body.error.request_id !== id) return 'the error has another request_id';
    return '';
  }

  #wrongBody(port, method, path, reply) {
    const match = this.#find(port, method, path);
    const { name, operation } = match ?? { name: described[port][0] };
    const response = operation && (operation.responses[reply.status] ?? operation.responses[`${String(reply.status)[0]}XX`] ?? operation.responses.default);
    if (operation && !response) return `the status ${reply.status} is not described`;
    // The page and its app are described in docs/, not here.
    if (!operation && port === 'console' && reply.status < 400) return '';
    if (!operation && reply.status < 400) return `status ${reply.status}, but the operation is not described`;
    if (method === 'HEAD') return '';
    if (!response) return this.#mismatch(`${name}#/components/schemas/Error`, reply);
    const { content } = this.resolve(name, response);
    if (!content) return reply.text === '' ? '' : 'there is a body';
    const [type] = Object.keys(content);
    if (!reply.headers['content-type']?.startsWith(type)) return `not ${type}`;
    return this.#mismatch(`${name}${response.$ref}/content/${escaped(type)}/schema`, reply);
  }

  #find(port, method, path) {
    const parts = path.split('/');
    const fits = (template) => {
      const names = template.split('/');
      return names.length === parts.length && names.every((part, at) => part === parts[at] || (part.startsWith('{') && parts[at]));
    };
    // Literal segments win.
    const candidates = described[port].flatMap((name) => Object.keys(this.documents[name].paths).filter(fits).map((template) => ({ name, template })));
    candidates.sort((a, b) => a.template.split('{').length - b.template.split('{').length);
    if (candidates.length === 0) return null;
    const [{ name, template }] = candidates;
    const operation = this.documents[name].paths[template][(method === 'HEAD' ? 'GET' : method).toLowerCase()];
    return operation ? { name, operation } : null;
  }

  #mismatch(reference, { body }) {
    if (body === undefined) return 'the body is no JSON';
    if (!this.#checks.has(reference)) this.#checks.set(reference, this.#ajv.compile({ $ref: reference }));
    const check = this.#checks.get(reference);
    if (check(body)) return '';
    const [{ instancePath, message, params }] = check.errors;
    return `body${instancePath} ${message} ${JSON.stringify(params)}`;
  }

  /** What is wrong with a value that is to fit a schema of a document. */
  mismatch(name, schema, body) {
    return this.#mismatch(`${name}#/components/schemas/${schema}`, { body });
  }
}
