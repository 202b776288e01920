// The page of the board in a real browser, while workers run.
import assert from "node:assert/strict";
import { mkdirSync } from "node:fs";
import { join } from "node:path";
import { after, afterEach, before, beforeEach, describe, test } from "node:test";
import { Browser } from "../support/browser.js";
import { Fleet, until } from "../support/fleet.js";
import type { StartedBoard } from "../support/fleet.js";
import { repository } from "../support/paths.js";
import { TestServer } from "../support/postgres.js";

let server: TestServer;
let browser: Browser;
let fleet: Fleet;
let board: StartedBoard;
let schemas = 0;

const pictures = join(repository, "build", "board");

before(async () => {
  server = await TestServer.start();
  browser = await Browser.start();
  mkdirSync(pictures, { recursive: true });
});

after(async () => {
  await browser.end();
  server.remove();
});

beforeEach(async () => {
  fleet = new Fleet(`${server.url}?schema=page${++schemas}`);
  fleet.do("init");
  board = await fleet.board();
  await browser.look(1280, 1000);
});

// Nothing was asked of anybody else, and nothing that the page's rules refuse was tried.
afterEach(async () => {
  const { origin } = new URL(board.url);
  const urls = browser.requests.filter((url) => url !== "about:blank");
  const complaints = browser.complaints.splice(0);
  await browser.value("location.assign('about:blank')");
  await fleet.end();
  assert.deepEqual(
    urls.filter((url) => new URL(url).origin !== origin),
    [],
  );
  assert.deepEqual(complaints, []);
});

function add(paths: readonly string[], ...words: string[]): void {
  const listing = fleet.list("list.csv", "Mill/Example", paths);
  fleet.do("add", listing, "--root", fleet.root, ...words);
}

function rowWith(path: string): string {
  const link = `[...document.querySelectorAll("#jobs a")]`;
  return `${link}.find((one) => one.textContent === ${JSON.stringify(path)})?.closest("tr")`;
}

async function rowText(path: string): Promise<string> {
  const cells = `[...(${rowWith(path)}?.cells ?? [])].map((cell) => cell.textContent).join("|")`;
  return String(await browser.value(cells));
}

async function awaitRow(path: string, pattern: RegExp): Promise<void> {
  let last = "";
  await until(`the row of ${path} says ${pattern}`, async () =>
    pattern.test((last = await rowText(path))),
  ).catch((error: unknown) => {
    throw new Error(`${String(error)}; it says '${last}'`);
  });
}

// With the mouse; asks first, and is told to do it.
async function click(path: string, label: string): Promise<void> {
  const button = `${rowWith(path)}.querySelector("button")`;
  assert.equal(await browser.value(`${button}.textContent`), label);
  await browser.value(`${button}.click()`);
  assert.equal(await browser.value("document.querySelector('#ask').open"), true);
  await browser.value("document.querySelector('#yes').click()");
}

