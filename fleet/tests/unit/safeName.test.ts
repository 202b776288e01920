import assert from "node:assert/strict";
import { createHash } from "node:crypto";
import { describe, test } from "node:test";
import { folderNameOf, safePart } from "../../src/jobs/safeName.js";

function on(server: string, path: string) {
  return { server, machine: "", path };
}

function sum(text: string): string {
  return createHash("sha256").update(text).digest("hex").slice(0, 8);
}

describe("a part of a path as a folder", () => {
  const table: [string, string][] = [
    ['a<b>c:d"e|f?g*h\u0001\u007Fi', "a_b_c_d_e_f_g_h__i"],
    ["orders. .", "orders___"],
    ["..", "__"],
    ["", "_"],
    [".hidden file.nsf", ".hidden file.nsf"],
    ["CON", "_CON"],
    ["con .txt", "_con .txt"],
    ["COM1.nsf", "_COM1.nsf"],
    ["lpt\u00B2", "_lpt\u00B2"],
    ["conin$", "_conin$"],
    ["COMX", "COMX"],
    ["CONSOLE", "CONSOLE"],
    ["COM10", "COM10"],
    ["a".repeat(300), "a".repeat(100)],
    ["a".repeat(99) + "\u{1F33F}", "a".repeat(99)],
  ];
  for (const [part, name] of table)
    test(`'${part.slice(0, 20)}' is '${name.slice(0, 20)}'`, () => {
      assert.equal(safePart(part), name);
    });
});

describe("the folder of a database", () => {
  test("is the path below the server's", () => {
    assert.equal(
      folderNameOf(on("Mill/Example", "archive\\old/orders.nsf")),
      "Mill_Example\\archive\\old\\orders.nsf",
    );
  });

  test("of a machine has that machine's name", () => {
    const key = { server: "", machine: "EX-07", path: "orders.nsf" };
    assert.equal(folderNameOf(key), "local@EX-07\\orders.nsf");
  });

  const others: [string, string, string][] = [
    ["has a character that is changed", "Mill", "a:b.nsf"],
    ["has an end that is no database's", "Mill", "orders"],
    ["lies below something called as a database", "Mill", "x.nsf\\y.nsf"],
    ["is of a server with an underscore", "Mill_Example", "a.nsf"],
    ["is called as an attempt", "Mill", "a.attempt-1\\b.nsf"],
    ["is called as one with a sum", "Mill", "a.nsf~1a2b3c4d\\b.nsf"],
    ["goes up", "Mill", "..\\..\\a.nsf"],
    ["begins with a separator", "Mill", "\\a.nsf"],
    ["has two separators", "Mill", "a\\\\b.nsf"],
    ["is too long", "Mill", `${"deep\\".repeat(40)}a.nsf`],
  ];
  for (const [why, server, path] of others)
    test(`has a sum when it ${why}`, () => {
      const name = folderNameOf(on(server, path));
      assert.match(name, /^[^\\]+\\[^\\]+~[0-9a-f]{8}$/);
      assert.ok(name.endsWith(sum(`${server.toUpperCase()}!!${path}`)), name);
      assert.ok(name.length <= 140);
    });

  test("has a sum where the listing has another one in another letter case", () => {
    const names = ["A.nsf", "a.nsf"].map((path) => folderNameOf(on("Mill", path), true));
    assert.notEqual(names[0]?.toUpperCase(), names[1]?.toUpperCase());
  });

  test("is never that of another one", () => {
    const servers = ["Mill", "Mill/A", "Mill_A", "local@x", "Mill~1a2b3c4d", "CON", "a:b"];
    const parts = ["a.nsf", "a_b.nsf", "a:b.nsf", "_CON.nsf", "CON.nsf", "x", "x.nsf", "..", " "];
    const seen = new Map<string, string>();
    for (const server of servers)
      for (const above of ["", ...parts])
        for (const last of parts) {
          const path = above === "" ? last : `${above}\\${last}`;
          const name = folderNameOf(on(server, path)).toUpperCase();
          const database = `${server}!!${path}`;
          assert.ok(!seen.has(name), `${database} and ${seen.get(name) ?? ""}: ${name}`);
          seen.set(name, database);
        }
    for (const name of seen.keys())
      for (const [other, database] of seen)
        assert.ok(!other.startsWith(`${name}\\`), `${database} lies below ${name}`);
  });
});
