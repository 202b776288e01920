import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { startConsole } from "../../src/export/consoleProcess.js";

function run(script: string) {
  const console = startConsole([process.execPath, "-e", script], { NAME: "value" });
  const lines: string[] = [];
  console.onLine((line) => lines.push(line));
  return { console, lines };
}

describe("the process of the console", () => {
  test("has lines that end in a line feed alone, and characters that come in pieces", async () => {
    const { console, lines } = run(`
      const bytes = Buffer.from("a\\u2028b\\u00E9\\nc\\nlast");
      process.stdout.write(bytes.subarray(0, 6));
      setTimeout(() => process.stdout.write(bytes.subarray(6)), 50);
    `);
    assert.equal((await console.ended).code, 0);
    assert.deepEqual(lines, ["a\u2028b\u00E9", "c", "last"]);
  });

  test("hears words and the end of its input, and has the environment that is given", async () => {
    const { console, lines } = run(`
      process.stdin.on("data", (text) => process.stdout.write(text));
      process.stdin.on("end", () => { process.stderr.write(process.env.NAME); process.exitCode = 4; });
    `);
    console.write("place");
    console.closeInput();
    assert.deepEqual(await console.ended, { code: 4, errors: "value" });
    assert.deepEqual(lines, ["place"]);
  });

  test("ends by force without a code, and so does one that cannot be started", async () => {
    const { console } = run("setInterval(() => {}, 1000)");
    console.kill();
    assert.equal((await console.ended).code, null);
    const none = await startConsole(["/nowhere/larkspan-console.exe"], {}).ended;
    assert.equal(none.code, null);
    assert.match(none.errors, /ENOENT/);
  });
});
