// The page for everybody: without a mouse, without eyes, in the dark, without motion.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { require } from '../Server/server.js';
import { sees } from './person.js';
import { onConsole } from './stage.js';

const axe = readFileSync(require.resolve('axe-core'), 'utf8');

onConsole('Tab and a key lead through the page', async (guest) => {
  const { keyboard } = guest.page;
  const press = async (locator, key) => {
    await guest.tabTo(locator);
    await keyboard.press(key);
  };
  const seesFocus = (locator) => sees(locator.and(guest.page.locator(':focus')));
  await press(guest.app.getByLabel('E-mail address'), 'Enter');
  await guest.sees('Signed in.');
  await press(guest.app.getByRole('combobox', { name: 'Card' }), 'm');
  await press(guest.button('Add card'), 'Space');
  await press(guest.button('Delete mastercard •••• 4444'), 'Enter');
  await guest.sees('Deleted mastercard •••• 4444.');
  await seesFocus(guest.button('Add card'));

  await press(guest.page.getByRole('link', { name: 'Requests' }), 'Enter');
  const request = guest.requests.getByRole('link', { name: '/app/guest' });
  const part = guest.requests.getByRole('link', { name: 'Part of operation 1' });
  await press(request, 'Enter');
  await sees(part);
  await keyboard.press('Escape');
  await seesFocus(request);
  await keyboard.press('Enter');
  await sees(part);
  await press(part, 'Enter');
  await sees(guest.operations.filter({ hasText: 'sign in' }).and(guest.page.locator('[aria-current=true]')));
});

onConsole('axe finds nothing in any view, light or dark', async (guest) => {
  const check = async (where) => {
    for (const colorScheme of ['light', 'dark']) {
      await guest.page.emulateMedia({ colorScheme });
      const { violations } = await guest.page.evaluate(() => globalThis.axe.run({ rules: { 'label-content-name-mismatch': { enabled: true }, 'target-size': { enabled: true } } }));
      const found = violations.flatMap(({ id, nodes }) => nodes.map((node) => `${where}, ${colorScheme}: ${id}: ${node.html}`));
      assert.deepEqual(found, []);
    }
  };
  await guest.page.evaluate(axe);
  await check('at first');
  await guest.settleIn();
  await guest.arm('removePaymentInstrument', 'error');
  await guest.makeScenario('instrument without card');
  await guest.choose('Card', 'type one…');
  for (const summary of await guest.page.locator('summary').all()) await summary.click();
  await guest.comeToForeground();
  await check('app');
  await guest.button('Update address of visa •••• 1111').click();
  await check('address');
  await guest.button('Cancel').click();
  await guest.goTo('Timeline');
  await check('timeline');
  await guest.goTo('Requests');
  await guest.requests.getByRole('link', { name: '/app/foreground' }).click();
  await sees(guest.button('Copy as curl'));
  await check('requests');
  await guest.button(/^Sandbox/).click();
  await guest.button('Take a snapshot').click();
  await guest.sees('The snapshot is taken.');
  await check('sandboxes');
  await guest.dialog.getByRole('button', { name: 'Close' }).click();
  await guest.page.setViewportSize({ width: 390, height: 844 });
  for (const view of ['App', 'Timeline', 'Requests', 'Stored']) {
    await guest.goTo(view);
    await check(`${view} on a phone`);
  }
});

onConsole('forced colours show which switch is on and which view is chosen', async (guest) => {
  const style = (locator, name) => locator.evaluate((element, property) => getComputedStyle(element)[property], name);
  const network = guest.app.getByRole('switch', { name: 'Network' });
  const pictures = [];
  for (const state of ['off', 'on']) {
    await network.setChecked(state === 'on');
    await guest.sees(`The network is ${state}.`);
    pictures.push((await network.screenshot()).toString('base64'));
  }
  assert.notEqual(...pictures);
  assert.equal(await style(guest.page.getByRole('link', { name: 'App' }), 'outlineStyle'), 'solid');
  assert.equal(await style(guest.page.getByRole('link', { name: 'Requests' }), 'outlineStyle'), 'none');
}, { forcedColors: 'active' });

onConsole('what is new moves, unless motion is reduced', async (guest) => {
  const { page } = guest;
  await guest.settleIn();
  await page.evaluate(() => {
    globalThis.motions = 0;
    for (const kind of ['animationstart', 'transitionrun']) document.addEventListener(kind, () => { globalThis.motions += 1; });
  });
  for (const reducedMotion of ['reduce', 'no-preference']) {
    await page.emulateMedia({ reducedMotion });
    await guest.goTo('App');
    await guest.arm('fetchGuestCreditCards', 'delay', { delay: 1000 });
    await guest.button('Come to the foreground').click();
    await guest.goTo('Timeline');
    await guest.seesStep('Successfully synchronized');
    if (reducedMotion === 'reduce') assert.equal(await page.evaluate(() => globalThis.motions), 0);
    else await page.waitForFunction(() => globalThis.motions > 0);
  }
});
