// A scan.txt, as "larkspan -scan" writes it: a line with the server, then six fields a line.
import type { Listing } from "./listing.js";

const fields = 6;

// Its second line has six fields between tabs, which no CSV and no JSON has.
export function isScan(bytes: Uint8Array): boolean {
  const begin = bytes.indexOf(0x0a) + 1;
  if (begin === 0) return false;
  const end = bytes.indexOf(0x0a, begin);
  const line = bytes.subarray(begin, end < 0 ? bytes.length : end);
  return line.filter((byte) => byte === 0x09).length === fields - 1;
}

// The integer has the bits of a floating-point number.
function sizeOf(field: string): number | null {
  if (!/^-?\d{1,19}$/.test(field)) return null;
  const view = new DataView(new ArrayBuffer(8));
  view.setBigInt64(0, BigInt(field));
  const size = view.getFloat64(0);
  return Number.isFinite(size) && size > 0 ? size : null;
}

// A folder has neither a title nor a time nor a size, and its name is not that of a database.
function isFolder([path = "", title, data, design, size]: string[]): boolean {
  const hasNothing = title === "" && data === "" && design === "" && size === "0";
  return hasNothing && !/\.(?:nsf|ntf|box)$/i.test(path);
}

export function parseScan(text: string): Listing {
  const listing: Listing = { databases: [], folders: 0 };
  text.split(/\r?\n/).forEach((line, index) => {
    if (line === "") return;
    const parts = line.split("\t");
    if (parts.length !== fields)
      throw new Error(`line ${index + 2} has ${parts.length} fields, not ${fields}`);
    if (isFolder(parts)) {
      ++listing.folders;
      return;
    }
    const [path = "", title = "", , , size = ""] = parts;
    if (path === "") throw new Error(`line ${index + 2} names no path`);
    listing.databases.push({ server: "", path, title, bytes: sizeOf(size) });
  });
  return listing;
}
