// The browser, and what somebody who sits before the console sees and does, by roles and names.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { require } from '../Server/server.js';

export const browser = await require('playwright-core').chromium.launch({
  executablePath: '/usr/bin/chromium',
  handleSIGTERM: false,
  args: ['--no-sandbox', '--disable-dev-shm-usage'],
});

export class Person {
  constructor(page) {
    // Some views are hidden, and so is stored data where there is no space for it.
    const region = (name) => page.getByRole('region', { name, exact: true, includeHidden: true });
    const stored = (text) => this.stored.getByRole('listitem', { includeHidden: true }).filter({ hasText: text });
    this.page = page;
    this.app = region('The app');
    this.testing = region('Faults and scenarios');
    this.timeline = region('Timeline');
    this.requests = region('Requests');
    this.stored = region('Stored data');
    this.happened = region('What happened');
    this.dialog = page.getByRole('dialog');
    this.connection = page.getByRole('banner').getByRole('status');
    this.verdict = page.locator('#verdict');
    this.cards = this.app.getByRole('list', { name: "The guest's cards" }).getByRole('listitem');
    this.matched = stored('Matched:');
    this.drifted = stored('Drift:');
    this.operations = page.getByRole('navigation', { name: 'Operations' }).getByRole('link');
    this.steps = this.timeline.getByRole('list', { name: 'The same operation, step by step' }).getByRole('listitem');
    this.rows = this.requests.getByRole('row').filter({ has: page.getByRole('link') });
  }

  button(name) {
    return this.page.getByRole('button', { name, exact: true });
  }

  /** The view of that name is shown. */
  async goTo(view) {
    await this.page.getByRole('navigation', { name: 'Views' }).getByRole('link', { name: view }).click();
  }

  /** It was said of what was done last, where no scrolling is needed to read it. */
  sees(sentence) {
    return this.seesInSight(this.page.locator('.outcome').filter({ hasText: sentence }));
  }

  /** Nothing is on it, and what is higher than 40 pixels begins in sight. */
  async seesInSight(locator) {
    await sees(locator);
    const isInSight = await locator.evaluate((element) => {
      const { left, top, right, height } = element.getBoundingClientRect();
      const corners = [[left + 4, top + 2], [right - 4, top + Math.min(height, 40) - 2]];
      return corners.every(([x, y]) => element.contains(document.elementFromPoint(x, y)));
    });
    assert.ok(isInSight, `${locator} is out of sight`);
  }

  async signIn() {
    await this.button('Sign in').click();
    await this.sees('Signed in.');
  }

  async add({ card = 'visa', useCase = 'default', city = '' } = {}) {
    await this.choose('Card', card);
    await this.app.getByRole('combobox', { name: 'Use case' }).selectOption(useCase);
    if (city) {
      await this.app.getByText('Billing address', { exact: true }).click();
      await this.app.getByLabel('City').fill(city);
    }
    await this.button('Add card').click();
  }

  choose(name, value) {
    return this.app.getByRole('combobox', { name, exact: true }).selectOption(value);
  }

  /** A guest with one card, of which everything has arrived. */
  async settleIn() {
    await this.signIn();
    await this.add();
    await this.sees('Added visa •••• 1111.');
  }

  async makeScenario(name) {
    await this.button(name).click();
    await this.sees(`Done: ${name}.`);
  }

  async comeToForeground() {
    await this.button('Come to the foreground').click();
    await this.sees('The app came to the foreground.');
  }

  async arm(operation, kind, { delay = 0, times = '1' } = {}) {
    await this.testing.getByRole('combobox', { name: 'Call' }).selectOption(operation);
    await this.testing.getByRole('combobox', { name: 'What happens' }).selectOption(kind);
    await this.testing.getByLabel('Times').fill(times);
    await this.testing.getByLabel('Delay, ms').fill(String(delay));
    await this.button('Arm').click();
    await this.sees(`Armed ${operation}: ${kind}`);
  }

  /** The steps in words are for ears: nobody sees them. */
  seesStep(text) {
    return this.steps.filter({ hasText: text }).first().waitFor({ state: 'attached' });
  }

  async exported(name) {
    const coming = this.page.waitForEvent('download');
    await this.button(name).click();
    return readFileSync(await (await coming).path(), 'utf8');
  }

  /** Everything that the page holds, what was typed included. */
  async everything() {
    const values = await this.page.locator('input, select').evaluateAll((fields) => fields.map((field) => field.value));
    return [await this.page.content(), ...values].join('\n');
  }

  /** What matters of the page, in lines. */
  async seen() {
    const places = this.page.locator(':is([role=status], #steps li, #pairs li, #faults li, #request-rows tr)');
    return (await places.allInnerTexts()).map((text) => text.replace(/\s+/g, ' ')).join('\n');
  }

  async tabTo(locator) {
    for (let presses = 0; presses < 80; ++presses) {
      if (await locator.evaluate((element) => element === document.activeElement)) return;
      await this.page.keyboard.press('Tab');
    }
    assert.fail(`Tab does not reach ${locator}`);
  }
}

export const sees = (locator) => locator.waitFor();

export async function seesCount(locator, count) {
  if (count > 0) await locator.nth(count - 1).waitFor({ state: 'attached' });
  await locator.nth(count).waitFor({ state: 'detached' });
}
