// What somebody who sits before the console sees and does. Everything is found by its role and name.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';

export class Person {
  constructor(page) {
    const region = (name) => page.getByRole('region', { name });
    this.page = page;
    this.app = region('The app');
    this.story = region('The story');
    this.truth = region('The truth');
    this.connection = page.getByRole('banner').getByRole('status');
    this.verdict = this.truth.getByRole('status');
    this.cards = this.app.getByRole('listitem');
    this.matched = this.truth.getByRole('listitem').filter({ hasText: 'Matched:' });
    this.drifted = this.truth.getByRole('listitem').filter({ hasText: 'Drift:' });
    this.operations = page.getByRole('navigation', { name: 'Operations' }).getByRole('button');
    this.steps = this.story.getByRole('list', { name: 'The same operation, step by step' }).getByRole('listitem');
  }

  button(name) {
    return this.page.getByRole('button', { name, exact: true });
  }

  /** The app says so, of what was done last. */
  told(sentence) {
    return sees(this.app.getByRole('status').filter({ hasText: sentence }));
  }

  async signIn() {
    await this.button('Sign in').click();
    await this.told('Signed in.');
  }

  async add({ card = 'visa', useCase = 'default', city = '' } = {}) {
    await this.app.getByRole('radio', { name: card, exact: true }).check();
    await this.app.getByRole('radio', { name: useCase, exact: true }).check();
    if (city) {
      await this.app.getByText('Billing address', { exact: true }).click();
      await this.app.getByLabel('City').fill(city);
    }
    await this.button('Add card').click();
  }

  /** A guest with one card, of which everything has arrived. */
  async settleIn() {
    await this.signIn();
    await this.add();
    await this.told('Added visa •••• 1111.');
    await sees(this.matched);
    await this.seesStep('app: addPaymentInstrument: guest');
  }

  async makeScene(name) {
    await this.truth.getByRole('button', { name: new RegExp(`^${name}`) }).click();
  }

  async comeToForeground() {
    await this.button('Come to the foreground').click();
    await this.told('The app came to the foreground.');
  }

  async arm(operation, kind, { delay = 0, often = 'once' } = {}) {
    await this.truth.getByLabel('Call').selectOption(operation);
    await this.truth.getByLabel('What happens').selectOption(kind);
    await this.truth.getByLabel('How often').selectOption(often);
    await this.truth.getByLabel('Delay, ms').fill(String(delay));
    await this.button('Arm').click();
  }

  /** The steps in words are for ears: nobody sees them. */
  seesStep(text) {
    return this.steps.filter({ hasText: text }).first().waitFor({ state: 'attached' });
  }

  /** What the story's steps are, without those of log lines. */
  async stepTexts() {
    return (await this.steps.allTextContents()).map((text) => text.replace(/ \([^()]*\)$/, ''));
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
    const places = this.page.locator(':is([role=status], [role=alert], #steps li, #pairs li, #faults li)');
    return (await places.allInnerTexts()).map((text) => text.replace(/\s+/g, ' ')).join('\n');
  }

  isFocusedOn(locator) {
    return locator.evaluate((element) => element === document.activeElement);
  }

  async tabTo(locator) {
    for (let presses = 0; presses < 120; ++presses) {
      if (await this.isFocusedOn(locator)) return;
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
