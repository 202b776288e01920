// The board as a server: who is let in, what it tells, and what can be changed through it.
import assert from "node:assert/strict";
import { once } from "node:events";
import { chownSync, existsSync, readFileSync, statSync, writeFileSync } from "node:fs";
import { connect } from "node:net";
import { hostname } from "node:os";
import { join } from "node:path";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { userName } from "../../src/options/common.js";
import { BoardCaller } from "../support/boardCaller.js";
import { Between } from "../support/between.js";
import { makeCertificate } from "../support/certificate.js";
import { Fleet, pause, until } from "../support/fleet.js";
import { TestServer } from "../support/postgres.js";
import { request } from "../support/request.js";

let server: TestServer;
let fleet: Fleet;
let schemas = 0;

const password = "a long password";

before(async () => {
  server = await TestServer.start();
});

after(() => {
  server.remove();
});

beforeEach(() => {
  fleet = new Fleet(`${server.url}?schema=board${++schemas}`);
  fleet.do("init");
});

afterEach(async () => {
  await fleet.end();
});

function add(paths: readonly string[], ...words: string[]): void {
  const listing = fleet.list("list.csv", "Mill/Example", paths);
  fleet.do("add", listing, "--root", fleet.root, ...words);
}

// The file of logins with this person in it.
async function addLogin(name: string): Promise<string> {
  const file = join(fleet.folder, "logins");
  const login = fleet.start(["login", name, "--password-file", file]);
  login.process.stdin?.end(`${password}\n`);
  assert.equal(await login.ended, 0, login.output());
  return file;
}

async function openBoard(...words: string[]): Promise<BoardCaller> {
  return new BoardCaller((await fleet.board(words)).url);
}

describe("a board is refused", () => {
  const cases: [string[], number, RegExp][] = [
    [[], 1, /--port/],
    [["--port", "65536"], 1, /no port/],
    [["--port", "0", "--host", "0.0.0.0"], 1, /a login is needed/],
    [["--port", "0", "--host", "::"], 1, /a login is needed/],
    [["--port", "0", "--name", "board.example"], 1, /a login is needed/],
    [["--port", "0", "--host", "0.0.0.0", "--password-file", "LOGINS"], 1, /unencrypted/],
    [["--port", "0", "--name", "a:80", "--password-file", "LOGINS"], 1, /no name of a host/],
    [["--port", "0", "--certificate", "c.pem"], 1, /belong together/],
    [["--port", "0", "--password-file", "nowhere"], 2, /cannot be read/],
    [["--port", "0", "--password-file", "EMPTY"], 2, /nobody could sign in/],
    [["--port", "0", "--password-file", "OPEN"], 2, /others can read/],
    [["--port", "0", "--certificate", "OPEN", "--key", "OPEN"], 2, /others can read the key/],
    [["--port", "0", "--certificate", "EMPTY", "--key", "KEY"], 2, /the key cannot be used/],
    [["--port", "0", "--certificate", "PEM", "--key", "EMPTY"], 2, /the key cannot be used/],
    [["--port", "0", "--certificate", "PEM", "--key", "OTHER"], 2, /the key cannot be used/],
    [["--port", "0", "--url", "postgres://localhost:1/x"], 2, /cannot be reached/],
    [["--port", "TAKEN"], 2, /another program has it/],
  ];
  for (const [words, code, message] of cases)
    test(`with '${words.join(" ")}'`, async () => {
      const empty = join(fleet.folder, "empty");
      const open = join(fleet.folder, "open");
      writeFileSync(empty, "", { mode: 0o600 });
      writeFileSync(open, "", { mode: 0o644 });
      const names: Record<string, string> = {
        EMPTY: empty,
        OPEN: open,
        TAKEN: String(server.port),
      };
      if (words.includes("--key")) {
        for (const name of ["PEM", "KEY", "OTHER"]) names[name] = join(fleet.folder, name);
        makeCertificate(join(fleet.folder, "x"), join(fleet.folder, "OTHER"));
        makeCertificate(join(fleet.folder, "PEM"), join(fleet.folder, "KEY"));
      }
      if (words.includes("LOGINS")) names["LOGINS"] = await addLogin("anna");
      const ran = fleet.run("board", ...words.map((word) => names[word] ?? word));
      assert.equal(ran.code, code, ran.errors);
      assert.match(ran.errors, message);
      assert.doesNotMatch(ran.errors, /^ +at /m);
    });
});

