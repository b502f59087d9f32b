// Lays out a fresh user's home whose node home holds the stand-in helper and the machine's own Node.js.
import { chmodSync, cpSync, mkdirSync, mkdtempSync, rmSync, symlinkSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const helperApp = fileURLToPath(new URL('../helper/app', import.meta.url));
const markerText = "This folder is tarnik-node's own. `tarnik-node uninstall` removes it whole.\n";

function fillNodeHome(nodeHome) {
  mkdirSync(path.join(nodeHome, 'runtime', 'node', 'bin'), { recursive: true, mode: 0o700 });
  chmodSync(nodeHome, 0o700);
  writeFileSync(path.join(nodeHome, '.tarnik-node-home'), markerText);
  // A link, because a copy would not find the libraries that some builds of Node.js keep beside it.
  symlinkSync(process.execPath, path.join(nodeHome, 'runtime', 'node', 'bin', 'node'));
  cpSync(helperApp, path.join(nodeHome, 'app'), { recursive: true });
}

export function layOut() {
  const root = mkdtempSync(path.join(tmpdir(), 'tarnik-journey-'));
  const home = path.join(root, 'home');
  const nodeHome = path.join(home, '.tarnik', 'node');
  fillNodeHome(nodeHome);
  return {
    root,
    nodeHome,
    entry: path.join(nodeHome, 'app', 'lib', 'node_modules', 'openclaw', 'openclaw.mjs'),
    joinRecord: path.join(nodeHome, 'trust', 'web-key.json'),
    nodeLog: path.join(home, 'Library', 'Logs', 'tarnik', 'node.log'),
    environment: { ...process.env, HOME: home },
    remove: () => rmSync(root, { recursive: true, force: true, maxRetries: 5 }),
  };
}
