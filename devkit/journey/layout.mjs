// Lays out a private folder for one journey: an empty user's home, a release and the service that offers
// it, and a bundle whose settings make a program install from there. Nothing is installed by hand.
import { mkdirSync, mkdtempSync, realpathSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { makeRelease } from '../release/makeRelease.mjs';
import { startService } from '../service/startService.mjs';
import { settingsFor, writeSettings } from './settings.mjs';

const runtimeCache = fileURLToPath(new URL('../../build/devkit/runtime', import.meta.url));
const here = '127.0.0.1,localhost';

// The given keys take the place of the usual settings; one without a value is left out.
export async function layOut({ runtime = 'real', helperSizeMiB = 0, fault, settings: changes = {} } = {}) {
  const root = realpathSync(mkdtempSync(path.join(tmpdir(), 'tarnik-journey-')));
  const home = path.join(root, 'home');
  const nodeHome = path.join(home, '.tarnik', 'node');
  mkdirSync(home);

  const folder = path.join(root, 'release');
  const release = await makeRelease({ folder, runtime, helperSizeMiB, fault, cache: runtimeCache });
  const service = await startService({ folder });
  const bundle = path.join(root, 'tarnik.app');
  writeSettings(bundle, { ...settingsFor(service.origin, release), ...changes });

  const paths = {
    release: '/stable.json',
    runtime: `/${release.runtime.file}`,
    helper: `/${release.helper.path}`,
  };
  return {
    root,
    home,
    nodeHome,
    release,
    service,
    marker: path.join(nodeHome, '.tarnik-node-home'),
    staging: path.join(nodeHome, 'tmp'),
    runtime: path.join(nodeHome, 'runtime', 'node', 'bin', 'node'),
    entry: path.join(nodeHome, 'app', 'lib', 'node_modules', 'openclaw', 'openclaw.mjs'),
    description: path.join(nodeHome, 'app', 'lib', 'node_modules', 'openclaw', 'tarnik-node.json'),
    joinRecord: path.join(nodeHome, 'trust', 'web-key.json'),
    nodeLog: path.join(home, 'Library', 'Logs', 'tarnik', 'node.log'),
    // Without `how` the service is well again. `what` is 'release', 'runtime' or 'helper'.
    misbehave: (what, how) => service.misbehave(paths[what], how),
    // The words that every program of this journey is started with.
    words: ['--console', '--bundle', bundle],
    environment: { ...process.env, HOME: home, NO_PROXY: here, no_proxy: here },
    remove: () => rmSync(root, { recursive: true, force: true, maxRetries: 5 }),
  };
}
