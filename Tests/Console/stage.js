// One browser a file, and for each test a server and a fresh window of it.
import assert from 'node:assert/strict';
import { after, test } from 'node:test';
import { withServer } from '../Server/server.js';
import { browser, Person } from './person.js';

after(() => browser.close());

/** What no page may do, whatever happens to it. */
function complaintsOf(context, url) {
  const complaints = [];
  context.on('weberror', (event) => complaints.push(`thrown: ${event.error().message}`));
  context.on('console', (message) => {
    // Which Chromium says of every request that was refused.
    if (message.text().startsWith('Failed to load resource')) return;
    if (['error', 'warning'].includes(message.type())) complaints.push(`console: ${message.text()}`);
  });
  context.on('request', (request) => {
    const { protocol, origin } = new URL(request.url());
    if (origin !== url && !['data:', 'blob:'].includes(protocol)) complaints.push(`foreign: ${request.url()}`);
  });
  return complaints;
}

/**
 * A test that begins before a fresh console. What the page and the server said is shows when it
 * fails. The body gets a person, the server, a way to open another page beside it and the size.
 */
export function onConsole(name, body, view = {}) {
  test(name, { timeout: 60_000 }, () => withServer(async (server) => {
    const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, ...view });
    context.setDefaultTimeout(15_000);
    const complaints = complaintsOf(context, server.urls.console);
    const open = async (url = server.urls.console) => {
      const person = new Person(await context.newPage());
      await person.page.goto(url);
      await person.connection.filter({ hasText: 'Live' }).waitFor();
      return person;
    };
    let person;
    try {
      person = await open();
      await body(person, server, open, context.pages()[0].viewportSize());
      assert.deepEqual(complaints, []);
    } catch (error) {
      const seen = await person?.seen().catch(() => 'no more');
      throw new Error([error.stack, '— seen:', seen, ...complaints].join('\n'));
    } finally {
      await context.close();
    }
  }));
}

/** The same at each size that people have. */
export function atEachSize(name, body) {
  for (const [width, height] of [[1280, 800], [1440, 900], [390, 844], [320, 640]]) {
    onConsole(`${name}, at ${width} x ${height}`, body, { viewport: { width, height } });
  }
}