describe("the page", () => {
  test("moves while a job runs, cancels it, and has it tried again", async () => {
    add(["a.slow.nsf", "b.nsf"]);
    const worker = fleet.worker("EX-07", ["--jobs", "2"], { FAKE_DOCUMENTS: "30" });
    await browser.open(board.url);
    await awaitRow("a.slow.nsf", /^Running\|a\.slow\.nsf.*documents: \d+ of 30\|EX-07/);
    const done = async () => Number(/(\d+) of 30/.exec(await rowText("a.slow.nsf"))?.[1]);
    const first = await done();
    await until("it moves", async () => (await done()) > first);
    await awaitRow("b.nsf", /^Whole/);
    await browser.picture(join(pictures, "running.png"));
    await click("a.slow.nsf", "Cancel");
    await until("it stopped", () => fleet.times("a.slow.nsf", "stopped") === 1);
    await awaitRow("a.slow.nsf", /^Cancelled\|.*cancelled by /);
    assert.equal(fleet.job("a.slow.nsf").verdict, "cancelled");
    await click("a.slow.nsf", "Retry");
    await until("it runs again", () => fleet.times("a.slow.nsf", "start") === 2);
    await awaitRow("a.slow.nsf", /^Running/);
    assert.equal(worker.process.exitCode, null);
  });

  test("shows why a job failed, and all that is known of it", async () => {
    add(["a.gone.nsf", "b.losses.nsf"]);
    assert.equal(await fleet.worker("EX-07", ["--until-empty"]).ended, 0);
    await browser.open(board.url);
    await awaitRow("a.gone.nsf", /^Failed\|.*\(File does not exist\)\|EX-07\|\|\|1\|Retry/);
    await awaitRow("b.losses.nsf", /^With losses\|.*1 loss; 3 of 4 notes\|EX-07\|1\|\|1\|Export/);
    await browser.value(`${rowWith("b.losses.nsf")}.querySelector("a").click()`);
    await browser.until("the job is shown", "document.querySelector('#job .log') !== null");
    const job = await browser.text("#job");
    assert.match(job, /Folder\S+b\.losses\.nsfAttempt\S+b\.losses\.nsf\.attempt-1Listing/);
    assert.match(job, /lost: 0000090A \(open\): Note has been deleted/);
    assert.equal(await browser.value("document.querySelector('#overview').hidden"), true);
    await browser.picture(join(pictures, "job.png"));
    await browser.value("history.back()");
    await browser.until("the table is back", "!document.querySelector('#overview').hidden");
  });

  test("exports again what is exported, after a question", async () => {
    add(["a.nsf"]);
    assert.equal(await fleet.worker("one", ["--until-empty"]).ended, 0);
    await browser.open(board.url);
    await awaitRow("a.nsf", /^Whole/);
    await click("a.nsf", "Export again");
    await awaitRow("a.nsf", /^Waiting/);
    assert.equal(await fleet.worker("two", ["--until-empty"]).ended, 0);
    assert.equal(fleet.times("a.nsf", "placed"), 2);
  });

  test("does nothing without a yes", async () => {
    add(["a.nsf"]);
    await browser.open(board.url);
    await awaitRow("a.nsf", /^Waiting/);
    for (const no of [
      "document.querySelector('#no').click()",
      "document.querySelector('#ask').close()",
    ]) {
      await browser.value(`${rowWith("a.nsf")}.querySelector("button").click()`);
      await browser.value(no);
    }
    assert.equal(await browser.value("document.querySelector('#ask').open"), false);
    assert.equal(fleet.job("a.nsf").verdict, "waiting");
  });

  test("is used with the keyboard alone", async () => {
    add(["a.nsf"]);
    await browser.open(board.url);
    await awaitRow("a.nsf", /^Waiting/);
    const focused = "document.activeElement.textContent";
    for (let steps = 0; (await browser.value(focused)) !== "Cancel"; ++steps) {
      assert.ok(steps < 40, "no Cancel is reached");
      await browser.press("Tab", 9);
    }
    await browser.press("Enter", 13);
    assert.equal(await browser.value(focused), "No");
    await browser.press("Tab", 9);
    await browser.press("Enter", 13);
    await awaitRow("a.nsf", /^Cancelled/);
    assert.equal(await browser.value(focused), "Retry");
    await browser.press("Enter", 13);
    await browser.press("Escape", 27);
    assert.equal(fleet.job("a.nsf").verdict, "cancelled");
  });

  test("pauses and resumes, all and one server", async () => {
    add(["a.nsf"]);
    await browser.open(board.url);
    await awaitRow("a.nsf", /^Waiting/);
    const wish = async (selector: string, label: string, shows: string) => {
      const button = `document.querySelector("${selector}")`;
      const isReady = `${button}.textContent === "${label}" && !${button}.disabled`;
      await browser.until(`${label} can be clicked`, isReady);
      await browser.value(`${button}.click()`);
      await browser.value("document.querySelector('#yes').click()");
      await browser.until(shows, `document.querySelector('main').innerText.includes('${shows}')`);
    };
    await wish("#servers button", "Pause", "paused; what runs goes on");
    await wish("#servers button", "Resume", "resumed");
    await wish("#pause", "Pause all", "Paused: no other export begins.");
    await wish("#resume", "Resume all", "resumed");
    await browser.until("it does", "document.querySelector('#halted').hidden");
  });

  test("finds, filters and turns its pages", async () => {
    const paths = Array.from(
      { length: 120 },
      (_, index) => `mail\\p${String(index).padStart(3, "0")}.nsf`,
    );
    add(paths);
    fleet.do("cancel", fleet.job("mail\\p007.nsf").id);
    await browser.open(board.url);
    await browser.until("one page", "document.querySelectorAll('#jobs tr').length === 50");
    assert.equal(await browser.text("#page"), "Page 1 of 3");
    await browser.value("document.querySelector('#later').click()");
    await browser.until(
      "the next",
      "document.querySelector('#page').textContent === 'Page 2 of 3'",
    );
    await browser.value("document.querySelector('#search').focus()");
    for (const key of "p007") await browser.press(key);
    await browser.until("it is found", "document.querySelectorAll('#jobs tr').length === 1");
    await awaitRow("mail\\p007.nsf", /^Cancelled/);
    const tile =
      "[...document.querySelectorAll('#tiles button')].find((one) => one.innerText.includes('Waiting'))";
    await browser.value(`${tile}.click()`);
    await browser.until("none is", "document.querySelectorAll('#jobs tr').length === 0");
    await browser.value("window.isOld = true; location.reload()");
    const stays =
      "window.isOld === undefined && document.querySelector('#verdict').value === 'waiting'" +
      " && document.querySelector('#search').value === 'p007'";
    await browser.until("the filter stays", stays);
  });

  test("takes no name for markup", async () => {
    const evil = `<img src=x onerror=document.title='bad'><script>document.title="bad"</script>.nsf`;
    const file = fleet.list("evil.csv", "<b>Mill</b>", ["a.nsf"]);
    fleet.do("add", file, "--root", fleet.root);
    fleet.do(
      "add",
      fleet.list("more.csv", "Mill", [`"${evil.replaceAll('"', '""')}"`]),
      "--root",
      fleet.root,
    );
    await browser.open(board.url);
    await awaitRow(evil, /^Waiting/);
    await browser.value(`${rowWith(evil)}.querySelector("a").click()`);
    await browser.until("the job is shown", "document.querySelector('#job dl') !== null");
    assert.equal(await browser.value("document.querySelectorAll('img, b, main script').length"), 0);
    assert.match(await browser.text("#servers"), /<b>Mill<\/b>/);
    assert.doesNotMatch(await browser.text("title"), /bad/);
  });

  for (const [width, scheme] of [
    [1280, "light"],
    [1280, "dark"],
    [800, "light"],
    [800, "dark"],
    [400, "light"],
  ] as const)
    test(`fits into ${width} points, ${scheme}`, async () => {
      add(["a.gone.nsf", "b.losses.nsf", `mail\\${"long".repeat(30)}.nsf`]);
      assert.equal(await fleet.worker("EX-07", ["--until-empty"]).ended, 0);
      await browser.look(width, 1000, scheme);
      await browser.open(board.url);
      await awaitRow("a.gone.nsf", /^Failed/);
      const size = "document.documentElement.scrollWidth <= document.documentElement.clientWidth";
      assert.equal(await browser.value(size), true);
      await browser.picture(join(pictures, `${width}-${scheme}.png`));
    });

  test("leads to the queues themselves", async () => {
    add(["a.gone.nsf", "b.nsf"]);
    assert.equal(await fleet.worker("EX-07", ["--until-empty"]).ended, 0);
    await browser.open(board.url);
    await awaitRow("b.nsf", /^Whole/);
    await browser.value("document.querySelector('a[href=\"/queues/\"]').click()");
    const queue = "[...document.querySelectorAll('a')].find((one) => one.href.includes('/queue/'))";
    await browser.until("the queue is there", `${queue} !== undefined`);
    await browser.value(`${queue}.click()`);
    await browser.until("the job is there", "document.body.innerText.includes('b.nsf')");
    await browser.picture(join(pictures, "queues.png"));
    const other = browser.complaints.splice(0).filter((text) => !/was preloaded/.test(text));
    assert.deepEqual(other, []);
  });

  test("is signed in to and out of", async () => {
    const file = join(fleet.folder, "logins");
    const login = fleet.start(["login", "anna", "--password-file", file]);
    login.process.stdin?.end("a long password\n");
    assert.equal(await login.ended, 0);
    board = await fleet.board(["--password-file", file]);
    await browser.open(board.url);
    const submit = async (password: string) => {
      await browser.until("it asks", "document.querySelector('[name=password]') !== null");
      await browser.value(`document.querySelector('[name=name]').value = 'anna';
        document.querySelector('[name=password]').value = '${password}';
        document.querySelector('button').click()`);
    };
    await submit("a wrong password");
    await browser.until("it refuses", "document.body.innerText.includes('password is wrong')");
    await browser.picture(join(pictures, "login.png"));
    await submit("a long password");
    await browser.until(
      "it is in",
      "document.querySelector('#leave')?.textContent === 'Sign out anna'",
    );
    assert.equal(await browser.value("document.cookie"), "");
    await browser.value("document.querySelector('#leave').click()");
    await browser.until("it is out", "location.pathname === '/login'");
    // The browser tells of each refusal; nothing else was wrong.
    const refusals = browser.complaints.splice(0);
    assert.deepEqual(
      refusals.filter((text) => !/ 401 /.test(text)),
      [],
    );
  });
});