describe("a board of this machine alone", () => {
  test("tells counts, servers and rows, and who queued nothing secret", async () => {
    add(["a.nsf", "b.losses.nsf", "c.gone.nsf"], "--identity", "migration");
    const identities = join(fleet.folder, "identities.json");
    const identity = { migration: { idFile: "m.id", password: "identity-secret" } };
    writeFileSync(identities, JSON.stringify(identity), { mode: 0o600 });
    const worker = fleet.worker("one", ["--until-empty", "--identities", identities]);
    assert.equal(await worker.ended, 0, worker.output());
    const board = await openBoard();
    const data = await board.data();
    assert.deepEqual([data.tally.whole, data.tally.losses, data.tally.failed], [1, 1, 1]);
    assert.deepEqual([data.databases, data.open, data.failure, data.user], [3, 0, "", ""]);
    assert.deepEqual(
      data.servers.map(({ name, limit, isPaused }) => [name, limit, isPaused]),
      [["Mill/Example", 4, false]],
    );
    const failed = await board.data("verdict=failed");
    assert.deepEqual(
      failed.list.rows.map(({ path, attempts }) => [path, attempts]),
      [["c.gone.nsf", 1]],
    );
    assert.match(failed.list.rows[0]?.reason ?? "", /File does not exist/);
    const job = await board.get(`/api/jobs/${failed.list.rows[0]?.id ?? ""}`);
    assert.match(job.text, /"identity":"migration"/);
    assert.doesNotMatch(JSON.stringify(data) + job.text, /identity-secret|m\.id/);
  });

  test("serves its own files and nothing else", async () => {
    const board = await openBoard();
    for (const path of ["/", "/board.css", "/icon.svg", "/page/main.js"])
      assert.equal((await board.get(path)).code, 200, path);
    const others = ["/page/main.js.map", "/page/../boardServer.js", "/page/%2e%2e/boardServer.js"];
    for (const path of [...others, "/api/jobs/none", "/x", "/page/", "//x/"])
      assert.equal((await board.get(path)).code, 404, path);
    assert.equal((await request(board.url, { method: "PUT" })).code, 405);
  });

  test("lets a browser fetch nothing from elsewhere, and frame or keep nothing", async () => {
    const board = await openBoard();
    for (const path of ["/", "/api/board", "/page/main.js", "/x"]) {
      const { headers } = await board.get(path);
      const policy = String(headers["content-security-policy"]);
      assert.match(policy, /^default-src 'none'; script-src 'self'; style-src 'self';/);
      assert.match(policy, /frame-ancestors 'none'/);
      assert.match(policy, /require-trusted-types-for 'script'/);
      assert.doesNotMatch(policy, /unsafe|\*|https?:/);
      assert.equal(headers["x-content-type-options"], "nosniff");
      assert.equal(headers["cache-control"], "no-store");
      assert.equal(headers["access-control-allow-origin"], undefined);
    }
  });

  test("answers nobody who calls it by another name", async () => {
    const board = await openBoard();
    for (const path of ["/", "/api/board", "/page/main.js"])
      assert.equal((await board.get(path, { Host: "evil.example" })).code, 421);
    assert.equal((await board.get("/", { Host: "localhost:1" })).code, 200);
    const { token } = await board.data();
    const evil = { Host: "evil.example", Origin: "http://evil.example", "X-Board-Token": token };
    assert.equal((await board.post("/api/change", "{}", evil)).code, 421);
  });

  test("changes nothing without its token, or for another page", async () => {
    add(["a.nsf"]);
    const board = await openBoard();
    const { token } = await board.data();
    const change = JSON.stringify({ change: "cancel", of: fleet.job("a.nsf").id });
    const right = { "X-Board-Token": token };
    const wrong: Record<string, string>[] = [
      {},
      { "X-Board-Token": "" },
      { "X-Board-Token": `${token}x` },
      { ...right, Origin: "http://evil.example" },
      { ...right, Origin: "null" },
      { ...right, "Sec-Fetch-Site": "cross-site" },
    ];
    for (const headers of wrong)
      assert.equal((await board.post("/api/change", change, headers)).code, 403);
    for (const body of ["", "[]", "x".repeat(9999)])
      assert.equal((await board.post("/api/change", body, right)).code, 400);
    const form = { ...right, "Content-Type": "text/plain" };
    assert.equal((await board.post("/api/change", change, form)).code, 400);
    for (const body of ["{}", '{"change":"toString","of":""}', '{"change":"cancel"}'])
      assert.equal((await board.post("/api/change", body, right)).code, 409);
    assert.equal(fleet.job("a.nsf").verdict, "waiting");
    assert.equal((await board.post("/api/change", change, right)).code, 200);
    assert.equal(fleet.job("a.nsf").verdict, "cancelled");
  });

  test("takes no more than a change is long", async () => {
    const board = await openBoard();
    const { token } = await board.data();
    const sent = board.post("/api/change", "x".repeat(10_000_000), { "X-Board-Token": token });
    const code = await sent.then(({ code }) => code).catch(() => 0);
    assert.ok(code === 0 || code === 400, String(code));
    assert.equal((await board.get("/")).code, 200);
  });

  test("ends when it is asked to, with connections open", async () => {
    const board = await fleet.board(["--stop-on-stdin-end"]);
    const caller = new BoardCaller(board.url);
    await caller.get("/", { Connection: "keep-alive" });
    board.process.stdin?.end();
    assert.equal(await board.ended, 0, board.output());
    const other = await fleet.board();
    other.process.kill("SIGTERM");
    assert.equal(await other.ended, 0, other.output());
  });

  test("ends at once when it is asked a second time", async () => {
    const between = await Between.start(server.port);
    const far = new Fleet(fleet.url.replace(`:${server.port}/`, `:${between.port}/`));
    try {
      const board = await far.board();
      const caller = new BoardCaller(board.url);
      await caller.data();
      between.freeze();
      const unanswered = caller.change({ change: "pause", of: "" }).catch(() => undefined);
      await pause(500);
      board.process.kill("SIGTERM");
      await until("it heard that", () => board.output().includes("asked to end"));
      await pause(500);
      assert.equal(board.process.exitCode, null);
      board.process.kill("SIGTERM");
      assert.equal(await board.ended, 4, board.output());
      await unanswered;
    } finally {
      await far.end();
      between.end();
    }
  });

  test("goes on when the reader of its output goes away", async () => {
    const board = await fleet.board();
    board.process.stdout?.destroy();
    const caller = new BoardCaller(board.url);
    for (let number = 0; number < 3; ++number)
      assert.equal((await caller.change({ change: "pause", of: "" })).code, 200);
    board.process.kill("SIGTERM");
    assert.equal(await board.ended, 0, board.output());
  });

  test("tells that the queue is away, and goes on when it is back", async () => {
    add(["a.nsf"]);
    const started = await fleet.board();
    const board = new BoardCaller(started.url);
    assert.equal((await board.data()).databases, 1);
    server.down();
    try {
      await until("it tells", async () => (await board.data()).failure !== "");
      const data = await board.data();
      assert.match(data.failure, /cannot be reached/);
      assert.equal(data.databases, 1);
      const refused = await board.change({ change: "pause", of: "" });
      assert.equal(refused.code, 409);
      assert.match(refused.text, /cannot be reached/);
      const line = `Z ${userName()}: {"change":"pause","of":""} failed: the queue at `;
      assert.ok(started.output().includes(line), started.output());
    } finally {
      server.up();
    }
    await until("it is back", async () => (await board.data()).failure === "");
  });
});

