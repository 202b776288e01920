// A program that behaves like larkspan-console's export, as docs/events.md and docs/console.md tell,
// without Notes: what happens to a database stands in its path, as words between dots.
//
//   slow        a document takes a second
//   losses      ends with code 3
//   incomplete  ends with code 5;   incomplete-once: the first attempt alone
//   gone, locked, away, noid        cannot run, for this cause;   away-once: the first time alone
//   crash       ends in the midst, without an "end"
//   deaf        does not notice that its standard input ends
//
// Each step is a line in the journal, so that a test sees what happened and in which order.
import {
  appendFileSync,
  existsSync,
  mkdirSync,
  readFileSync,
  renameSync,
  writeFileSync,
} from "node:fs";
import { createInterface } from "node:readline";

const journal = process.env["FAKE_JOURNAL"] ?? "/dev/null";
const documents = Number(process.env["FAKE_DOCUMENTS"] ?? "4");

function option(name: string): string {
  const at = process.argv.indexOf(name);
  return at < 0 ? "" : (process.argv[at + 1] ?? "");
}

const path = option("--path");
const server = option("--server");
const words = new Set(path.split(/[.\\]/));
const out = option("--out").replaceAll("\\", "/");
const step = words.has("slow") ? 1000 : Number(process.env["FAKE_STEP"] ?? "20");

let sequence = 0;
const begun = Date.now();

function note(what: string): void {
  const line = { at: Date.now(), pid: process.pid, server, path, what, folder: attempt };
  appendFileSync(journal, JSON.stringify(line) + "\n");
}

function tell(kind: string, fields: object): void {
  const event = { version: 1, sequence: ++sequence, time: "2026-01-01T00:00:00Z", kind, ...fields };
  process.stdout.write(JSON.stringify(event) + "\n");
}

function nextAttempt(): string {
  for (let number = 1; ; ++number)
    if (!existsSync(`${out}.attempt-${number}`)) return `${out}.attempt-${number}`;
}

const attempt = nextAttempt();

function counts(lost: number): object {
  return { listed: documents, exported: documents - lost, exportedWithLoss: 0, lost };
}

function writeOutcome(exitCode: number, lost: number): void {
  const losses = Array.from({ length: lost }, () => ({ kind: "note", stage: "open", cause: "x" }));
  const account = { notes: counts(lost), losses };
  const outcome = { format: 1, state: "ended", server, path, exitCode, account };
  writeFileSync(`${attempt}/outcome.json`, JSON.stringify(outcome));
}

function endWith(exitCode: number, reason: string, lost: number | null, where: string): never {
  const seconds = Math.round((Date.now() - begun) / 1000);
  const told = lost === null ? null : counts(lost);
  tell("end", { exitCode, reason, out: where, counts: told, seconds });
  note(`end ${exitCode}`);
  process.exit(exitCode);
}

let isInputOver = false;
const waiting: ((word: string | undefined) => void)[] = [];
const input = createInterface({ input: process.stdin });
input.on("line", (line) => waiting.shift()?.(line));
input.on("close", () => {
  isInputOver = true;
  if (words.has("deaf")) return;
  for (const listener of waiting) listener(undefined);
});

function pause(milliseconds: number): Promise<void> {
  return new Promise((resolve) => setTimeout(resolve, milliseconds));
}

function stopIfAsked(): void {
  if (!isInputOver || words.has("deaf")) return;
  tell("stop", { by: "input" });
  note("stopped");
  endWith(4, "stopped: standard input has come to its end", 0, attempt);
}

// What was exported before under the final name.
function lookForEarlier(): void {
  if (!existsSync(out)) return;
  const file = `${out}/outcome.json`;
  const earlier = existsSync(file)
    ? (JSON.parse(readFileSync(file, "utf8")) as { path: string; exitCode: number })
    : undefined;
  if (earlier?.path !== path)
    endWith(2, `the folder '${out}' holds something that is not this export, finished`, null, out);
  note("there already");
  endWith(earlier.exitCode, "", earlier.exitCode === 3 ? 1 : 0, out);
}

// Whether this happens for the first time to the database.
function isFirst(word: string): boolean {
  if (!words.has(word) || existsSync(`${out}.${word}`)) return false;
  mkdirSync(out.replace(/\/[^/]*$/, ""), { recursive: true });
  writeFileSync(`${out}.${word}`, "");
  return true;
}

function failToOpen(): void {
  const opening = "the exporter ended while it was opening the database: Error opening database";
  const cannot = (cause: string) => endWith(2, `${opening} (${cause})`, 0, attempt);
  if (words.has("gone")) cannot("File does not exist");
  if (words.has("locked")) cannot("You are not authorized to open the database");
  if (words.has("away") || isFirst("away-once")) cannot("Server cannot be reached");
  if (words.has("noid")) endWith(2, "Unable to switch ID (Wrong password)", 0, attempt);
}

async function exportDocuments(lost: number): Promise<void> {
  for (let done = 1; done <= documents; ++done) {
    await pause(step);
    stopIfAsked();
    if (words.has("crash") && done === 2) process.exit(70);
    const progress = { documents, documentsDone: done, restarts: 0, lost: 0 };
    tell("progress", { phase: "documents", ...progress });
    note(`document ${done}`);
  }
  if (lost > 0) tell("lost", { id: "0000090A", stage: "open", cause: "Note has been deleted" });
}

async function place(exitCode: number, lost: number): Promise<never> {
  tell("ready", { exitCode, counts: counts(lost), losses: lost, findings: 0, warnings: 0 });
  note("ready");
  const word = await new Promise<string | undefined>((resolve) => {
    if (isInputOver && !words.has("deaf")) resolve(undefined);
    else waiting.push(resolve);
  });
  if (word !== "place") {
    note("left");
    endWith(4, "complete, and left under the name of its attempt as asked", lost, attempt);
  }
  await pause(Number(process.env["FAKE_PLACING"] ?? "0"));
  if (existsSync(out)) {
    note("name taken");
    endWith(5, `complete, but '${out}' could not be given to it as its name`, lost, attempt);
  }
  renameSync(attempt, out);
  note("placed");
  endWith(exitCode, exitCode === 0 ? "" : "1 loss, which is listed", lost, out);
}

async function run(): Promise<never> {
  tell("start", { server, path, out: attempt, mode: "archive", command: [] });
  note("start");
  lookForEarlier();
  tell("phase", { phase: "opening" });
  failToOpen();
  mkdirSync(attempt, { recursive: true });
  tell("phase", { phase: "documents" });
  const lost = words.has("losses") ? 1 : 0;
  await exportDocuments(lost);
  if (words.has("incomplete") || isFirst("incomplete-once")) {
    writeOutcome(5, 0);
    endWith(5, "not accounted for: a file is missing", 0, attempt);
  }
  tell("phase", { phase: "checking" });
  writeOutcome(lost > 0 ? 3 : 0, lost);
  return place(lost > 0 ? 3 : 0, lost);
}

await run();
