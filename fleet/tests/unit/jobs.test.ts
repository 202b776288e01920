import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { jobIdOf } from "../../src/jobs/jobId.js";
import { priorityOf } from "../../src/jobs/priority.js";
import { queueNameOf } from "../../src/jobs/queueName.js";

const key = { server: "Mill/Example", machine: "", path: "mail\\anna.nsf" };

describe("the ID of a job", () => {
  const id = jobIdOf("D:\\export", key);

  test("begins with a letter", () => {
    assert.match(id, /^d[0-9a-f]{24}$/);
  });

  test("is the same in another letter case and with other separators", () => {
    const same = { server: "MILL/example", machine: "", path: "Mail/ANNA.nsf" };
    assert.equal(jobIdOf("d:/EXPORT/", same), id);
  });

  test("is another one for another root, server, path or machine", () => {
    const others = [
      jobIdOf("D:\\export2", key),
      jobIdOf("D:\\export", { ...key, server: "Mill" }),
      jobIdOf("D:\\export", { ...key, path: "mail\\bert.nsf" }),
      jobIdOf("D:\\export", { ...key, server: "", machine: "one" }),
      jobIdOf("D:\\export", { ...key, server: "", machine: "two" }),
    ];
    assert.equal(new Set([id, ...others]).size, 6);
  });

  test("that keeps the letter case tells two of them apart", () => {
    const upper = { ...key, path: "mail\\ANNA.nsf" };
    assert.notEqual(jobIdOf("D:", key, true), jobIdOf("D:", upper, true));
  });
});

describe("the priority", () => {
  test("is that of the larger database first", () => {
    const sizes = [1e15, 2e12, 1e12, 1.01e9, 1e9, 524_288, 1, 0];
    const priorities = sizes.map(priorityOf);
    assert.deepEqual(
      priorities,
      [...priorities].sort((one, other) => one - other),
    );
    assert.equal(new Set(priorities).size, sizes.length);
  });

  test("is one that the queue takes", () => {
    for (const size of [null, -1, NaN, Infinity, 0, 1, 1e300]) {
      const priority = priorityOf(size);
      assert.ok(Number.isInteger(priority) && priority >= 1 && priority <= 2_097_151);
    }
  });
});

describe("the queue of a server", () => {
  test("is the same in another letter case", () => {
    assert.equal(queueNameOf("MILL/x", ""), queueNameOf("mill/X", ""));
    assert.equal(queueNameOf("", "EX-07"), queueNameOf("", "ex-07"));
  });

  test("has no character that a queue's name may not have", () => {
    assert.match(queueNameOf("a:b/c d\u00FC", ""), /^[A-Za-z0-9_.-]+$/);
  });

  test("is not that of a machine called so", () => {
    assert.notEqual(queueNameOf("one", ""), queueNameOf("", "one"));
  });
});
