// Takes the pictures of the manual. Usage: in-node.sh FOLDER scripts/screenshots.mjs PICTURES
import { join } from 'node:path';
import { browser, Person, sees } from '../Tests/Console/person.js';
import { Server } from '../Tests/Server/server.js';

const desktop = { width: 1280, height: 800 };
const pictures = [
  { name: 'app', view: 'App', viewport: desktop },
  { name: 'timeline', view: 'Timeline', viewport: desktop },
  { name: 'requests', view: 'Requests', viewport: desktop },
  { name: 'dark', view: 'Timeline', viewport: desktop, colorScheme: 'dark' },
  { name: 'phone', view: 'Timeline', viewport: { width: 390, height: 844 } },
];

const server = new Server();
await server.start();
const guest = new Person(await browser.newPage({ viewport: desktop }));
await guest.page.goto(server.urls.console);
await guest.settleIn();
await guest.add({ card: 'mastercard', useCase: 'private', city: 'Hamburg' });
await guest.sees('Added mastercard •••• 4444.');
// The kit finds what it has to remove, and cannot.
await guest.makeScenario('instrument without card');
await guest.arm('getPaymentInstrumentsList', 'delay', { delay: 300 });
await guest.arm('removePaymentInstrument', 'error', { times: '' });
await guest.comeToForeground();
await sees(guest.happened.getByText('could not be removed'));
const { backend, provider } = server.urls;
await fetch(`${backend}/v1/guests/phone@example.com`, { method: 'PUT' });
await fetch(`${backend}/v1/guests/phone@example.com/cards`);
await fetch(`${provider}/v1/users/tok_other/instruments?use_case=default`, { headers: { 'X-API-Key': 'any' } });

for (const { name, view, ...options } of pictures) {
  const person = new Person(await browser.newPage({ colorScheme: 'light', ...options }));
  await person.page.goto(server.urls.console);
  await sees(person.page.locator('#verdict', { hasText: '1 does not match.' }));
  await person.goTo(view);
  if (view === 'Timeline') await sees(person.timeline.locator('#diagram [data-tone=bad]').first());
  if (view === 'Requests') await person.rows.filter({ hasText: 'tok_other' }).getByRole('link').click();
  if (view === 'Requests') await sees(person.button('Copy as curl'));
  await person.page.mouse.move(0, 0);
  await person.page.screenshot({ path: join(process.argv[2], `${name}.png`), animations: 'disabled' });
}
await browser.close();
server.abandon();
