// How far the project is: its servers with their counts, and every row on the way.
import { serverName } from "../jobs/jobData.js";
import { Catalogue } from "../store/catalogue.js";
import type { Store } from "../store/store.js";
import { accountRows, emptyTally } from "./account.js";
import type { AccountRow, RowVerdict, Tally } from "./account.js";

export interface ServerState {
  // For persons.
  name: string;
  // What commands call it: a server, or the machine whose own databases these are.
  key: string;
  limit: number;
  isPaused: boolean;
  tally: Tally;
}

export interface ProjectState {
  servers: ServerState[];
  tally: Tally;
  isPaused: boolean;
  // Since when; empty: it is not.
  drained: string;
}

function sumOf(servers: readonly ServerState[]): Tally {
  const sum = emptyTally();
  for (const { tally } of servers)
    for (const verdict of Object.keys(sum) as RowVerdict[]) sum[verdict] += tally[verdict];
  return sum;
}

// With root that of this project alone. Each row is handed on; none is kept.
export async function readProject(
  store: Store,
  root: string | undefined,
  take: (row: AccountRow) => void,
): Promise<ProjectState> {
  const { entries, switches } = await new Catalogue(store).read();
  const servers: ServerState[] = [];
  for (const entry of entries) {
    const tally = emptyTally();
    for await (const row of accountRows(store, [entry], root)) {
      ++tally[row.verdict];
      take(row);
    }
    servers.push({
      name: serverName(entry),
      key: entry.server === "" ? entry.machine : entry.server,
      limit: entry.limit,
      isPaused: await store.queue(entry.queue).isPaused(),
      tally,
    });
  }
  const { paused, drained } = switches;
  return { servers, tally: sumOf(servers), isPaused: paused, drained };
}
