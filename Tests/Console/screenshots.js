// Takes the pictures of the manual. Usage: in-chromium.sh PAYLEVENKIT FOLDER screenshots.js PICTURES
import { join } from 'node:path';
import { closeBrowser, openBrowser } from './browser.js';
import { Person, sees } from './person.js';
import { Server } from './server.js';

const desk = { width: 1440, height: 1000 };
const pictures = [
  { name: 'light', colorScheme: 'light', viewport: desk },
  { name: 'dark', colorScheme: 'dark', viewport: desk },
  { name: 'phone', colorScheme: 'light', viewport: { width: 390, height: 844 } },
];

const server = new Server();
await server.start();
const browser = await openBrowser();
const guest = new Person(await browser.newPage());
await guest.page.goto(server.url);
await guest.settleIn();
await guest.add({ card: 'mastercard', useCase: 'private', city: 'Hamburg' });
await guest.told('Added mastercard •••• 4444.');
// The kit finds what it has to remove, and cannot.
await guest.arm('removePaymentInstrument', 'error', { often: 'always' });
await guest.makeScene('instrument without card');
await guest.comeToForeground();

for (const { name, ...view } of pictures) {
  const { page, verdict, story } = new Person(await browser.newPage(view));
  await page.goto(server.url);
  await sees(verdict.filter({ hasText: '1 does not match.' }));
  await sees(story.locator('svg .bad').first());
  await story.getByRole('region', { name: 'Sequence diagram' }).evaluate((diagram) => diagram.scrollTo(0, 0));
  if (name === 'phone') await page.getByRole('link', { name: 'Truth' }).click();
  await page.screenshot({ path: join(process.argv[2], `${name}.png`), animations: 'disabled' });
}
await closeBrowser();
server.abandon();
