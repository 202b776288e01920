import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { UsageError } from "../../src/base/failures.js";
import { parseAddress } from "../../src/store/address.js";

describe("the address of the queue", () => {
  test("of another machine has to prove its name", () => {
    const { tls } = parseAddress("postgres://lark@queue.example/larkspan", {});
    assert.deepEqual(tls, { rejectUnauthorized: true });
    assert.deepEqual(parseAddress("rediss://queue.example", {}).tls, { rejectUnauthorized: true });
    assert.deepEqual(parseAddress("redis://queue.example", {}).tls, { rejectUnauthorized: true });
  });

  test("of this machine need not be encrypted", () => {
    for (const host of ["localhost", "127.0.0.1", "[::1]"])
      assert.equal(parseAddress(`postgres://${host}/larkspan`, {}).tls, false);
  });

  test("is weaker only when told so", () => {
    const tls = (mode: string) => parseAddress(`postgres://q/l?sslmode=${mode}`, {}).tls;
    assert.equal(tls("disable"), false);
    assert.deepEqual(tls("require"), { rejectUnauthorized: false });
    assert.throws(() => tls("prefer"), UsageError);
  });

  test("has no password", () => {
    assert.throws(
      () => parseAddress("postgres://lark:secret@q/l", {}),
      (error: Error) => {
        assert.doesNotMatch(error.message, /secret/);
        return error instanceof UsageError;
      },
    );
  });

  test("says which server, user, database and schema", () => {
    const address = parseAddress("postgres://lark%40x@q:6000/db?schema=one", {});
    assert.deepEqual(
      [address.host, address.port, address.user, address.database, address.schema],
      ["q", 6000, "lark@x", "db", "one"],
    );
    assert.equal(parseAddress("redis://localhost/3", {}).database, "3");
  });

  test("of a Redis is weakened by no word for PostgreSQL", () => {
    const environment = { PGSSLMODE: "disable" };
    assert.equal(parseAddress("postgres://queue.example", environment).tls, false);
    assert.deepEqual(parseAddress("rediss://queue.example", environment).tls, {
      rejectUnauthorized: true,
    });
  });

  const noHost = ["queue", "http://queue", "", "postgres://", "postgres:///larkspan"];
  const noNames = ["postgres://a%b@q/l", "postgres://q/%", "redis://q/first"];
  const noSchemas = ["postgres://q/l?schema=", "postgres://q/l?schema=a%22b"];
  for (const text of [...noHost, ...noNames, ...noSchemas])
    test(`is not '${text}'`, () => {
      assert.throws(() => parseAddress(text, {}), UsageError);
    });

  test("names a certificate file that can be read", () => {
    const url = "postgres://q/l?sslrootcert=/nowhere/ca.pem";
    assert.throws(() => parseAddress(url, {}), /certificate file/);
  });
});
