// Who may ask the board, and from where.
import assert from "node:assert/strict";
import { chmodSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import type { IncomingMessage } from "node:http";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { describe, test } from "node:test";
import { isLoopback, isOwnHost, isOwnOrigin } from "../../src/board/guard.js";
import { findLogin, loginLine, parseLogins, readLogins } from "../../src/board/logins.js";
import { Sessions } from "../../src/board/sessions.js";
import { blockedFor, FailedTries } from "../../src/board/tries.js";
import { FakeClock } from "../support/fakeClock.js";

function requestOf(host: string | undefined, localAddress: string): IncomingMessage {
  return { headers: { host }, socket: { localAddress } } as unknown as IncomingMessage;
}

describe("the host that a request names", () => {
  const names = new Set(["board.example"]);
  const cases: [string | undefined, string, boolean][] = [
    ["127.0.0.1:8480", "127.0.0.1", true],
    ["localhost:9000", "127.0.0.1", true],
    ["[::1]:8480", "::1", true],
    ["localhost", "::ffff:127.0.0.1", true],
    ["10.1.2.3:8480", "::ffff:10.1.2.3", true],
    ["[fe80::1]", "fe80::1%eth0", true],
    ["Board.Example:8480", "10.1.2.3", true],
    ["localhost", "10.1.2.3", false],
    ["10.1.2.4", "10.1.2.3", false],
    ["evil.example", "127.0.0.1", false],
    ["127.0.0.1.evil.example", "127.0.0.1", false],
    ["evil.example@127.0.0.1", "127.0.0.1", false],
    ["127.0.0.1/..", "127.0.0.1", false],
    ["", "127.0.0.1", false],
    [undefined, "127.0.0.1", false],
  ];
  for (const [host, local, isOwn] of cases)
    test(`'${host ?? ""}' is ${isOwn ? "" : "not "}that of a connection to ${local}`, () => {
      assert.equal(isOwnHost(requestOf(host, local), names), isOwn);
    });
});

describe("the origin of a change", () => {
  const host = "board.example:8480";
  const cases: [Record<string, string>, boolean][] = [
    [{ origin: "https://board.example:8480" }, true],
    [{ origin: "http://board.example:8480", "sec-fetch-site": "same-origin" }, true],
    [{ origin: "http://board.example:8480", "sec-fetch-site": "same-site" }, false],
    [{ origin: "http://board.example:9000" }, false],
    [{ origin: "http://evil.example" }, false],
    [{ origin: "null" }, false],
    [{}, false],
  ];
  for (const [headers, isOwn] of cases)
    test(`${JSON.stringify(headers)} is ${isOwn ? "" : "not "}the page`, () => {
      assert.equal(isOwnOrigin({ host, ...headers }), isOwn);
    });
});

test("this machine alone is 127.0.0.0/8, ::1 and localhost", () => {
  for (const host of ["127.0.0.1", "127.9.9.9", "::1", "localhost"]) assert.ok(isLoopback(host));
  for (const host of ["0.0.0.0", "::", "10.0.0.1", "127.0.0.1.example", "127.example", ""])
    assert.ok(!isLoopback(host), host);
});

describe("a login", () => {
  test("is found by its name and password alone", async () => {
    const line = await loginLine("anna", "right password");
    assert.doesNotMatch(line, /right password/);
    const logins = parseLogins(`\ufeff${line}\r\n\n`, "f");
    assert.equal((await findLogin(logins, "anna", "right password"))?.name, "anna");
    for (const [name, password] of [
      ["anna", "wrong"],
      ["anna", ""],
      ["bert", "right password"],
      ["", ""],
    ])
      assert.equal(await findLogin(logins, name ?? "", password ?? ""), undefined);
  });

  test("has another sum each time", async () => {
    assert.notEqual(await loginLine("a", "same password"), await loginLine("a", "same password"));
  });

  const good = `anna:scrypt:32768:${"s".repeat(22)}:${"A".repeat(43)}`;
  for (const line of [
    "anna:secret",
    good.replace("32768", "32769"),
    good.replace("anna", ""),
    `${good}=`,
  ])
    test(`is none in the line '${line}', which is not told`, () => {
      assert.throws(
        () => parseLogins(`${good}\n${line}`, "f"),
        (error: Error) => /^line 2 of /.test(error.message) && !error.message.includes("secret"),
      );
    });

  test("is read from a file that nobody else can read", () => {
    const folder = mkdtempSync(join(tmpdir(), "larkspan-logins-"));
    try {
      const file = join(folder, "logins");
      writeFileSync(file, good, { mode: 0o600 });
      assert.equal(readLogins(file).length, 1);
      chmodSync(file, 0o640);
      assert.throws(() => readLogins(file), /others can read the password file/);
      assert.throws(() => readLogins(join(folder, "none")), /cannot be read/);
    } finally {
      rmSync(folder, { recursive: true });
    }
  });
});

describe("failed tries", () => {
  const six = (tries: FailedTries, address: string) =>
    Array.from({ length: 6 }, () => tries.begin(address, "anna"));

  test("are heard five times from an address, and then for a while no more", () => {
    const clock = new FakeClock();
    const tries = new FailedTries(clock);
    assert.deepEqual(six(tries, "10.0.0.1"), [true, true, true, true, true, false]);
    assert.ok(tries.begin("10.0.0.2", "anna"));
    clock.jump(blockedFor - 1);
    assert.ok(!tries.begin("::ffff:10.0.0.1", "anna"));
    clock.jump(1);
    assert.ok(tries.begin("10.0.0.1", "anna"));
  });

  test("with the name of another one are not forgiven by a right one", () => {
    const clock = new FakeClock();
    const tries = new FailedTries(clock);
    const heard: boolean[] = [];
    for (let number = 0; number < 6; ++number) {
      heard.push(tries.begin("10.0.0.1", "anna"));
      if (tries.begin("10.0.0.1", "insider")) tries.forgive("10.0.0.1", "insider");
    }
    assert.deepEqual(heard, [true, true, true, true, true, false]);
    clock.jump(blockedFor);
    assert.ok(tries.begin("10.0.0.1", "anna"));
  });

  test("of long ago count no more, though others come all the time", () => {
    const clock = new FakeClock();
    const tries = new FailedTries(clock);
    for (let number = 0; number < 20; ++number) {
      assert.ok(tries.begin("10.0.0.1", "typing error"));
      clock.jump(blockedFor / 4);
    }
  });

  test("are forgiven by a right one", () => {
    const tries = new FailedTries(new FakeClock());
    six(tries, "10.0.0.1");
    tries.forgive("10.0.0.1", "anna");
    assert.ok(tries.begin("10.0.0.1", "anna"));
  });

  test("count for all of an IPv6 network", () => {
    const tries = new FailedTries(new FakeClock());
    six(tries, "2001:db8:1:2::1");
    assert.ok(!tries.begin("2001:db8:1:2:3:4:5:6", "anna"));
    assert.ok(tries.begin("2001:db8:1:3::1", "anna"));
    six(tries, "::1");
    assert.ok(!tries.begin("::1", "anna"));
  });

  test("of very many addresses take no more room", () => {
    const tries = new FailedTries(new FakeClock());
    six(tries, "10.0.0.1");
    for (let number = 0; number < 10_000; ++number)
      tries.begin(`11.0.${number >> 8}.${number & 255}`, "anna");
    assert.ok(tries.begin("10.0.0.1", "anna"));
  });
});

describe("a session", () => {
  const anna = { name: "anna", line: "anna:1", cost: 1, salt: "", sum: "" };

  test("ends after twelve hours", () => {
    const clock = new FakeClock();
    const sessions = new Sessions(clock);
    const id = sessions.begin(anna);
    clock.jump(12 * 3_600_000 - 1);
    assert.equal(sessions.find(id, () => [anna])?.user, "anna");
    clock.jump(1);
    assert.equal(
      sessions.find(id, () => [anna]),
      undefined,
    );
  });

  test("ends with its login, or with another password of it", () => {
    for (const logins of [[], [{ ...anna, line: "anna:2" }]]) {
      const sessions = new Sessions(new FakeClock());
      const id = sessions.begin(anna);
      assert.equal(
        sessions.find(id, () => logins),
        undefined,
      );
      assert.equal(
        sessions.find(id, () => [anna]),
        undefined,
      );
    }
  });

  test("lasts while its login cannot be looked up, but lets nobody in", () => {
    const sessions = new Sessions(new FakeClock());
    const id = sessions.begin(anna);
    assert.equal(
      sessions.find(id, () => undefined),
      undefined,
    );
    assert.equal(sessions.find(id, () => [anna])?.user, "anna");
  });

  test("that is made up has no login looked up", () => {
    const sessions = new Sessions(new FakeClock());
    sessions.begin(anna);
    const never = () => assert.fail("it was looked up");
    for (const id of ["", "made up"]) assert.equal(sessions.find(id, never), undefined);
  });

  test("ends when it is signed out of, and no other one does", () => {
    const sessions = new Sessions(new FakeClock());
    const [one, other] = [sessions.begin(anna), sessions.begin(anna)];
    sessions.end(one);
    assert.equal(
      sessions.find(one, () => [anna]),
      undefined,
    );
    assert.equal(sessions.find(other, () => [anna])?.user, "anna");
  });
});
