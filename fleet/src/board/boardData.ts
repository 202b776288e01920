// What the board's server tells its page, as JSON.
import type { ExportOptions } from "../jobs/jobData.js";
import type { AccountRow, Tally } from "../report/account.js";
import type { ProjectState } from "../report/projectState.js";

export interface RowPage {
  rows: AccountRow[];
  // So many rows match, of which these are one page.
  found: number;
  page: number;
  pages: number;
}

export interface BoardData extends ProjectState {
  queue: string;
  // Who looks; empty: the page has no login.
  user: string;
  // Every change has to bring it along.
  token: string;
  // When the rows were read; empty: they never were.
  asOf: string;
  // Why they are not newer; empty: they are.
  failure: string;
  databases: number;
  open: number;
  tally: Tally;
  list: RowPage;
}

export interface JobDetail {
  row: AccountRow;
  options: ExportOptions;
  added: string;
  logs: string[];
  // Older lines that were left out.
  logsLeftOut: number;
}

// The answer to a change, and to what failed.
export interface Told {
  told?: string;
  error?: string;
}
