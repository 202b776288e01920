// The account as comma-separated values.
import { TextFile } from "../base/textFile.js";
import { csvLine } from "../listing/csv.js";
import type { AccountRow } from "./account.js";
import type { Report } from "./report.js";

type Column = keyof AccountRow;

const columns: readonly Column[] = [
  "server",
  "machine",
  "path",
  "title",
  "bytes",
  "listing",
  "verdict",
  "reason",
  "attempts",
  "listed",
  "exported",
  "lost",
  "losses",
  "folder",
  "attempt",
  "worker",
  "started",
  "ended",
  "seconds",
  "id",
];

export class CsvReport implements Report {
  private readonly table: TextFile;
  private isBegun = false;

  constructor(file: string) {
    this.table = new TextFile(file);
  }

  async take(row: AccountRow): Promise<void> {
    await this.begin();
    await this.table.write(csvLine(columns.map((column) => row[column])));
  }

  finish(): Promise<void> {
    return this.begin();
  }

  place(): Promise<void> {
    return this.table.place();
  }

  discard(): Promise<void> {
    return this.table.discard();
  }

  private async begin(): Promise<void> {
    if (this.isBegun) return;
    this.isBegun = true;
    await this.table.write("\ufeff" + csvLine(columns));
  }
}
