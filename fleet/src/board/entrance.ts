// The door of a board with a login: signing in and out, and who it is that asks.
import type { IncomingMessage, ServerResponse } from "node:http";
import { messageOf } from "../base/failures.js";
import type { Clock } from "../base/time.js";
import { answer, cookieOf, readBody, sendElsewhere } from "./answers.js";
import { findLogin, readLogins } from "./logins.js";
import type { Login } from "./logins.js";
import { loginPage } from "./pageText.js";
import { openSession, Sessions } from "./sessions.js";
import type { Session } from "./sessions.js";
import { blockedFor, FailedTries } from "./tries.js";

// More would have to wait for each other's sums.
const mostAtOnce = 8;

export class Entrance {
  private readonly open = openSession();
  private readonly sessions: Sessions;
  private readonly tries: FailedTries;
  private waiting = 0;
  private turn: Promise<unknown> = Promise.resolve();

  constructor(
    // Undefined: whoever comes is let in.
    private readonly passwordFile: string | undefined,
    private readonly isEncrypted: boolean,
    clock: Clock,
    private readonly say: (sentence: string) => void,
  ) {
    this.sessions = new Sessions(clock);
    this.tries = new FailedTries(clock);
  }

  get hasLogin(): boolean {
    return this.passwordFile !== undefined;
  }

  session(request: IncomingMessage): Session | undefined {
    if (this.passwordFile === undefined) return this.open;
    const id = cookieOf(request, this.cookieName(request));
    return this.sessions.find(id, () => this.logins());
  }

  // Read anew each time, so that who is no longer in it is out. A stranger is not told what is wrong.
  // Undefined: it cannot be read.
  private logins(): Login[] | undefined {
    try {
      return readLogins(this.passwordFile ?? "");
    } catch (error) {
      this.say(messageOf(error));
      return undefined;
    }
  }

  async signIn(request: IncomingMessage, response: ServerResponse): Promise<void> {
    const form = new URLSearchParams(await readBody(request));
    const address = request.socket.remoteAddress;
    const name = form.get("name") ?? "";
    if (this.waiting >= mostAtOnce || !this.tries.begin(address, name)) {
      const headers = { "Retry-After": String(blockedFor / 1000) };
      answer(response, 429, "text/html", loginPage("Too many tries. Try later."), headers);
      return;
    }
    const login = await this.check(name, form.get("password") ?? "");
    if (login === undefined) {
      this.say(`a sign-in from ${address ?? "?"} failed`);
      answer(response, 401, "text/html", loginPage("The name or the password is wrong."));
      return;
    }
    this.tries.forgive(address, login.name);
    this.say(`${login.name} signed in from ${address ?? "?"}`);
    const cookie = this.cookie(request, this.sessions.begin(login));
    sendElsewhere(response, "/", { "Set-Cookie": cookie });
  }

  // The headers that have the browser forget it.
  signOut(request: IncomingMessage): Record<string, string> {
    this.sessions.end(cookieOf(request, this.cookieName(request)));
    return { "Set-Cookie": `${this.cookie(request, "")}; Max-Age=0` };
  }

  // One after another: each takes a processor and tens of megabytes for a while.
  private async check(name: string, password: string): Promise<Login | undefined> {
    ++this.waiting;
    const turn = this.turn.then(() => findLogin(this.logins() ?? [], name, password));
    this.turn = turn.catch(() => undefined);
    try {
      return await turn;
    } finally {
      --this.waiting;
    }
  }

  // Browsers tell hosts apart, not ports: two boards of one machine have two names.
  private cookieName(request: IncomingMessage): string {
    const prefix = this.isEncrypted ? "__Host-" : "";
    return `${prefix}larkspan-board-${request.socket.localPort ?? 0}`;
  }

  private cookie(request: IncomingMessage, value: string): string {
    const secure = this.isEncrypted ? "; Secure" : "";
    return `${this.cookieName(request)}=${value}; Path=/; HttpOnly; SameSite=Strict${secure}`;
  }
}
