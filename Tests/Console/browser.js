// The one browser of a process.
import { require } from '../Server/server.js';

export const browser = await require('playwright-core').chromium.launch({
  executablePath: '/usr/bin/chromium',
  handleSIGTERM: false,
  args: ['--no-sandbox', '--disable-dev-shm-usage'],
});
