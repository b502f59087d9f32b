// Makes a private folder for one run: an empty home, a release with the service that serves it, and a bundle whose
// settings name that service. The program installs everything itself.
import { chmodSync, copyFileSync, mkdirSync, mkdtempSync, realpathSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { makeRelease, runtimeCache } from '../release/makeRelease.mjs';
import { startService } from '../service/startService.mjs';
import { settingsFor, writeSettings } from './settings.mjs';

const here = '127.0.0.1,localhost';
// The path of the driver's socket, deep in the home, must stay below 104 bytes.
const longestRoot = 20;

function makeRoot() {
  const folder = [tmpdir(), '/tmp'].map((name) => realpathSync(name)).find((name) => name.length < longestRoot);
  if (!folder) throw new Error(`the path of ${tmpdir()} is too long for a socket below it`);
  return mkdtempSync(path.join(folder, 'tarnik-'));
}

// Copies the driver, because the program rejects a symbolic link.
function installDriver(bundle, source) {
  const driver = path.join(bundle, 'Contents', 'Resources', 'cua-driver');
  copyFileSync(source, driver);
  chmodSync(driver, 0o755);
  return driver;
}

// Returns the folders of the user's data. On macOS they are below the home. On Linux the XDG variables name them.
function foldersFor(root, home) {
  if (process.platform === 'darwin') {
    return {
      applicationSupport: path.join(home, 'Library', 'Application Support'),
      logs: path.join(home, 'Library', 'Logs'),
      variables: {},
    };
  }
  const folders = { applicationSupport: path.join(root, 'data'), logs: path.join(root, 'state') };
  return {
    ...folders,
    variables: {
      XDG_DATA_HOME: folders.applicationSupport,
      XDG_STATE_HOME: folders.logs,
      XDG_CONFIG_HOME: path.join(root, 'config'),
      XDG_RUNTIME_DIR: path.join(root, 'runtime'),  // another program's control socket may be in the session's
    },
  };
}

// `settings` replaces default settings. A key without a value is removed. `standIns` is the folder with the compiled
// driver stand-ins. Without this folder the bundle has no driver.
export async function layOut(
  { runtime = 'real', helperSizeMiB = 0, fault, settings: changes = {}, standIns } = {},
) {
  const root = makeRoot();
  const home = path.join(root, 'home');
  const nodeHome = path.join(home, '.tarnik', 'node');
  mkdirSync(home);
  mkdirSync(path.join(root, 'runtime'), { mode: 0o700 });
  const folders = foldersFor(root, home);

  const folder = path.join(root, 'release');
  const release = await makeRelease({ folder, runtime, helperSizeMiB, fault, cache: runtimeCache });
  const service = await startService({ folder });
  const bundle = path.join(root, 'tarnik.app');
  writeSettings(bundle, { ...settingsFor(service.origin, release), ...changes });
  const keepAwake = standIns && path.join(standIns, 'keep_awake');

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
    driver: standIns && installDriver(bundle, path.join(standIns, 'cua-driver')),
    runtimeFolder: path.join(root, 'runtime'),
    driverRoot: path.join(folders.applicationSupport, 'tarnik', 'cua'),
    keepAwake,
    nodeLog: path.join(folders.logs, 'tarnik', 'node.log'),
    // `what` is 'release', 'runtime' or 'helper'. Without `how` the service answers correctly again.
    misbehave: (what, how) => service.misbehave(paths[what], how),
    // The arguments of every start of the program.
    words: ['--bundle', bundle, ...(keepAwake ? ['--keep-awake', keepAwake] : [])],
    environment: {
      ...process.env,
      ...(keepAwake && { TARNIK_STANDIN_KEEP_AWAKE: keepAwake }),
      HOME: home,
      ...folders.variables,
      NO_PROXY: here,
      no_proxy: here,
    },
    remove: () => rmSync(root, { recursive: true, force: true, maxRetries: 5 }),
  };
}
