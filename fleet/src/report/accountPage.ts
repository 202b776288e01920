// The pieces of the account's page. Its style and its script are those of the console's summary of
// a batch, so that who knows one page knows the other.
import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { databasesIn, openRows, verdictWords } from "./account.js";
import type { RowVerdict, Tally } from "./account.js";
import { html } from "./html.js";

// The build puts both beside this file.
function piece(name: string): string {
  return readFileSync(new URL(name, import.meta.url), "utf8").replaceAll("\r\n", "\n");
}

function sumOf(text: string): string {
  return `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
}

export interface ServerSum {
  name: string;
  tally: Tally;
  documents: number;
  lost: number;
}

export interface PageHead {
  // When it was made; UTC.
  made: string;
  version: string;
  roots: readonly string[];
  tally: Tally;
  documents: number;
  lost: number;
  servers: readonly ServerSum[];
}

// Those that want an answer come first.
export const rowOrder: readonly RowVerdict[] = [
  "failed",
  "running",
  "retrying",
  "waiting",
  "losses",
  "cancelled",
  "whole",
];

const tones: Record<RowVerdict, string> = {
  whole: "tone-whole",
  losses: "tone-losses",
  failed: "tone-lost",
  cancelled: "tone-open",
  running: "tone-open",
  retrying: "tone-open",
  waiting: "tone-open",
};

export function toneOf(verdict: RowVerdict): string {
  return tones[verdict];
}

export function grouped(number: number): string {
  return number.toLocaleString("en-US");
}

export function numberCell(number: number | null, content?: string): string {
  if (number === null) return '<td class="number" data-value=""></td>';
  return `<td class="number" data-value="${number}">${content ?? grouped(number)}</td>`;
}

// Pictures of 24 by 24.
const signs = {
  whole: "M12 1a11 11 0 100 22 11 11 0 000-22zm-1.6 16.2l-4.6-4.6 1.6-1.6 3 3 6.4-6.4 1.6 1.6z",
  losses: "M12 2L.8 21.6h22.4zm-1.1 7h2.2l-.3 6.2h-1.6zM12 19a1.3 1.3 0 110-2.6 1.3 1.3 0 010 2.6z",
  incomplete:
    "M12 1a11 11 0 100 22 11 11 0 000-22zm4.7 14.1l-1.6 1.6-3.1-3.1-3.1 3.1-1.6-1.6 " +
    "3.1-3.1-3.1-3.1 1.6-1.6 3.1 3.1 3.1-3.1 1.6 1.6-3.1 3.1z",
};

function are(count: number): string {
  return count === 1 ? "1 database is" : `${grouped(count)} databases are`;
}

const theEnd = "The end of a project is that this page has no open row.";

function judge(tally: Tally): { tone: keyof typeof signs; word: string; sentence: string } {
  const open = openRows(tally);
  if (open > 0) return { tone: "incomplete", word: `${are(open)} open`, sentence: theEnd };
  const closed = `${theEnd} It has none.`;
  if (tally.failed > 0) {
    const sentence = `${closed} Each that failed wants an answer.`;
    return { tone: "incomplete", word: `${grouped(tally.failed)} failed`, sentence };
  }
  const { losses, cancelled } = tally;
  if (losses + cancelled === 0)
    return { tone: "whole", word: "All is exported whole", sentence: closed };
  const parts = [
    ...(losses > 0 ? [`${grouped(losses)} with losses`] : []),
    ...(cancelled > 0 ? [`${grouped(cancelled)} cancelled`] : []),
  ];
  return { tone: "losses", word: `Nothing is open; ${parts.join(", ")}`, sentence: closed };
}

function banner(tally: Tally): string {
  const { tone, word, sentence } = judge(tally);
  return (
    `<div class="verdict ${tone}" id="verdict"><svg viewBox="0 0 24 24" aria-hidden="true">` +
    `<path fill="currentColor" fill-rule="evenodd" d="${signs[tone]}"/></svg>` +
    `<div><strong>${word}</strong><p>${sentence}</p></div></div>\n`
  );
}

function tile(label: string, number: number, tone = ""): string {
  const classes = tone === "" || number === 0 ? "" : ` class="toned ${tone}"`;
  return `<div${classes}><dt>${label}</dt><dd class="large">${grouped(number)}</dd></div>\n`;
}

function tiles({ tally, documents, lost }: PageHead): string {
  return (
    '<dl class="tiles">\n' +
    tile("Databases", databasesIn(tally)) +
    tile("Open", openRows(tally), "incomplete") +
    tile("Failed", tally.failed, "incomplete") +
    tile("With losses", tally.losses, "losses") +
    tile("Cancelled", tally.cancelled) +
    tile("Whole", tally.whole) +
    tile("Notes exported", documents) +
    tile("Notes lost", lost, "losses") +
    "</dl>\n"
  );
}

function titles(names: readonly string[], numbers: readonly string[]): string {
  const title = (name: string, kind: string) => `<th scope="col"${kind}>${name}</th>`;
  return (
    "<thead><tr>" +
    names.map((name) => title(name, numbers.includes(name) ? ' class="number"' : "")).join("") +
    "</tr></thead>\n"
  );
}

function serverRow({ name, tally, documents, lost }: ServerSum): string {
  const numbers = [
    databasesIn(tally),
    openRows(tally),
    tally.failed,
    tally.losses,
    tally.cancelled,
    tally.whole,
    documents,
    lost,
  ];
  const cells = numbers.map((number) => numberCell(number)).join("");
  return `<tr><td class="where"><bdi>${html(name)}</bdi></td>${cells}</tr>\n`;
}

function serverSection(servers: readonly ServerSum[]): string {
  const counts = ["Databases", "Open", "Failed", "With losses", "Cancelled", "Whole"];
  const numbers = [...counts, "Notes exported", "Notes lost"];
  return (
    '<section>\n<h2>Servers</h2>\n<div class="scroll">' +
    '<table class="databases" id="servers">\n' +
    titles(["Server", ...numbers], numbers) +
    `<tbody>\n${servers.map(serverRow).join("")}</tbody>\n</table></div>\n</section>\n`
  );
}

function choices(tally: Tally): string {
  const choice = (value: string, word: string, count: number) =>
    `<option value="${value}">${word} (${grouped(count)})</option>`;
  const those = rowOrder.filter((verdict) => tally[verdict] > 0);
  return (
    choice("", "All", databasesIn(tally)) +
    those.map((verdict) => choice(verdict, verdictWords[verdict], tally[verdict])).join("")
  );
}

// The ids are those that the script looks for.
function tableBegin(tally: Tally): string {
  const numbers = ["Notes", "Lost", "Losses", "Tries", "Seconds"];
  return (
    '<section>\n<h2>Databases</h2>\n<div class="controls" id="controls" role="search" hidden>' +
    '<label>Filter<input type="search" id="filter" autocomplete="off"' +
    ' placeholder="Server, path, title, or words of the cause"></label>' +
    `<label>State<select id="state">${choices(tally)}</select></label>` +
    '<output id="count" for="filter state"></output></div>\n' +
    '<div class="scroll"><table class="databases" id="databases">\n' +
    titles(["State", "Database", ...numbers, "Cause"], numbers) +
    "<tbody>\n"
  );
}

function header(roots: readonly string[]): string {
  const names = roots.map((root) => `<h1 dir="auto">${html(root)}</h1>\n`).join("");
  return `<header>\n<p class="over">Account of all exports</p>\n${names}</header>\n`;
}

// All that stands before the rows.
export function pageBegin(head: PageHead): string {
  const style = `\n${piece("page.css")}`;
  const policy =
    `default-src 'none'; style-src ${sumOf(style)}; script-src ${sumOf(piece("table.js"))};` +
    " img-src data:; base-uri 'none'; form-action 'none'";
  return (
    '<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n' +
    `<meta http-equiv="Content-Security-Policy" content="${policy}">\n` +
    '<meta name="viewport" content="width=device-width, initial-scale=1">\n' +
    '<meta name="color-scheme" content="light dark">\n' +
    `<meta name="generator" content="larkspan-fleet ${html(head.version)}">\n` +
    '<link rel="icon" href="data:,">\n' +
    `<title>${html(head.roots[0] ?? "No project")} - account</title>\n` +
    `<style>${style}</style>\n</head>\n<body>\n<main>\n` +
    header(head.roots) +
    banner(head.tally) +
    tiles(head) +
    serverSection(head.servers) +
    tableBegin(head.tally)
  );
}

// All that stands behind them.
export function pageEnd({ made, version }: PageHead): string {
  return (
    "</tbody>\n</table></div>\n</section>\n</main>\n<footer>\n" +
    `<p>Made by larkspan-fleet ${html(version)} on <time datetime="${made}">` +
    `${made.replace("T", " ").replace("Z", " UTC")}</time>. The same rows stand in the table` +
    " that <code>report --csv</code> writes.</p>\n</footer>\n" +
    `<script>${piece("table.js")}</script>\n</body>\n</html>\n`
  );
}
