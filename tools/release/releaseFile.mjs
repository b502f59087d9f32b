// The signed release file and its manifest, in the form that core/node/NodeRelease.cpp reads.
export const platforms = ['darwin-arm64', 'darwin-x64', 'linux-x64', 'linux-arm64', 'win32-x64', 'win32-arm64'];
export const channels = ['stable', 'beta'];
export const largestArchive = 512 * 2 ** 20;
export const unknownCommit = '0'.repeat(40);

const version = /^(\d{4})\.(\d{1,2})\.(\d{1,3})(?:-(\d{1,4}))?$/;

export function isVersion(text) {
  return version.test(text);
}

// Returns a negative number if `a` is older than `b`, 0 if both are equal, and a positive number otherwise.
export function compareVersions(a, b) {
  const [left, right] = [a, b].map((text) => version.exec(text).slice(1).map((part) => Number(part ?? 0)));
  return left.map((part, index) => part - right[index]).find((difference) => difference !== 0) ?? 0;
}

export function isFileName(text) {
  return /^[A-Za-z0-9_-][A-Za-z0-9._-]{0,199}$/.test(text);
}

// `artifacts` maps each platform to { path, sha256, size }.
export function manifestOf({ channel, version: text, minNodeVersion = '20.0.0', upstream, artifacts }) {
  return {
    v: 1,
    channel,
    version: text,
    publishedAtMs: Date.now(),
    minNodeVersion,
    upstream: { version: text, commit: unknownCommit, ...upstream },
    artifacts,
  };
}

// Returns the members of the release file. The signature covers the manifest's text.
export function signed(manifest, key) {
  const text = JSON.stringify(manifest);
  return { v: 1, manifest: text, keyId: key.keyId, sig: key.signature(text) };
}