describe("what is done through the board", () => {
  test("cancels what waits, has it tried again, and makes anew only when told so", async () => {
    add(["a.nsf", "b.gone.nsf"]);
    const board = await openBoard();
    const id = fleet.job("a.nsf").id;
    const told = async (change: object) => {
      const { code, text } = await board.change(change);
      return `${code} ${text}`;
    };
    assert.match(await told({ change: "cancel", of: id }), /200 .*is cancelled/);
    assert.equal((await board.data("verdict=cancelled")).list.rows[0]?.path, "a.nsf");
    assert.match(await told({ change: "retry", of: id }), /200 .*no longer cancelled/);
    assert.equal(await fleet.worker("one", ["--until-empty"]).ended, 0);
    assert.match(await told({ change: "cancel", of: id }), /409 .*has ended already/);
    assert.match(await told({ change: "retry", of: id }), /409 .*--again/);
    assert.match(await told({ change: "retry", of: id, again: true }), /200 .*exported again/);
    assert.match(await told({ change: "retry-failed", of: "" }), /200 .*1 jobs/);
    assert.match(await told({ change: "cancel", of: "none" }), /409 .*no job/);
    assert.equal(await fleet.worker("two", ["--until-empty"]).ended, 0);
    assert.equal(fleet.times("a.nsf", "placed"), 2);
    assert.equal(fleet.times("b.gone.nsf", "start"), 2);
  });

  test("pauses and resumes, all or one server", async () => {
    add(["a.nsf"]);
    const board = await openBoard();
    const isPaused = async () => {
      const { isPaused: all, servers } = await board.data();
      return [all, servers[0]?.isPaused];
    };
    await board.change({ change: "pause", of: "Mill/Example" });
    assert.deepEqual(await isPaused(), [false, true]);
    await board.change({ change: "resume", of: "Mill/Example" });
    assert.deepEqual(await isPaused(), [false, false]);
    await board.change({ change: "pause", of: "" });
    assert.deepEqual(await isPaused(), [true, true]);
    await board.change({ change: "resume", of: "" });
    assert.deepEqual(await isPaused(), [false, false]);
  });

  test("needs no more than the rights of persons", async () => {
    server.sql("CREATE ROLE watcher LOGIN");
    fleet.do("init", "--grant", "watcher");
    add(["a.nsf", "b.gone.nsf"]);
    assert.equal(await fleet.worker("one", ["--until-empty"]).ended, 0);
    const url = fleet.url.replace("larkspan@", "watcher@");
    const board = new BoardCaller((await fleet.board(["--url", url])).url);
    const [whole, failed] = [fleet.job("a.nsf").id, fleet.job("b.gone.nsf").id];
    assert.equal((await board.get(`/api/jobs/${failed}`)).code, 200);
    for (const path of ["queues?page=1&jobsPerPage=10", "redis/stats"])
      assert.equal((await board.get(`/queues/api/${path}`)).code, 200, path);
    const changes = [
      { change: "retry-failed", of: "" },
      { change: "cancel", of: failed },
      { change: "retry", of: failed },
      { change: "retry", of: whole, again: true },
      { change: "pause", of: "Mill/Example" },
      { change: "pause", of: "" },
      { change: "resume", of: "" },
    ];
    for (const change of changes) {
      const { code, text } = await board.change(change);
      assert.equal(code, 200, text);
    }
  });
});

