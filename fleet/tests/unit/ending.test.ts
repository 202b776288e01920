import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { defaultWords, endingOf } from "../../src/export/ending.js";
import type { ExportEnd } from "../../src/export/exportRun.js";

function ended(code: number | null, reason: string, errors = ""): ExportEnd {
  const end = {
    kind: "end" as const,
    exitCode: code ?? -1,
    reason,
    out: "",
    counts: null,
    seconds: 0,
  };
  return {
    code,
    errors,
    start: { kind: "start", out: "D:\\a.attempt-1" },
    ready: undefined,
    end: reason === "" && errors !== "" ? undefined : end,
    wasPlaced: false,
    errorLines: [],
  };
}

function opening(words: string): string {
  return `the exporter ended while it was opening the database: Error opening database (${words})`;
}

describe("what an export comes to", () => {
  const table: [string, ExportEnd, string][] = [
    ["whole", ended(0, ""), "done"],
    ["with losses", ended(3, "1 loss, which is listed"), "done"],
    ["another program that ends well", { ...ended(0, ""), end: undefined }, "unfit"],
    ["one whose last word is another code", { ...ended(3, ""), code: 0 }, "unfit"],
    ["stopped", ended(4, "stopped: standard input has come to its end"), "stopped"],
    ["not accounted for", ended(5, "not accounted for: ..."), "incomplete"],
    ["a full disk", ended(5, "stopped: less than 64 MB are free on the disk"), "unfit"],
    ["no such database", ended(2, opening("File does not exist")), "hopeless"],
    ["no access", ended(2, opening("You are not authorized to open the database")), "hopeless"],
    ["a server that is away", ended(2, opening("Server cannot be reached")), "unreachable"],
    ["words that nobody knows", ended(2, opening("Frambling grommet")), "incomplete"],
    [
      "another thing in its folder",
      ended(2, "the folder 'D:\\a' holds something that is not this export, finished"),
      "hopeless",
    ],
    ["an ID that cannot be switched to", ended(2, "Unable to switch ID (Wrong password)"), "unfit"],
    ["a runtime that does not start", ended(2, "Notes initialization failed (1A5)"), "unfit"],
    ["an identity without a password", ended(1, "", "--id-file needs a password: ..."), "unfit"],
    ["an option that is not known", ended(1, "", "no such option: --frob"), "hopeless"],
    ["a crash of the console", ended(null, ""), "incomplete"],
    ["a program that is not there", { ...ended(null, "", "ENOENT"), start: undefined }, "unfit"],
  ];
  for (const [what, end, kind] of table)
    test(`of ${what} is '${kind}'`, () => {
      assert.equal(endingOf(end, defaultWords).kind, kind);
    });

  test("follows the words of another library", () => {
    const words = { hopeless: /nicht vorhanden/i, unreachable: /antwortet nicht/i };
    const kind = (text: string) => endingOf(ended(2, opening(text)), words).kind;
    assert.equal(kind("Datei nicht vorhanden"), "hopeless");
    assert.equal(kind("Der Server antwortet nicht"), "unreachable");
  });
});
