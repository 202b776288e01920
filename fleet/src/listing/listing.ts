// A list of databases: what "larkspan-console databases" writes as CSV or JSON, or a scan.txt.
import { isObject, parseObject, textOf } from "../base/json.js";
import { parseCsv } from "./csv.js";
import { isScan, parseScan } from "./scan.js";

export interface ListedDatabase {
  // Empty: of the machine on which the listing was made.
  server: string;
  path: string;
  title: string;
  bytes: number | null;
}

export interface Listing {
  databases: ListedDatabase[];
  // Lines that name a folder.
  folders: number;
}

const local = /^<local>$/i;

function serverOf(name: string): string {
  return local.test(name) ? "" : name;
}

function bytesOf(value: unknown): number | null {
  const number = typeof value === "string" && value !== "" ? Number(value) : value;
  return typeof number === "number" && Number.isFinite(number) && number > 0 ? number : null;
}

// Neither Windows nor a log of lines takes them, and of a zero and half a character not the queue:
// characters that control, and halves.
const impossible = /[\p{Cc}\p{Cs}]/u;

function checked(database: ListedDatabase, where: string): ListedDatabase {
  const { server, path, title } = database;
  if (path === "") throw new Error(`${where} names no path`);
  if (impossible.test(server + path))
    throw new Error(`${where} has a character that no server and no path has`);
  return { ...database, title: title.replace(new RegExp(impossible, "gu"), " ") };
}

// A listing that was cut may end in the midst of the word.
function isFolder(kind: string, where: string): boolean {
  if (!/^(?:database|folder)$/i.test(kind))
    throw new Error(`${where} is neither a database nor a folder`);
  return kind.toLowerCase() === "folder";
}

function fromCsv(text: string): Listing {
  const rows = parseCsv(text.replace(/^#TYPE [^\n]*\n/, ""));
  const titles = (rows.shift() ?? []).map((title) => title.trim().toLowerCase());
  for (const needed of ["server", "path"])
    if (!titles.includes(needed)) throw new Error(`it has no column '${needed}'`);
  const listing: Listing = { databases: [], folders: 0 };
  rows.forEach((row, index) => {
    if (row.length === 1 && row[0] === "") return;
    if (row.length !== titles.length)
      throw new Error(`row ${index + 2} has ${row.length} fields, not ${titles.length}`);
    const field = (name: string) => row[titles.indexOf(name)] ?? "";
    if (titles.includes("kind") && isFolder(field("kind"), `row ${index + 2}`)) {
      ++listing.folders;
      return;
    }
    const database = {
      server: serverOf(field("server")),
      path: field("path"),
      title: field("title"),
      bytes: bytesOf(field("bytes")),
    };
    listing.databases.push(checked(database, `row ${index + 2}`));
  });
  return listing;
}

function fromJson(text: string): Listing {
  const object = parseObject(text);
  if (object?.["format"] !== "larkspan-databases" || !Array.isArray(object["databases"]))
    throw new Error("it is no list that 'larkspan-console databases --json' wrote");
  const listing: Listing = { databases: [], folders: 0 };
  object["databases"].forEach((entry: unknown, index) => {
    const where = `database ${index + 1}`;
    if (!isObject(entry)) throw new Error(`${where} is no object`);
    if (isFolder(textOf(entry, "kind"), where)) {
      ++listing.folders;
      return;
    }
    const database = {
      server: serverOf(textOf(entry, "server")),
      path: textOf(entry, "path"),
      title: textOf(entry, "title"),
      bytes: bytesOf(entry["bytes"]),
    };
    listing.databases.push(checked(database, where));
  });
  return listing;
}

// PowerShell writes UTF-16 with a byte order mark.
function decode(bytes: Uint8Array): string {
  const isUtf16 = bytes[0] === 0xff && bytes[1] === 0xfe;
  return new TextDecoder(isUtf16 ? "utf-16le" : "utf-8", { fatal: true }).decode(bytes);
}

// The first line of a scan.txt is in the Notes character set, which need not be UTF-8.
function withoutFirstLine(bytes: Uint8Array): Uint8Array {
  return bytes.subarray(bytes.indexOf(0x0a) + 1);
}

// Throws an Error that says what is wrong. With server the databases are those of that server,
// whatever the listing calls it: a scan.txt names it in a way that it can be opened by only
// sometimes.
export function parseListing(bytes: Uint8Array, server: string | undefined): Listing {
  if (isScan(bytes)) {
    const listing = parseScan(decode(withoutFirstLine(bytes)));
    if (server === undefined) throw new Error("a scan.txt needs --server with the server's name");
    for (const database of listing.databases) database.server = serverOf(server);
    const databases = listing.databases.map((one) => checked(one, `the path '${one.path}'`));
    return { ...listing, databases };
  }
  const text = decode(bytes);
  const listing = text.trimStart().startsWith("{") ? fromJson(text) : fromCsv(text);
  if (server !== undefined)
    for (const database of listing.databases) database.server = serverOf(server);
  return listing;
}
