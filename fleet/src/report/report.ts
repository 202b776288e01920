// Reports of the account. All that are wanted are made of one reading, so that they tell the same.
import { CannotError } from "../base/failures.js";
import { databasesIn, emptyTally } from "./account.js";
import type { AccountRow, Tally } from "./account.js";

export interface Report {
  take(row: AccountRow): Promise<void>;
  // No row follows. Nothing has its name yet.
  finish(): Promise<void>;
  // The whole report has its name; an earlier one is replaced.
  place(): Promise<void>;
  // Removes what was not placed.
  discard(): Promise<void>;
}

// Of nothing a page would say that all is whole: then there is no report. What the rows are of
// stands in the message.
export async function writeReports(
  reports: readonly Report[],
  rows: AsyncIterable<AccountRow>,
  of = "this project",
): Promise<Tally> {
  const tally = emptyTally();
  try {
    for await (const row of rows) {
      ++tally[row.verdict];
      for (const report of reports) await report.take(row);
    }
    if (databasesIn(tally) === 0) throw new CannotError(`${of} has no database in any list`);
    for (const report of reports) await report.finish();
    for (const report of reports) await report.place();
    return tally;
  } finally {
    for (const report of reports) await report.discard();
  }
}
