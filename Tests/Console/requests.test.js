// The requests of clients, and the sandboxes that they go to.
import assert from 'node:assert/strict';
import { sees, seesCount } from './person.js';
import { onConsole } from './stage.js';

onConsole('requests are listed as they come, filtered, shown, copied and exported', async (guest, server) => {
  const { backend, provider } = server.urls;
  const asProvider = { headers: { 'X-API-Key': 'any' } };
  await guest.settleIn();
  await guest.arm('addPaymentInstrument', 'refused');
  await guest.add({ card: 'mastercard' });
  await guest.sees('The service cannot be reached.');
  await guest.goTo('Requests');
  await fetch(`${backend}/v1/guests/a@example.com`, { method: 'PUT' });
  await fetch(`${provider}/v1/users/tok_none/instruments?use_case=default`, asProvider);
  await fetch(`${provider}/v1/users/${'4111'.repeat(4)}/instruments?use_case=default`);
  const refused = guest.rows.filter({ hasText: 'tok_none' });
  await sees(refused.filter({ hasText: '404' }).filter({ hasText: /\d ms/ }).filter({ hasText: 'req_' }));
  await sees(guest.rows.filter({ hasText: '***4111' }).filter({ hasText: '401' }));
  await seesCount(guest.rows.filter({ hasText: '4111111111111111' }), 0);
  await sees(guest.rows.filter({ hasText: 'createUserToken' }).filter({ hasText: 'operation 2' }));
  await seesCount(guest.rows.filter({ hasText: 'choices' }), 0);

  const filter = guest.requests.getByRole('searchbox', { name: 'Path' });
  await filter.fill('GUESTS/');
  await seesCount(guest.rows, 1);
  await guest.rows.getByRole('link', { name: '/v1/guests/a@example.com' }).click();
  await sees(guest.requests.getByText('at the backend'));
  await guest.page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
  await guest.button('Copy as curl').click();
  await guest.sees('Copied.');
  assert.ok((await guest.page.evaluate(() => navigator.clipboard.readText())).startsWith(`curl -i -X PUT '${backend}/v1/guests/a@example.com'`));
  await filter.fill('');
  const status = guest.requests.getByRole('combobox', { name: 'Status' });
  for (const [name, count] of [['4xx', 2], ['failed', 2], ['succeeded', 4], ['5xx', 0], ['any status', 6]]) {
    await status.selectOption(name);
    const listed = guest.rows.filter({ hasText: 'req_' });
    await seesCount(listed, count);
    const har = JSON.parse(await guest.exported('Export HAR'));
    const cells = await listed.locator('.status').allTextContents();
    assert.deepEqual(har.log.entries.map(({ response }) => String(response.status)), cells.reverse(), name);
  }
  await refused.click();
  await sees(guest.requests.getByRole('list', { name: 'What it did at the services' }).getByText('error'));
  await sees(guest.requests.getByText('The step of the kit that causes it: getPaymentInstrumentsList'));

  await guest.requests.getByRole('combobox', { name: 'Fault' }).selectOption('refused');
  await seesCount(guest.rows, 1);
  await guest.rows.getByRole('link').click();
  await guest.requests.getByRole('link', { name: /^Part of operation/ }).click();
  await guest.seesStep("fault 'refused' met addPaymentInstrument");
  // What other clients do belongs to no operation.
  await sees(guest.operations.filter({ hasText: /add.*succeeded/ }));
  await seesCount(guest.steps.filter({ hasText: 'tok_none' }), 0);
});

onConsole('nine pages of nine sandboxes are live, and two pages of one sandbox see the same', async (guest, server, open) => {
  const pages = [guest];
  const openSandboxes = () => guest.button(/^Sandbox/).click();
  for (let number = 1; number < 9; ++number) {
    await openSandboxes();
    await guest.dialog.getByLabel('Name').fill(`number-${number}`);
    await guest.dialog.getByLabel('Seed').fill(`${number}11`);
    await guest.button('Make').click();
    await guest.sees(`Made number-${number}.`);
    await guest.dialog.getByRole('button', { name: 'Close' }).click();
    pages.push(await open(`${server.urls.console}/sandboxes/number-${number}/`));
  }
  const beside = await open();
  await beside.settleIn();
  await seesCount(guest.matched, 1);
  await guest.page.bringToFront();
  await guest.button('Delete visa •••• 1111').click();
  await seesCount(beside.cards, 0);
  for (const page of pages) {
    await page.page.bringToFront();
    await page.add();
    await page.sees(page === guest ? 'Added visa' : 'Nobody is signed in.');
  }
  await guest.page.bringToFront();
  await openSandboxes();
  await guest.dialog.getByRole('link', { name: 'number-8' }).click();
  await sees(guest.button('Sandbox: number-8'));
  await guest.settleIn();
  await openSandboxes();
  await sees(guest.dialog.getByText('811', { exact: true }));
  for (const [name, cards] of [['Reset everything', 0], ['Undo', 1], [/^Restore/, 1]]) {
    await guest.button(name).first().click();
    await seesCount(guest.matched, cards);
  }
  guest.page.once('dialog', (dialog) => dialog.accept());
  await guest.button('Delete sandbox').click();
  await sees(guest.button('Sandbox: default'));
  await sees(pages[8].connection.filter({ hasText: 'This sandbox was deleted.' }));
  await sees(guest.connection.filter({ hasText: 'Live' }));
});
