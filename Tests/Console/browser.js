// The one browser of a process.
import { chromium } from 'playwright-core';

let browser;

export async function openBrowser() {
  browser ??= await chromium.launch({
    executablePath: process.env.CHROMIUM,
    handleSIGTERM: false,
    args: ['--no-sandbox', '--disable-dev-shm-usage'],
  });
  return browser;
}

export const closeBrowser = () => browser?.close();
