// Makes a picture of the board in the midst of a project. The console is that of the tests, whose
// exports last as long as the picture needs. Usage: node dist/tests/pictures/board.js PICTURE
import { Browser } from "../support/browser.js";
import { Fleet, until } from "../support/fleet.js";
import { TestServer } from "../support/postgres.js";

const archives = ["orders", "people", "projects", "travel", "press", "law", "plans", "letters"];
const slow = ["mail\\anna.slow.nsf", "mail\\bert.slow.nsf", "mail\\clara.slow.nsf"];
const others = [
  "archive\\old.gone.nsf",
  "archive\\board.locked.nsf",
  "archive\\minutes.losses.nsf",
];
const mill = [...slow, ...archives.map((name) => `archive\\${name}.nsf`), ...others];
const garden = Array.from({ length: 60 }, (_, index) => `mail\\person${index + 10}.nsf`);

async function fill(fleet: Fleet): Promise<void> {
  fleet.do("init");
  const root = ["--root", fleet.root];
  fleet.do("add", fleet.list("mill.csv", "Mill/Example", mill), ...root, "--limit", "6");
  fleet.worker("EX-07", ["--jobs", "6"], { FAKE_DOCUMENTS: "40", FAKE_STEP: "30" });
  await until("the slow ones are left", () => {
    const { jobs, open } = fleet.status();
    return open === slow.length && jobs.filter((job) => job.documentsDone > 8).length === open;
  });
  fleet.do("add", fleet.list("garden.csv", "Garden/Example", garden), ...root);
  fleet.do("pause", "--server", "Garden/Example");
}

async function take(fleet: Fleet, browser: Browser, file: string): Promise<void> {
  await fill(fleet);
  const { url } = await fleet.board();
  await browser.look(1200, 1000);
  await browser.open(url);
  await browser.until("rows are there", "document.querySelectorAll('#jobs tr').length > 10");
  // As a reader would have them.
  await browser.value(`document.querySelector("#queue").textContent = "postgres://queue.example";
    for (const link of document.querySelectorAll("#jobs a"))
      link.textContent = link.textContent.replace(/\\.(slow|gone|locked|losses)\\b/, "")`);
  await browser.picture(file);
}

const file = process.argv[2];
if (file === undefined) throw new Error("where is the picture to be?");
const server = await TestServer.start();
const fleet = new Fleet(server.url);
const browser = await Browser.start();
try {
  await take(fleet, browser, file);
} finally {
  await browser.end();
  await fleet.end();
  server.remove();
}
