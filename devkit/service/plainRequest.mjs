// The requests that the program may send. Any other part of a request could identify a machine or a person.
const headers = {
  'user-agent': 'tarnik',  // without a version
  accept: '*/*',
  'accept-encoding': 'identity',
  'cache-control': 'no-cache',
};

// Requests of the helper, and of a developer with another program.
const isOfOthers = ({ method, url }) => /^\/c\/[^/?]*$/.test(url) || (method === 'POST' && url.startsWith('/devkit/'));

// Returns the parts of a request that the protocol doesn't need. `host` is the service's own address.
export function surplusOf(request, host) {
  if (isOfOthers(request)) return [];
  const surplus = [];
  if (request.method !== 'GET') surplus.push(`the method ${request.method}`);
  if (/[?#]/.test(request.url)) surplus.push(`the query of ${request.url}`);
  for (let i = 0; i < request.rawHeaders.length; i += 2) {
    const [name, value] = request.rawHeaders.slice(i, i + 2);
    const allowed = { ...headers, host }[name.toLowerCase()];
    if (value !== allowed) surplus.push(`${name}: ${value}`);
  }
  return surplus.map((part) => `${request.method} ${request.url} has ${part}`);
}