describe("the page of the queues themselves", () => {
  test("shows the jobs, and asks for nothing from elsewhere", async () => {
    add(["a.nsf"]);
    const board = await openBoard();
    const page = await board.get("/queues/");
    assert.equal(page.code, 200);
    assert.doesNotMatch(page.text, /<link[^>]*https?:|<script[^>]*https?:|<%/);
    const policy = String(page.headers["content-security-policy"]);
    assert.match(
      policy,
      /^default-src 'none'; script-src 'self'; style-src 'self' 'unsafe-inline';/,
    );
    assert.doesNotMatch(policy, /\*|https?:/);
    for (const [, file] of page.text.matchAll(/<(?:script|link)[^>]*(?:src|href)="(static[^"]+)"/g))
      assert.equal((await board.get(`/queues/${file ?? ""}`)).code, 200, file);
    const listed = await board.get("/queues/api/queues?page=1&jobsPerPage=10");
    const { queues } = JSON.parse(listed.text) as { queues: { name: string; counts: object }[] };
    assert.deepEqual(
      queues.map(({ name }) => name.split(".")[0]),
      ["mill_example"],
    );
    const id = fleet.job("a.nsf").id;
    const job = await board.get(`/queues/api/queues/${queues[0]?.name ?? ""}/${id}`);
    assert.match(job.text, /"path":"a\.nsf"/);
  });

  test("changes nothing, whatever is asked of it", async () => {
    add(["a.nsf"]);
    const board = await openBoard();
    const { token, list } = await board.data();
    const queue = `/queues/api/queues/${list.rows[0]?.queue ?? ""}`;
    const headers = { "X-Board-Token": token, Origin: board.origin };
    for (const path of [`${queue}/pause`, `${queue}/obliterate`, `${queue}/clean/wait`])
      for (const method of ["GET", "PUT", "POST", "PATCH", "DELETE"]) {
        const { code } = await request(board.origin + path, { method, headers });
        assert.ok(code === 404 || code === 405, `${method} ${path}: ${code}`);
      }
    const data = await board.data();
    assert.deepEqual([data.databases, data.servers[0]?.isPaused], [1, false]);
  });

  test("has no files but its own", async () => {
    const board = await openBoard();
    const others = ["index.ejs", "static/../index.ejs", "static/..%2f..%2fpackage.json", "static"];
    for (const path of [
      ...others,
      "static/js",
      "package.json",
      "../package.json",
      "api/none",
      "api/queues/%ZZ/1",
    ])
      assert.equal((await board.get(`/queues/${path}`)).code, 404, path);
  });
});

