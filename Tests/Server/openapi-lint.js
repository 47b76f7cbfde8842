// Holds documents to the validator's recommended rules. Neither an error nor a warning passes.
// Usage: in-node.sh FOLDER openapi-lint.js DOCUMENT...
import { spawnSync } from 'node:child_process';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { modules } from './modules.js';

const documents = process.argv.slice(2);
const config = fileURLToPath(new URL('redocly.yaml', import.meta.url));
const lint = (format) => spawnSync(process.execPath,
  [join(modules, '@redocly/cli/bin/cli.js'), 'lint', '--config', config, `--format=${format}`, ...documents],
  { encoding: 'utf8', env: { ...process.env, REDOCLY_TELEMETRY: 'off', REDOCLY_SUPPRESS_UPDATE_NOTICE: 'true' } });

const { status, stdout } = lint('json');
// One report a document, each with its totals.
const totals = [...stdout.matchAll(/"(?:errors|warnings|ignored)": (\d+)/g)].map(([, count]) => Number(count));
const isClean = status === 0 && documents.length > 0 && totals.length === 3 * documents.length &&
  totals.every((count) => count === 0);
if (!isClean) console.error(Object.values(lint('stylish')).filter((text) => typeof text === 'string').join('\n'));
console.log(`${documents.length} documents ${isClean ? 'follow' : 'break'} the rules`);
process.exit(isClean ? 0 : 1);
