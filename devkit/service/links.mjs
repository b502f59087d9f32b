// The pairing links that the service has issued. Each link can be used once.
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

  // Returns the link for the browser, which is also the address at which the helper joins.
  address(code) {
    return `${this.#origin}/c/${code}`;
  }

  isFresh(code) {
    return this.#used.get(code) === false;
  }

  // Marks the code as used. Returns false if the code is unknown or already used.
  use(code) {
    if (!this.isFresh(code)) return false;
    this.#used.set(code, true);
    return true;
  }
}
