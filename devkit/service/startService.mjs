// The service stand-in: pairing links, joining, and the files of a release. It listens on loopback only.
//
//     GET  /c/CODE/app           the join address of a link, or 404
//     GET  /c/CODE               200 if the code can be used, else 410
//     POST /c/CODE               joins with the code: 200 once, then 410
//     GET  /NAME                 a file of the release folder
//     POST /devkit/links         issues a link
//     POST /devkit/misbehave     {"path": PATH, "how": NAME}; without "how", the answers for PATH are correct again
import { once } from 'node:events';
import { createServer } from 'node:http';
import { json, notFound, releaseFile } from './answers.mjs';
import { deliver, misbehaviours, movedTo } from './delivery.mjs';
import { Links } from './links.mjs';
import { surplusOf } from './plainRequest.mjs';

const host = '127.0.0.1';
const longestControl = 64 * 1024;
const expired = (status) => json(status, { v: 1, error: 'this link has expired or was already used' });

async function controlBody(request) {
  let text = '';
  for await (const chunk of request.setEncoding('utf8')) {
    text += chunk;
    if (text.length > longestControl) throw new SyntaxError('the request is too long');
  }
  return text === '' ? {} : JSON.parse(text);
}

class Service {
  requests = [];  // "METHOD PATH" of each request
  surplus = [];  // the parts of the program's requests that the protocol doesn't need

  #folder;
  #server = createServer((request, response) => this.#serve(request, response));
  #misbehaving = new Map();

  constructor(folder) {
    this.#folder = folder;
  }

  async listen(port) {
    this.#server.listen(port, host);
    await once(this.#server, 'listening');
    this.origin = `http://${host}:${this.#server.address().port}`;
    this.links = new Links(this.origin);
  }

  // Without `how`, the answers for `path` are correct again.
  misbehave(path, how) {
    if (how === undefined) this.#misbehaving.delete(path);
    else if (Object.hasOwn(misbehaviours, how)) this.#misbehaving.set(path, misbehaviours[how]);
    else throw new RangeError(`how must be one of ${Object.keys(misbehaviours).join(', ')}`);
  }

  async close() {
    const closed = once(this.#server, 'close');
    this.#server.close();
    this.#server.closeAllConnections();
    await closed;
  }

  async #serve(request, response) {
    try {
      const { pathname } = new URL(request.url, this.origin);
      this.requests.push(`${request.method} ${pathname}`);
      this.surplus.push(...surplusOf(request, new URL(this.origin).host));
      const answer = await this.#answer(request, pathname);
      const how = this.#misbehaving.get(pathname) ?? deliver;
      await how(response, answer, pathname);
    } catch {
      response.destroy();  // the client has closed the connection
    }
  }

  #answer(request, pathname) {
    if (pathname.startsWith('/devkit/') && request.method === 'POST') return this.#control(request, pathname);
    const [, code, app] = pathname.match(/^\/c\/([^/]*)(\/app)?$/) ?? [];
    if (code !== undefined) return this.#answerLink(request.method, code, app !== undefined);
    if (request.method !== 'GET') return notFound;
    const moved = pathname.startsWith(`${movedTo}/`) ? pathname.slice(movedTo.length) : pathname;
    return releaseFile(this.#folder, moved.slice(1));
  }

  #answerLink(method, code, isApp) {
    if (isApp) {
      const fresh = method === 'GET' && this.links.isFresh(code);
      return fresh ? json(200, { v: 1, join: this.links.address(code) }) : expired(404);
    }
    if (method === 'GET') return this.links.isFresh(code) ? json(200, { v: 1 }) : expired(410);
    if (method === 'POST') return this.links.use(code) ? json(200, { v: 1, joined: true }) : expired(410);
    return notFound;
  }

  async #control(request, pathname) {
    try {
      const { path, how } = await controlBody(request);
      if (pathname === '/devkit/links') return json(200, this.links.handOut());
      if (pathname !== '/devkit/misbehave') return notFound;
      this.misbehave(path, how);
      return json(200, { v: 1 });
    } catch (error) {
      return json(400, { v: 1, error: error.message });
    }
  }
}

// Serves `folder` until close(). By default the system chooses a free port.
export async function startService({ folder, port = 0 }) {
  const service = new Service(folder);
  await service.listen(port);
  return service;
}
