// Answers of the board, each with the rules under which a browser may use it: nothing from another
// place, no script but the page's own files, no text taken for markup, in no other page's frame,
// and kept nowhere.
import type { IncomingMessage, ServerResponse } from "node:http";
import { parseObject } from "../base/json.js";
import type { JsonObject } from "../base/json.js";

const policy = [
  "default-src 'none'",
  "script-src 'self'",
  "style-src 'self'",
  "img-src 'self'",
  "connect-src 'self'",
  "form-action 'self'",
  "base-uri 'none'",
  "frame-ancestors 'none'",
  "require-trusted-types-for 'script'",
  "trusted-types 'none'",
].join("; ");

// For a page that others made: it also writes styles into its markup, and names its own folder.
export const policyOfOthers = [
  "default-src 'none'",
  "script-src 'self'",
  "style-src 'self' 'unsafe-inline'",
  "img-src 'self' data:",
  "font-src 'self'",
  "connect-src 'self'",
  "form-action 'none'",
  "base-uri 'self'",
  "frame-ancestors 'none'",
].join("; ");

const rules = {
  "Content-Security-Policy": policy,
  "X-Content-Type-Options": "nosniff",
  "X-Frame-Options": "DENY",
  // A form would otherwise not say where it comes from.
  "Referrer-Policy": "same-origin",
  "Cross-Origin-Opener-Policy": "same-origin",
  "Cross-Origin-Resource-Policy": "same-origin",
  "Cache-Control": "no-store",
};

const mostBytes = 10_000;

export type Headers = Record<string, string>;

export function answer(
  response: ServerResponse,
  code: number,
  type: string,
  text: string | Buffer,
  headers: Headers = {},
): void {
  response.writeHead(code, { ...rules, "Content-Type": `${type}; charset=utf-8`, ...headers });
  response.end(text);
}

export function answerJson(
  response: ServerResponse,
  code: number,
  value: object,
  headers: Headers = {},
): void {
  answer(response, code, "application/json", JSON.stringify(value), headers);
}

export function sendElsewhere(response: ServerResponse, to: string, headers: Headers = {}): void {
  answer(response, 303, "text/plain", "", { Location: to, ...headers });
}

// Undefined: too long.
export async function readBody(request: IncomingMessage): Promise<string | undefined> {
  const pieces: Buffer[] = [];
  let length = 0;
  for await (const piece of request as AsyncIterable<Buffer>) {
    length += piece.length;
    if (length > mostBytes) return undefined;
    pieces.push(piece);
  }
  return Buffer.concat(pieces).toString("utf8");
}

export async function readJson(request: IncomingMessage): Promise<JsonObject | undefined> {
  if (!/^application\/json\b/.test(request.headers["content-type"] ?? "")) return undefined;
  return parseObject((await readBody(request)) ?? "");
}

export function cookieOf(request: IncomingMessage, name: string): string {
  for (const pair of (request.headers.cookie ?? "").split(";")) {
    const at = pair.indexOf("=");
    if (pair.slice(0, at).trim() === name) return pair.slice(at + 1).trim();
  }
  return "";
}
