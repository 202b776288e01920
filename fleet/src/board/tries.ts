// How often somebody may be wrong: after five failed tries from an address none is heard from it for
// five minutes. A try counts from its beginning, or many at once would all be heard. A right one
// forgives those with its name alone: who has a login would else try the names of others for ever.
import { isIPv6 } from "node:net";
import type { Clock } from "../base/time.js";
import { plainAddress } from "./guard.js";

const mostTries = 5;
export const blockedFor = 300_000;
const mostAddresses = 10_000;
// No login has a longer name.
const longestName = 64;

interface Try {
  name: string;
  at: number;
}

// Whoever has one IPv6 address has all of its network.
function networkOf(address: string | undefined): string {
  const plain = plainAddress(address);
  if (!isIPv6(plain)) return plain;
  const [head = "", tail] = plain.split("::");
  const front = head.split(":").filter((part) => part !== "");
  if (tail === undefined) return front.slice(0, 4).join(":");
  const back = tail.split(":").filter((part) => part !== "");
  const zeros = Array.from({ length: 8 - front.length - back.length }, () => "0");
  return [...front, ...zeros, ...back].slice(0, 4).join(":");
}

export class FailedTries {
  // The newest one stands last.
  private readonly tries = new Map<string, Try[]>();

  constructor(private readonly clock: Clock) {}

  // Whether the try is heard. It counts as failed until it is forgiven.
  begin(address: string | undefined, name: string): boolean {
    const network = networkOf(address);
    const now = this.clock.ticks();
    const isRecent = (one: Try | undefined) => one !== undefined && now - one.at < blockedFor;
    const earlier = this.tries.get(network) ?? [];
    const isBlocked = earlier.length >= mostTries && isRecent(earlier.at(-1));
    if (isBlocked) return false;
    const kept = earlier.length >= mostTries ? [] : earlier.filter(isRecent);
    this.tries.delete(network);
    this.tries.set(network, [...kept, { name: name.slice(0, longestName), at: now }]);
    this.forgetOldest();
    return true;
  }

  forgive(address: string | undefined, name: string): void {
    const network = networkOf(address);
    const others = (this.tries.get(network) ?? []).filter((one) => one.name !== name);
    if (others.length > 0) this.tries.set(network, others);
    else this.tries.delete(network);
  }

  private forgetOldest(): void {
    if (this.tries.size <= mostAddresses) return;
    for (const network of this.tries.keys()) {
      this.tries.delete(network);
      return;
    }
  }
}
