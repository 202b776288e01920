// The account of a project as a table and as a page, which a real browser opens.
import assert from "node:assert/strict";
import { existsSync, mkdirSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { after, before, beforeEach, describe, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { parseCsv } from "../../src/listing/csv.js";
import { eachTestHas } from "../support/bed.js";
import { Chromium } from "../support/chromium.js";
import { until } from "../support/fleet.js";
import type { Fleet } from "../support/fleet.js";

let browser: Chromium;
let fleet: Fleet;

const evil = "<script>evil=1</script><img src=x onerror=evil=1>";

eachTestHas((bed) => {
  ({ fleet } = bed);
});

before(async () => {
  browser = await Chromium.start();
});

after(async () => {
  await browser.end();
});

beforeEach(async () => {
  await browser.setScript(true);
  await browser.look(1200, 900);
});

// One database of every verdict.
async function exportSome(): Promise<void> {
  const file = join(fleet.folder, "list.csv");
  const paths = ["a b#1.nsf", "b.losses.nsf", "c.losses.nsf", "d.gone.nsf", "e.cancelled.nsf"];
  const lines = paths.map((path) => `Mill/Example,${path},"${evil.replaceAll('"', '""')}"`);
  writeFileSync(file, ["server,path,title", ...lines, ""].join("\n"));
  fleet.do("add", file, "--root", fleet.root);
  fleet.do("cancel", fleet.job("e.cancelled.nsf").id);
  const worker = fleet.worker("one", ["--until-empty"]);
  assert.equal(await worker.ended, 0, worker.output());
  // The largest is taken first, which is the last one.
  const others = ["f.slow.nsf", "g.slow.nsf", "h.slow.nsf", "i.incomplete.nsf"];
  const more = fleet.list("more.csv", "Garden", others);
  fleet.do("add", more, "--root", fleet.root);
  fleet.worker("two", ["--jobs", "2"], { FAKE_DOCUMENTS: "200", FAKE_STEP: "5" });
  await until("two run, and one is to be tried again", () => {
    const { tally } = fleet.status();
    return tally.running === 2 && tally.retrying === 1;
  });
}

function report(html: string): { rows: Record<string, string>[]; code: number | null } {
  const csv = join(fleet.folder, "report.csv");
  const { code, errors } = fleet.run("report", "--html", html, "--csv", csv);
  assert.equal(errors, "");
  const [titles = [], ...lines] = parseCsv(readFileSync(csv, "utf8").slice(1));
  const rows = lines.map((line) =>
    Object.fromEntries(titles.map((title, index) => [title, line[index] ?? ""])),
  );
  return { rows, code };
}

async function open(page: string): Promise<void> {
  await browser.open(pathToFileURL(page).href);
}

async function texts(selector: string): Promise<string[]> {
  const found = `[...document.querySelectorAll(${JSON.stringify(selector)})]`;
  return (await browser.value(`${found}.map(one => one.textContent)`)) as string[];
}

async function column(number: number): Promise<string[]> {
  return texts(`#databases tbody td:nth-child(${number})`);
}

async function states(): Promise<string[]> {
  const rows = "[...document.querySelectorAll('#databases tbody tr')]";
  return (await browser.value(`${rows}.map(row => row.dataset.state)`)) as string[];
}

async function hrefs(): Promise<string[]> {
  const links = "[...document.querySelectorAll('#databases a')]";
  return (await browser.value(`${links}.map(link => link.getAttribute('href'))`)) as string[];
}

async function choose(control: string, event: string, value: string): Promise<void> {
  await browser.value(
    `{ const control = document.getElementById('${control}');` +
      ` control.value = ${JSON.stringify(value)}; control.dispatchEvent(new Event('${event}')); }`,
  );
}

describe("the page of the account", () => {
  const order = ["failed", "running", "retrying", "waiting", "losses", "cancelled", "whole"];

  test("has the rows and the sums of the table, those that want an answer first", async () => {
    await exportSome();
    const page = join(fleet.folder, "report.html");
    const { rows, code } = report(page);
    assert.equal(code, 5);
    await open(page);
    const shown = await states();
    assert.deepEqual([...shown].sort(), rows.map(({ verdict }) => verdict).sort());
    const places = shown.map((state) => order.indexOf(state));
    assert.deepEqual(
      places,
      [...places].sort((one, other) => one - other),
    );
    const names = rows.map(
      ({ server: of, path, title }) => `${of ?? ""}!!${path ?? ""}${title ?? ""}`,
    );
    assert.deepEqual((await column(2)).sort(), names.sort());
    const sum = (name: string) => rows.reduce((all, row) => all + Number(row[name]), 0);
    assert.deepEqual(await texts(".tiles .large"), [
      ...["9", "4", "1", "2", "1", "1"],
      String(sum("exported")),
      String(sum("lost")),
    ]);
    assert.deepEqual(await texts("#servers tbody tr:first-child td"), [
      ...["Garden", "4", "4", "0", "0", "0", "0", "0", "0"],
    ]);
    assert.deepEqual(await texts("h1"), [fleet.root]);
    assert.deepEqual(await texts("#verdict strong"), ["4 databases are open"]);
    assert.match((await texts("#verdict p"))[0] ?? "", /this page has no open row/);
    const causes = (await column(8)).join("\n");
    assert.match(causes, /File does not exist/);
    assert.match(causes, /documents on two/);
    assert.match(causes, /cancelled by /);
    assert.equal((await column(6))[0], "1");
  });

  test("asks for nothing, and runs nothing that a title holds", async () => {
    await exportSome();
    const page = join(fleet.folder, "report.html");
    report(page);
    await open(page);
    assert.equal(await browser.value("typeof evil"), "undefined");
    assert.equal(await browser.value("document.images.length"), 0);
    assert.deepEqual(await browser.complaints(), []);
    assert.deepEqual(browser.requests(), [pathToFileURL(page).href]);
    // The policy and not only the escapes would keep a script from running.
    await browser.value("document.body.append(document.createElement('script'))");
    await browser.value("document.body.lastChild.textContent = 'evil=1'");
    assert.equal(await browser.value("typeof evil"), "undefined");
  });

  const places: [string, (folder: string) => string, RegExp][] = [
    ["beside the root", (folder) => join(folder, "r.html"), /^out\//],
    ["in the root", (folder) => join(folder, "out", "r.html"), /^(?:Mill|Garden)/],
    ["below the root", (folder) => join(folder, "out", "x y", "r.html"), /^\.\.\/(?:Mill|Garden)/],
    ["elsewhere", (folder) => join(folder, "other", "place", "r.html"), /^file:\/\/\//],
  ];
  test("leads to folders and losses that are there, wherever it lies", async () => {
    await exportSome();
    // Somebody made the page of this export, beside its folder.
    writeFileSync(`${fleet.root}/Mill_Example/c.losses.nsf.html`, "");
    for (const [where, place, form] of places) {
      const page = place(fleet.folder);
      mkdirSync(dirname(page), { recursive: true });
      report(page);
      await open(page);
      const links = await hrefs();
      for (const link of links) {
        assert.match(link, form, where);
        assert.ok(existsSync(fileURLToPath(new URL(link, pathToFileURL(page)))), link);
      }
      const ends = links.map((link) => link.replace(/.*(?:Mill_Example|Garden)\//, "")).sort();
      assert.deepEqual(ends, [
        "a%20b%231.nsf",
        "b.losses.nsf",
        "b.losses.nsf/outcome.json",
        "c.losses.nsf",
        "c.losses.nsf.html",
        ...["g.slow.nsf.attempt-1", "h.slow.nsf.attempt-1", "i.incomplete.nsf.attempt-1"],
      ]);
    }
  });

  test("finds rows by state and by words, and reads without a script", async () => {
    await exportSome();
    const page = join(fleet.folder, "report.html");
    report(page);
    await open(page);
    await choose("state", "change", "losses");
    assert.deepEqual(await states(), ["losses", "losses"]);
    await choose("filter", "input", "MILL c.losses");
    assert.deepEqual(await texts("#count"), ["1 of 9 shown"]);
    await choose("state", "change", "");
    await choose("filter", "input", "open:");
    assert.equal((await states()).length, 4);
    await browser.look(400, 900);
    assert.equal(await browser.value("document.documentElement.scrollWidth <= innerWidth"), true);
    // Of a sheet that stands upright.
    await browser.look(720, 1000, "print");
    const table = "document.getElementById('databases')";
    const fits = `${table}.scrollWidth <= ${table}.parentElement.clientWidth`;
    assert.equal(await browser.value(fits), true);
    await browser.look(1200, 900);
    await browser.setScript(false);
    await open(page);
    await browser.setScript(true);
    assert.equal((await states()).length, 9);
    assert.equal(await browser.value("document.getElementById('controls').hidden"), true);
  });

  test("says so when nothing is open, and when all is whole", async () => {
    fleet.do("add", fleet.list("one.csv", "Mill", ["a.nsf"]), "--root", fleet.root);
    assert.equal(await fleet.worker("one", ["--until-empty"]).ended, 0);
    const page = join(fleet.folder, "report.html");
    assert.equal(report(page).code, 0);
    await open(page);
    assert.deepEqual(await texts("#verdict strong"), ["All is exported whole"]);
    fleet.do("add", fleet.list("two.csv", "Mill", ["b.gone.nsf"]), "--root", fleet.root);
    assert.equal(await fleet.worker("two", ["--until-empty"]).ended, 0);
    assert.equal(report(page).code, 5);
    await open(page);
    assert.deepEqual(await texts("#verdict strong"), ["1 failed"]);
  });

  test("is there whole or not at all", () => {
    fleet.do("add", fleet.list("one.csv", "Mill", ["a.nsf"]), "--root", fleet.root);
    const page = join(fleet.folder, "pages", "report.html");
    const csv = join(fleet.folder, "pages", "report.csv");
    const ran = fleet.run("report", "--html", page, "--csv", csv);
    assert.equal(ran.code, 2);
    assert.match(ran.errors, /report\.(?:html|csv)' cannot be written/);
    mkdirSync(dirname(page));
    // The page can have its name no more: what is a folder is replaced by no file.
    mkdirSync(page);
    assert.equal(fleet.run("report", "--html", page, "--csv", csv).code, 2);
    assert.deepEqual(readdirSync(dirname(page)), ["report.csv", "report.html"]);
  });

  test("needs to be told which reports are wanted", () => {
    const ran = fleet.run("report");
    assert.equal(ran.code, 1);
    assert.match(ran.errors, /--html/);
  });

  test("is not written over by the table", () => {
    const one = join(fleet.folder, "report");
    const other = join(fleet.folder, "pages", "..", "REPORT");
    const ran = fleet.run("report", "--html", one, "--csv", other);
    assert.equal(ran.code, 1);
    assert.match(ran.errors, /name one file/);
    assert.ok(!existsSync(one));
  });

  test("may have thirty thousand rows", async () => {
    const file = join(fleet.folder, "large.csv");
    const lines = Array.from({ length: 30_000 }, (_, index) => `Mill,mail\\db${index}.nsf,T,9`);
    writeFileSync(file, ["server,path,title,bytes", ...lines, ""].join("\n"));
    fleet.do("add", file, "--root", "\\\\store\\export");
    const page = join(fleet.folder, "report.html");
    const { rows } = report(page);
    assert.equal(rows.length, 30_000);
    const begun = Date.now();
    await open(page);
    assert.equal((await states()).length, 30_000);
    await choose("filter", "input", "db29999");
    assert.deepEqual(await column(2), ["Mill!!mail\\db29999.nsfT"]);
    const seconds = (Date.now() - begun) / 1000;
    assert.ok(seconds < 60, `${seconds} s`);
  });
});
