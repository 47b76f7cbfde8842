// The modules that in-node.sh has installed; they are in the build folder, not beside these files.
import { createRequire } from 'node:module';
import { join } from 'node:path';

/** Their folder. */
export const modules = process.env.SERVER_TEST_MODULES;
export const require = createRequire(join(modules, 'installed-by'));
