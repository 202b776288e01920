// Names of folders for databases: what a server and a path can hold is more than Windows takes.
//
// A name depends on the database alone, never on what else is listed, so that listings may be added
// in any order, at one time, from several machines. "Mill_Example\archive\orders.nsf" is given
// where no other database can have it; "Mill_Example\archive_orders.nsf~1a2b3c4d", with digits of a
// sum over server and path, everywhere else.
import { createHash } from "node:crypto";
import { upperCase } from "../base/fold.js";

// So that the longest path of a file stays below the 260 that Windows takes by itself: an export's
// own names take 60, and the number of an attempt 12.
const longestName = 140;
const longestPart = 100;
const sumDigits = 8;

// eslint-disable-next-line no-control-regex -- Windows takes none of them.
const refusedCharacters = /[\u0000-\u001F\u007F<>:"/\\|?*]/g;
const device = /^(?:CON|PRN|AUX|NUL|CONIN\$|CONOUT\$|(?:COM|LPT)[0-9\u00B9\u00B2\u00B3])$/i;
const endsLikeDatabase = /\.(?:nsf|ntf|box)$/i;
const isAttempt = /\.attempt-[^.]*$/i;
const endsInSum = /~[0-9a-f]{8}$/i;

function isDevice(name: string): boolean {
  const stem = name.split(".", 1)[0] ?? "";
  return device.test(stem.replace(/ +$/, ""));
}

// Not between the two halves of a character.
function cut(name: string, length: number): string {
  if (name.length <= length) return name;
  const last = name.charCodeAt(length - 1);
  return name.slice(0, last >= 0xd800 && last <= 0xdbff ? length - 1 : length);
}

// One part of a path as the name of a folder. Never empty.
export function safePart(part: string): string {
  const cleaned = cut(part.replace(refusedCharacters, "_"), longestPart);
  const name = cleaned.replace(/[. ]+$/, (end) => "_".repeat(end.length));
  return name === "" || isDevice(name) ? `_${name}` : name;
}

function partsOf(path: string): string[] {
  const parts = path.split(/[\\/]+/);
  if (parts.length > 1 && parts[0] === "") parts.shift();
  if (parts.length > 1 && parts.at(-1) === "") parts.pop();
  return parts;
}

export interface DatabaseKey {
  server: string;
  machine: string;
  path: string;
}

function serverPart(key: DatabaseKey): string {
  return key.server === "" ? safePart(`local@${key.machine}`) : safePart(key.server);
}

// Whether no other server can have the same part: a slash alone may become an underscore.
function isPlainServer(key: DatabaseKey): boolean {
  if (key.server === "") return safePart(key.machine) === key.machine;
  if (/[_@]/.test(key.server) || endsInSum.test(key.server)) return false;
  return safePart(key.server) === key.server.replaceAll("/", "_");
}

// Whether no other path can have the same parts, and none can lie below it or above it.
function isPlainPath(path: string): boolean {
  const parts = partsOf(path);
  if (parts.join("\\") !== path.replaceAll("/", "\\")) return false;
  const above = parts.slice(0, -1);
  if (!endsLikeDatabase.test(parts.at(-1) ?? "")) return false;
  if (above.some((part) => endsLikeDatabase.test(part))) return false;
  return parts.every(
    (part) => safePart(part) === part && !isAttempt.test(part) && !endsInSum.test(part),
  );
}

function plainName(key: DatabaseKey): string {
  return [serverPart(key), ...partsOf(key.path)].join("\\");
}

function nameWithSum(key: DatabaseKey): string {
  const flat = partsOf(key.path).map(safePart).join("_");
  const of = `${upperCase(key.server === "" ? key.machine : key.server)}!!${key.path}`;
  const sum = createHash("sha256").update(of).digest("hex").slice(0, sumDigits);
  const server = safePart(cut(serverPart(key), longestPart / 2));
  return `${server}\\${cut(flat, longestPart / 2)}~${sum}`;
}

// Below the root. With mayMeet the listing has another database whose name differs from this one in
// letter case alone.
export function folderNameOf(key: DatabaseKey, mayMeet = false): string {
  const name = plainName(key);
  const isPlain = !mayMeet && isPlainServer(key) && isPlainPath(key.path);
  return isPlain && name.length <= longestName ? name : nameWithSum(key);
}
