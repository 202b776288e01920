// Whether a request may come from this page, and from a person who wants it.
//
// A page of another site can have a browser ask here, and can give its own name the address of this
// machine. So a request has to name this page as its host, and a change has to come from it too.
import { timingSafeEqual } from "node:crypto";
import type { IncomingHttpHeaders, IncomingMessage } from "node:http";
import { isIP } from "node:net";

export function isLoopback(host: string): boolean {
  if (host === "localhost" || host === "::1") return true;
  return isIP(host) === 4 && host.startsWith("127.");
}

// "::ffff:127.0.0.1" is how a socket for both kinds of addresses calls the older kind.
export function plainAddress(address: string | undefined): string {
  return (address ?? "").replace(/^::ffff:(?=\d+\.)/, "").replace(/%.*$/, "");
}

// Without port and brackets, in small letters; undefined: it is none.
function hostNameOf(header: string | undefined): string | undefined {
  if (header === undefined || !/^[\w.:[\]-]+$/.test(header)) return undefined;
  try {
    return new URL(`http://${header}/`).hostname.replace(/^\[|\]$/g, "");
  } catch {
    return undefined;
  }
}

// The port does not count: it is another one behind a tunnel.
export function isOwnHost(request: IncomingMessage, names: ReadonlySet<string>): boolean {
  const host = hostNameOf(request.headers.host);
  if (host === undefined) return false;
  const local = plainAddress(request.socket.localAddress);
  return names.has(host) || host === local || (isLoopback(local) && isLoopback(host));
}

// Browsers tell with each POST from which page it comes. What tells nothing is no browser's.
export function isOwnOrigin(headers: IncomingHttpHeaders): boolean {
  const site = headers["sec-fetch-site"];
  if (site !== undefined && site !== "same-origin") return false;
  try {
    return new URL(headers.origin ?? "").host === new URL(`http://${headers.host ?? ""}`).host;
  } catch {
    return false;
  }
}

export function isSameSecret(one: string, other: string): boolean {
  const [first, second] = [Buffer.from(one), Buffer.from(other)];
  return first.length === second.length && timingSafeEqual(first, second);
}
