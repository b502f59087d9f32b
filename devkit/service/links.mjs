// The pairing links that the service has handed out. Each joins one machine, once.
import { randomBytes } from 'node:crypto';

const codeBytes = 16;  // 22 characters of base64url

export class Links {
  #used = new Map();
  #origin;

  constructor(origin) {
    this.#origin = origin;
  }

  handOut() {
    const code = randomBytes(codeBytes).toString('base64url');
    this.#used.set(code, false);
    return { code, link: this.address(code), appLink: `tarnik://connect?code=${code}` };
  }

  // The link for the browser, and also where the helper joins.
  address(code) {
    return `${this.#origin}/c/${code}`;
  }

  isFresh(code) {
    return this.#used.get(code) === false;
  }

  // Whether the code was good for it.
  use(code) {
    if (!this.isFresh(code)) return false;
    this.#used.set(code, true);
    return true;
  }
}