describe("a board with a login", () => {
  test("shows nothing and changes nothing before", async () => {
    add(["a.nsf"]);
    const board = await openBoard("--password-file", await addLogin("anna"));
    const { code, headers } = await board.get("/");
    assert.deepEqual([code, headers.location], [303, "/login"]);
    assert.equal((await board.get("/api/board")).code, 401);
    assert.equal((await board.get(`/api/jobs/${fleet.job("a.nsf").id}`)).code, 401);
    assert.equal((await board.post("/api/change", "{}")).code, 401);
    for (const path of ["/queues/", "/queues/api/queues", "/queues/static/favicon.ico"])
      assert.equal((await board.get(path)).code, 401);
    assert.equal((await board.get("/login")).code, 200);
  });

  test("lets in who knows the password, and tells who did what", async () => {
    add(["a.nsf"]);
    const board = await openBoard("--password-file", await addLogin("anna"));
    const { code, headers } = await board.signIn("anna", password);
    assert.deepEqual([code, headers.location], [303, "/"]);
    assert.match(headers["set-cookie"]?.[0] ?? "", /; Path=\/; HttpOnly; SameSite=Strict$/);
    assert.equal((await board.get("/")).code, 200);
    assert.equal((await board.get("/login")).code, 303);
    assert.equal((await board.data()).user, "anna");
    await board.change({ change: "cancel", of: fleet.job("a.nsf").id });
    assert.equal(fleet.job("a.nsf").reason, "cancelled by anna");
  });

  test("takes no sign-in that comes from another page", async () => {
    const board = await openBoard("--password-file", await addLogin("anna"));
    const form = new URLSearchParams({ name: "anna", password }).toString();
    assert.equal((await board.post("/login", form, { Origin: "http://evil.example" })).code, 403);
  });

  test("hears no more than five wrong tries, not even a right one then", async () => {
    const board = await openBoard("--password-file", await addLogin("anna"));
    const codes: number[] = [];
    for (let number = 0; number < 5; ++number)
      codes.push((await board.signIn(number % 2 === 0 ? "anna" : "bert", "wrong")).code);
    assert.deepEqual(codes, [401, 401, 401, 401, 401]);
    const { code, headers } = await board.signIn("anna", password);
    assert.deepEqual([code, headers["retry-after"]], [429, "300"]);
    assert.equal((await board.get("/api/board")).code, 401);
  });

  test("hears no more of them when they come at once", async () => {
    const board = await openBoard("--password-file", await addLogin("anna"));
    const tries = Array.from({ length: 30 }, () => board.signIn("anna", "wrong"));
    const codes = (await Promise.all(tries)).map(({ code }) => code);
    assert.equal(codes.filter((code) => code === 401).length, 5);
    assert.equal(codes.filter((code) => code === 429).length, 25);
  });

  test("forgets who signs out, and who is taken out of the file", async () => {
    const file = await addLogin("anna");
    await addLogin("bert");
    const board = await fleet.board(["--password-file", file]);
    const [anna, bert] = [new BoardCaller(board.url), new BoardCaller(board.url)];
    await anna.signIn("anna", password);
    await bert.signIn("bert", password);
    const { token } = await anna.data();
    assert.equal((await anna.post("/api/leave", "{}")).code, 403);
    assert.equal((await anna.post("/api/leave", "{}", { "X-Board-Token": token })).code, 200);
    assert.equal((await anna.get("/api/board")).code, 401);
    assert.equal((await bert.get("/api/board")).code, 200);
    fleet.do("login", "bert", "--password-file", file, "--remove");
    assert.equal((await bert.get("/api/board")).code, 401);
    assert.doesNotMatch(board.output(), new RegExp(password));
  });

  test("is served encrypted, under the names that it was given", async () => {
    const [certificate, key] = [join(fleet.folder, "c.pem"), join(fleet.folder, "k.pem")];
    makeCertificate(certificate, key);
    const { url } = await fleet.board([
      ...[
        "--host",
        "0.0.0.0",
        "--name",
        "Board.example",
        "--name",
        "büro.example",
        "--password-file",
        await addLogin("anna"),
      ],
      ...["--certificate", certificate, "--key", key],
    ]);
    assert.match(url, /^https:\/\/board\.example:\d+\/$/);
    const port = new URL(url).port;
    const ca = readFileSync(certificate, "utf8");
    const board = new BoardCaller(`https://localhost:${port}/`, ca);
    const { headers } = await board.signIn("anna", password);
    assert.match(headers["set-cookie"]?.[0] ?? "", /^__Host-.*; SameSite=Strict; Secure$/);
    assert.equal((await board.data()).user, "anna");
    assert.equal((await board.get("/", { Host: `board.example:${port}` })).code, 200);
    assert.equal((await board.get("/", { Host: "xn--bro-hoa.example" })).code, 200);
    assert.equal((await board.get("/", { Host: "other.example" })).code, 421);
    await assert.rejects(request(`http://localhost:${port}/`));
  });

  test("ends soon, though somebody who came has not agreed on keys", async () => {
    const [certificate, key] = [join(fleet.folder, "c.pem"), join(fleet.folder, "k.pem")];
    makeCertificate(certificate, key);
    const words = ["--certificate", certificate, "--key", key];
    const board = await fleet.board(["--password-file", await addLogin("anna"), ...words]);
    const silent = connect(Number(new URL(board.url).port), "127.0.0.1");
    await once(silent, "connect");
    // Behind it, so that the server knows of it.
    const ca = readFileSync(certificate, "utf8");
    await new BoardCaller(board.url.replace("127.0.0.1", "localhost"), ca).get("/login");
    const begun = Date.now();
    board.process.kill("SIGTERM");
    assert.equal(await board.ended, 0, board.output());
    assert.ok(Date.now() - begun < 5000);
    silent.destroy();
  });

  test("is served unencrypted elsewhere when told so", async () => {
    const login = ["--password-file", await addLogin("anna")];
    const { url } = await fleet.board(["--host", "0.0.0.0", "--unencrypted", ...login]);
    const { port, hostname: name } = new URL(url);
    assert.equal(name, hostname().toLowerCase());
    assert.equal((await request(`http://127.0.0.1:${port}/login`)).code, 200);
  });
});

