// The command "status": how far the project is.
import { databasesIn, openRows, verdictWords } from "../report/account.js";
import type { AccountRow, RowVerdict, Tally } from "../report/account.js";
import { readProject } from "../report/projectState.js";
import type { Store } from "../store/store.js";

export interface StatusRequest {
  root: string | undefined;
  // Lists every job, or those of these verdicts.
  jobs: boolean;
  only: RowVerdict | undefined;
  json: boolean;
}

function tallyText(tally: Tally): string {
  const parts = Object.entries(tally).filter(([, count]) => count > 0);
  if (parts.length === 0) return "nothing";
  return parts
    .map(([verdict, count]) => `${count} ${verdictWords[verdict as RowVerdict]}`)
    .join(", ");
}

function jobText(row: AccountRow): string {
  const of = row.documents === null ? "" : ` ${row.documentsDone}/${row.documents}`;
  const work = row.verdict === "running" ? `  ${row.phase}${of} on ${row.worker}` : "";
  const reason = row.reason === "" ? "" : `  ${row.reason}`;
  const server = row.server === "" ? `(${row.machine})` : row.server;
  return `${row.id}  ${verdictWords[row.verdict]}  ${server}!!${row.path}${work}${reason}`;
}

// What is written, and the counts.
export async function status(
  store: Store,
  request: StatusRequest,
): Promise<{ text: string; tally: Tally }> {
  const jobs: AccountRow[] = [];
  const wantsJobs = request.jobs || request.only !== undefined;
  const { servers, tally, drained } = await readProject(store, request.root, (row) => {
    if (request.only !== undefined && row.verdict !== request.only) return;
    if (wantsJobs || row.verdict === "running") jobs.push(row);
  });
  if (request.json) {
    const document = {
      format: "larkspan-fleet-status",
      version: 1,
      databases: databasesIn(tally),
      open: openRows(tally),
      drained: drained === "" ? null : drained,
      tally,
      servers: servers.map(({ name, limit, isPaused, tally: counts }) => ({
        name,
        limit,
        paused: isPaused,
        tally: counts,
      })),
      jobs,
    };
    return { text: `${JSON.stringify(document)}\n`, tally };
  }
  const text = [
    ...jobs.map(jobText),
    ...servers.map(
      (line) =>
        `${line.name}: ${tallyText(line.tally)}; at most ${line.limit} at once` +
        (line.isPaused ? "; paused" : ""),
    ),
    `${databasesIn(tally)} databases: ${tallyText(tally)}`,
    ...(drained === "" ? [] : [`drained since ${drained}: workers end; 'resume' takes that back`]),
  ];
  return { text: text.join("\n") + "\n", tally };
}
