// The account as a page for a browser. Its head has the sums, which are known last, and its rows are
// in order of their verdicts: they wait in a file for each verdict, so that they take no memory.
import { TextFile } from "../base/textFile.js";
import { version } from "../base/version.js";
import type { PathMap } from "../export/place.js";
import { databaseName, serverName } from "../jobs/jobData.js";
import { emptyTally, isOpen, verdictWords } from "./account.js";
import type { AccountRow, RowVerdict, Tally } from "./account.js";
import { grouped, numberCell, pageBegin, pageEnd, rowOrder, toneOf } from "./accountPage.js";
import type { PageHead, ServerSum } from "./accountPage.js";
import { html } from "./html.js";
import { Links } from "./links.js";
import type { Report } from "./report.js";

function linked(link: string | undefined, content: string): string {
  return link === undefined ? content : `<a href="${html(link)}">${content}</a>`;
}

function notesCell({ verdict, exported, listed, documents, documentsDone }: AccountRow): string {
  const [done, all] = verdict === "running" ? [documentsDone, documents] : [exported, listed];
  if (done === null || all === null) return numberCell(null);
  return numberCell(done, `${grouped(done)} of ${grouped(all)}`);
}

// Who looks for what is open finds it by this word.
function stateText(verdict: RowVerdict): string {
  const word = verdictWords[verdict];
  return isOpen(verdict) ? `<strong>open</strong>: ${word}` : word;
}

function causeOf(row: AccountRow): string {
  const isAtWork = row.verdict === "running";
  const parts = [isAtWork ? `${row.phase || "begun"} on ${row.worker || "?"}` : "", row.reason];
  return parts.filter((part) => part !== "").join(": ");
}

export class HtmlReport implements Report {
  private readonly page: TextFile;
  private readonly parts = new Map<RowVerdict, TextFile>();
  private readonly links: Links;
  private readonly roots = new Set<string>();
  private readonly servers = new Map<string, ServerSum>();

  constructor(
    private readonly file: string,
    maps: readonly PathMap[],
  ) {
    this.page = new TextFile(file);
    this.links = new Links(file, maps);
  }

  async take(row: AccountRow): Promise<void> {
    this.roots.add(row.root);
    this.count(row);
    let part = this.parts.get(row.verdict);
    if (part === undefined) {
      part = new TextFile(this.file);
      this.parts.set(row.verdict, part);
    }
    await part.write(await this.rowText(row));
  }

  async finish(): Promise<void> {
    const head = this.head();
    await this.page.write(pageBegin(head));
    for (const verdict of rowOrder) {
      const part = this.parts.get(verdict);
      if (part !== undefined) await this.page.append(part);
    }
    await this.page.write(pageEnd(head));
  }

  place(): Promise<void> {
    return this.page.place();
  }

  async discard(): Promise<void> {
    for (const part of this.parts.values()) await part.discard();
    await this.page.discard();
  }

  private count(row: AccountRow): void {
    const name = serverName(row);
    const sum = this.servers.get(name) ?? { name, tally: emptyTally(), documents: 0, lost: 0 };
    this.servers.set(name, sum);
    ++sum.tally[row.verdict];
    sum.documents += row.exported ?? 0;
    sum.lost += row.lost ?? 0;
  }

  private head(): PageHead {
    const servers = [...this.servers.values()].sort((one, other) =>
      one.name < other.name ? -1 : 1,
    );
    const tally: Tally = emptyTally();
    for (const server of servers)
      for (const verdict of rowOrder) tally[verdict] += server.tally[verdict];
    return {
      made: `${new Date().toISOString().slice(0, 19)}Z`,
      version: version(),
      roots: [...this.roots].sort(),
      tally,
      documents: servers.reduce((sum, { documents }) => sum + documents, 0),
      lost: servers.reduce((sum, { lost }) => sum + lost, 0),
      servers,
    };
  }

  // The folder of an export that has its name; of another one that of its last attempt, if it is
  // there.
  private async folderLink(row: AccountRow): Promise<string | undefined> {
    if (row.verdict === "whole" || row.verdict === "losses")
      return this.links.to(row.root, row.folder);
    return row.attempt === "" ? undefined : this.links.toFirst(row.root, [row.attempt]);
  }

  // The page of the export, where somebody made one beside it; else the list of its losses.
  private async lossesLink(row: AccountRow): Promise<string | undefined> {
    if (row.verdict !== "losses") return undefined;
    const { folder } = row;
    const those = [`${folder}.html`, `${folder}\\outcome.json`, `${folder}\\data\\outcome.json`];
    return this.links.toFirst(row.root, those);
  }

  private async rowText(row: AccountRow): Promise<string> {
    const name = linked(await this.folderLink(row), `<bdi>${html(databaseName(row))}</bdi>`);
    const title = row.title === "" ? "" : `<br><bdi class="quiet">${html(row.title)}</bdi>`;
    const { losses } = row;
    const losses_ = losses === null ? "" : linked(await this.lossesLink(row), grouped(losses));
    return (
      `<tr data-state="${row.verdict}">` +
      `<td class="kind ${toneOf(row.verdict)}">${stateText(row.verdict)}</td>` +
      `<td class="where">${name}${title}</td>` +
      notesCell(row) +
      numberCell(row.lost) +
      numberCell(losses, losses_) +
      numberCell(row.attempts) +
      numberCell(row.seconds) +
      `<td class="cause">${html(causeOf(row))}</td></tr>\n`
    );
  }
}