describe("the logins of a board", () => {
  test("are kept in a file that nobody else can read, without the password", async () => {
    const file = await addLogin("anna");
    assert.equal(statSync(file).mode & 0o777, 0o600);
    assert.match(readFileSync(file, "utf8"), /^anna:scrypt:/);
    assert.ok(!readFileSync(file, "utf8").includes(password));
    await addLogin("anna");
    await addLogin("bert");
    assert.equal(readFileSync(file, "utf8").trim().split("\n").length, 2);
    assert.ok(!existsSync(`${file}.new`));
  });

  test("stay those of the user whose file it is", async (context) => {
    if (process.getuid?.() !== 0) {
      context.skip("who is not root has no other user");
      return;
    }
    const file = await addLogin("anna");
    chownSync(file, 65534, 65533);
    await addLogin("bert");
    const { uid, gid, mode } = statSync(file);
    assert.deepEqual([uid, gid, mode & 0o777], [65534, 65533, 0o600]);
    fleet.do("login", "anna", "--password-file", file, "--remove");
    assert.equal(statSync(file).uid, 65534);
    assert.match(readFileSync(file, "utf8"), /^bert:[^\n]*\n$/);
  });

  const cases: [string, string, number, RegExp][] = [
    ["anna", "short\n", 1, /12 letters or more/],
    ["anna", "", 1, /12 letters or more/],
    ["a:b", `${password}\n`, 1, /no name for a login/],
  ];
  for (const [name, input, code, message] of cases)
    test(`take no '${name}' with '${input.trim()}'`, async () => {
      const file = join(fleet.folder, "logins");
      const login = fleet.start(["login", name, "--password-file", file]);
      login.process.stdin?.end(input);
      assert.equal(await login.ended, code);
      assert.match(login.output(), message);
      assert.ok(!existsSync(file));
    });
});

