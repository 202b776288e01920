import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { runExport } from "../../src/export/exportRun.js";
import type { ExportEnd } from "../../src/export/exportRun.js";
import { FakeClock, settle } from "../support/fakeClock.js";
import { ScriptedConsole } from "../support/scriptedConsole.js";

interface Run {
  console: ScriptedConsole;
  clock: FakeClock;
  stop: AbortController;
  kinds: string[];
  end: Promise<ExportEnd>;
}

function begin(mayPlace: () => Promise<boolean> = () => Promise.resolve(true)): Run {
  const console = new ScriptedConsole();
  const clock = new FakeClock();
  const stop = new AbortController();
  const kinds: string[] = [];
  const owner = { onEvent: (event: { kind: string }) => void kinds.push(event.kind), mayPlace };
  const end = runExport(console.start, ["console"], {}, owner, stop.signal, clock);
  return { console, clock, stop, kinds, end };
}

describe("an export", () => {
  test("is placed when it is complete and its owner agrees", async () => {
    for (const exitCode of [0, 3]) {
      const run = begin();
      run.console.tell("ready", { exitCode, losses: 0 });
      await settle();
      assert.deepEqual(run.console.written, ["place"]);
      run.console.tellEnd(exitCode);
      assert.equal((await run.end).wasPlaced, true);
    }
  });

  test("is left when its owner does not agree, or cannot say", async () => {
    for (const answer of [() => Promise.resolve(false), () => Promise.reject(new Error("away"))]) {
      const run = begin(answer);
      run.console.tell("ready", { exitCode: 0, losses: 0 });
      await settle();
      assert.deepEqual(run.console.written, ["leave"]);
      run.console.tellEnd(4);
      assert.equal((await run.end).wasPlaced, false);
    }
  });

  test("is left when it is to stop while its owner is asked", async () => {
    let answer: (may: boolean) => void = () => undefined;
    const run = begin(
      () =>
        new Promise((resolve) => {
          answer = resolve;
        }),
    );
    run.console.tell("ready", { exitCode: 0, losses: 0 });
    run.stop.abort();
    answer(true);
    await settle();
    assert.deepEqual(run.console.written, ["leave"]);
    run.console.tellEnd(4);
    await run.end;
  });

  test("that is to stop has its input closed, and two seconds to end", async () => {
    const run = begin();
    run.stop.abort();
    assert.ok(run.console.isInputClosed);
    await run.clock.advance(1900);
    assert.ok(!run.console.isKilled);
    run.console.tellEnd(4);
    await run.clock.advance(1000);
    assert.ok(!run.console.isKilled);
    assert.equal((await run.end).code, 4);
  });

  test("that does not end by then is ended by force", async () => {
    const run = begin();
    run.stop.abort();
    await run.clock.advance(2100);
    assert.ok(run.console.isKilled);
    assert.equal((await run.end).code, null);
  });

  test("is told of by the events that are known, and by no other line", async () => {
    const run = begin();
    for (const line of ["", "no JSON", "[1]", '{"version":2,"kind":"phase","phase":"x"}', "{"])
      run.console.say(line);
    run.console.tell("novelty", { x: 1 });
    run.console.tell("phase", { phase: "opening" });
    run.console.tellEnd(0);
    await run.end;
    assert.deepEqual(run.kinds, ["phase", "end"]);
  });
});
