import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { Shares } from "../../src/worker/shares.js";

describe("the workers of a machine", () => {
  test("are as many as an export wants, where there is no limit", () => {
    const shares = new Shares(Infinity, 2);
    assert.equal(shares.take(8), 8);
    assert.equal(shares.take(8), 8);
  });

  test("are kept for exports that begin later", () => {
    const shares = new Shares(6, 3);
    assert.equal(shares.take(8), 4);
    assert.equal(shares.take(8), 1);
    assert.equal(shares.take(1), 1);
  });

  test("come back with an export's end", () => {
    const shares = new Shares(6, 3);
    const first = shares.take(4);
    assert.equal(shares.take(4), 1);
    shares.giveBack(first);
    assert.equal(shares.take(9), 4);
    assert.equal(shares.take(9), 1);
  });

  test("are never more than the limit, whoever comes and goes", () => {
    const shares = new Shares(7, 4);
    const running: number[] = [];
    let most = 0;
    for (let step = 0; step < 200; ++step) {
      const ends = running.length === 4 || (running.length > 0 && (step * 7) % 5 < 2);
      if (ends) shares.giveBack(running.splice((step * 3) % running.length, 1)[0] ?? 0);
      else running.push(shares.take(1 + (step % 5)));
      assert.ok(running.every((share) => share >= 1));
      most = Math.max(
        most,
        running.reduce((sum, share) => sum + share, 0),
      );
    }
    assert.equal(most, 7);
  });
});