test("a board of 30,000 jobs answers soon, in small pieces, and stays small", async () => {
  const file = join(fleet.folder, "many.csv");
  const line = (index: number) => `Mill,mail\\db${index}.nsf,Title of ${index},${index}`;
  const lines = Array.from({ length: 30_000 }, (_, index) => line(index));
  writeFileSync(file, ["server,path,title,bytes", ...lines, ""].join("\n"));
  fleet.do("add", file, "--root", "D:\\out");
  const started = await fleet.board();
  const board = new BoardCaller(started.url);
  let slowest = 0;
  for (let number = 0; number < 20; ++number) {
    const begun = Date.now();
    const { text } = await board.get(`/api/board?page=${number * 30}&search=db`);
    slowest = Math.max(slowest, Date.now() - begun);
    assert.ok(text.length < 60_000, `${text.length} bytes`);
    await board.change({ change: "pause", of: "none" });
  }
  const { list, tally } = await board.data("page=600");
  assert.deepEqual([list.found, list.pages, list.rows.length], [30_000, 600, 50]);
  assert.equal(tally.waiting, 30_000);
  const status = readFileSync(`/proc/${started.process.pid ?? 0}/status`, "utf8");
  const peak = Number(/VmHWM:\s*(\d+)/.exec(status)?.[1]) / 1000;
  assert.ok(peak < 500, `${peak} MB`);
  assert.ok(slowest < 5000, `${slowest} ms`);
  console.log(`the slowest answer took ${slowest} ms, the peak was ${Math.round(peak)} MB`);
});
