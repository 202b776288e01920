import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { csvLine, parseCsv } from "../../src/listing/csv.js";
import { parseListing } from "../../src/listing/listing.js";

function parse(text: string, server?: string) {
  return parseListing(Buffer.from(text), server);
}

const csv = [
  "server,path,title,data_modified,design_modified,bytes,identifier,kind",
  'Mill,mail\\a.nsf,"Anna, ""the"" first",,,1048576.5,0,database',
  ",b.nsf,,,,0,0,database",
  "Mill,mail,,,,0,0,folder",
  "",
].join("\r\n");

describe("a listing", () => {
  test("in CSV gives its databases and counts its folders", () => {
    assert.deepEqual(parse(csv), {
      databases: [
        { server: "Mill", path: "mail\\a.nsf", title: 'Anna, "the" first', bytes: 1048576.5 },
        { server: "", path: "b.nsf", title: "", bytes: null },
      ],
      folders: 1,
    });
  });

  test("may be UTF-16, as PowerShell writes it", () => {
    const bytes = Buffer.concat([Buffer.from([0xff, 0xfe]), Buffer.from(csv, "utf16le")]);
    assert.equal(parseListing(bytes, undefined).databases.length, 2);
  });

  test("in JSON gives the same", () => {
    const text = JSON.stringify({
      format: "larkspan-databases",
      version: 1,
      databases: [
        { server: "Mill", path: "a.nsf", title: null, bytes: 5, kind: "database" },
        { server: "Mill", path: "mail", title: null, bytes: 0, kind: "folder" },
        { server: "Mill", path: "c.nsf", title: "C", bytes: "NaN", kind: "database" },
      ],
    });
    assert.deepEqual(parse(text), {
      databases: [
        { server: "Mill", path: "a.nsf", title: "", bytes: 5 },
        { server: "Mill", path: "c.nsf", title: "C", bytes: null },
      ],
      folders: 1,
    });
  });

  test("may be a scan.txt, with the server's name given", () => {
    const scan =
      "Gart\u00E9n\r\n" +
      "seeds\\exchange.nsf\tSeed exchange\t6372451848910\t6369348407295\t4692750811720056832\tC1\r\n" +
      "seeds\t\t\t\t0\t0000000000000000\r\n";
    // The first line is not UTF-8.
    const bytes = Buffer.from(scan, "latin1");
    assert.deepEqual(parseListing(bytes, "Garden"), {
      databases: [
        { server: "Garden", path: "seeds\\exchange.nsf", title: "Seed exchange", bytes: 524288 },
      ],
      folders: 1,
    });
    assert.throws(() => parseListing(bytes, undefined), /needs --server/);
  });

  test("of a scan has no path that would be two lines", () => {
    const bytes = Buffer.from("Garden\na\rb.nsf\tA title\t\t\t0\t\n");
    assert.throws(() => parseListing(bytes, "Garden"), /has a character that no server/);
  });

  test("is of the server that was given, or of this machine", () => {
    assert.deepEqual(
      parse(csv, "Other").databases.map(({ server }) => server),
      ["Other", "Other"],
    );
    assert.equal(parse("server,path\n<Local>,a.nsf\n").databases[0]?.server, "");
  });

  const faults: [string, string, RegExp][] = [
    ["a column is missing", "path,title\na.nsf,\n", /no column 'server'/],
    ["a row is short", "server,path,title\nMill,a.nsf\n", /row 2 has 2 fields, not 3/],
    ["a path is missing", "server,path\nMill,\n", /row 2 names no path/],
    ["quotes do not fit", 'server,path\nMill,"a.nsf\n', /quotes do not fit/],
    ["it is JSON of something else", '{"format":"x"}', /no list/],
    ["it is empty", "", /no column/],
  ];
  for (const [why, text, message] of faults)
    test(`is refused when ${why}`, () => {
      assert.throws(() => parse(text), message);
    });

  for (const character of ["\\u0000", "\\ud800", "\\n", "\\u001b", "\\u0085"])
    test(`with ${character} is refused for a path, and takes it from a title`, () => {
      const of = (path: string, title: string) =>
        `{"format":"larkspan-databases","databases":[{"kind":"database","server":"Mill",` +
        `"path":"${path}","title":"${title}"}]}`;
      assert.throws(() => parse(of(`a${character}.nsf`, "")), /database 1 has a character/);
      assert.equal(parse(of("a.nsf", `a${character}b`)).databases[0]?.title, "a b");
    });

  test("that is no UTF-8 text is refused", () => {
    assert.throws(() => parseListing(Buffer.from([0x61, 0xff, 0x0a]), undefined));
  });

  test("cut anywhere is refused or gives whole databases", () => {
    const whole = new Set(parse(csv).databases.map(({ path }) => path));
    for (let length = 0; length < csv.length; ++length) {
      let databases;
      try {
        databases = parse(csv.slice(0, length)).databases;
      } catch {
        continue;
      }
      for (const { path } of databases) assert.ok(whole.has(path), `${length}: ${path}`);
    }
  });
});

test("what is written as CSV is read as it was", () => {
  const rows = [
    ["a", "b,c", 'd"e'],
    ["", "line\r\nline", "\u00E9"],
  ];
  assert.deepEqual(parseCsv(rows.map(csvLine).join("")), rows);
});
