// All that is known of one job.
import type { AccountRow } from "../report/account.js";
import type { Store } from "../store/store.js";
import type { JobDetail } from "./boardData.js";

const mostLines = 300;

export async function readJobDetail(store: Store, row: AccountRow): Promise<JobDetail | undefined> {
  const queue = store.queue(row.queue);
  const job = await queue.getJob(row.id);
  if (job === undefined) return undefined;
  const { logs, count } = await queue.getJobLogs(row.id, -mostLines, -1);
  return {
    row,
    options: job.data.options,
    added: new Date(job.timestamp).toISOString(),
    logs,
    logsLeftOut: count - logs.length,
  };
}
