// What the words of the queue's server come to, and whose words they are.
import assert from "node:assert/strict";
import { test } from "node:test";
import { CannotError, UsageError } from "../../src/base/failures.js";
import { explain } from "../../src/store/store.js";

test("what the server says is told with its name", () => {
  const error = explain(new Error("password authentication failed"), "postgres://queue");
  assert.match(error.message, /^the queue at postgres:\/\/queue: it refuses this user/);
});

test("what the program says itself is no word of the server", () => {
  for (const error of [
    new CannotError("Mill!!password.nsf has ended already"),
    new UsageError("a password has 12 letters or more"),
  ])
    assert.equal(explain(error, "postgres://queue"), error);
});
