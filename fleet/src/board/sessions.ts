// Who has signed in. Sessions end after twelve hours, when the board ends, and when the line of the
// password file with which they were begun is no longer there.
import { randomBytes } from "node:crypto";
import type { Clock } from "../base/time.js";
import type { Login } from "./logins.js";

export interface Session {
  // Empty: the page has no login.
  user: string;
  // Every change has to bring it along.
  token: string;
}

interface Kept extends Session {
  line: string;
  endsAt: number;
}

const lifetime = 12 * 3_600_000;
const mostSessions = 1000;
const secretBytes = 32;

function secret(): string {
  return randomBytes(secretBytes).toString("base64url");
}

export function openSession(): Session {
  return { user: "", token: secret() };
}

export class Sessions {
  private readonly kept = new Map<string, Kept>();

  constructor(private readonly clock: Clock) {}

  // The value of the cookie.
  begin(login: Login): string {
    const id = secret();
    const endsAt = this.clock.ticks() + lifetime;
    this.kept.set(id, { user: login.name, token: secret(), line: login.line, endsAt });
    for (const oldest of this.kept.keys()) {
      if (this.kept.size <= mostSessions) break;
      this.kept.delete(oldest);
    }
    return id;
  }

  // The logins are asked for when there is a session, so that a stranger has nothing read. While they
  // cannot be told nobody is let in; who signed in is again when they can.
  find(id: string, logins: () => readonly Login[] | undefined): Session | undefined {
    const session = this.kept.get(id);
    if (session === undefined) return undefined;
    const isOver = this.clock.ticks() >= session.endsAt;
    const known = isOver ? [] : logins();
    if (known?.some(({ line }) => line === session.line) === true) return session;
    if (known !== undefined) this.kept.delete(id);
    return undefined;
  }

  end(id: string): void {
    this.kept.delete(id);
  }
}
