// The rows of the project as they stood a moment ago.
//
// However many look, the queue's server is asked once. A reading of thirty thousand rows takes its
// time, so the next one waits four times as long as the last one took, and none begins while nobody
// looks.
import { messageOf } from "../base/failures.js";
import { within } from "../base/time.js";
import type { Clock } from "../base/time.js";
import { emptyTally } from "../report/account.js";
import type { AccountRow, RowVerdict } from "../report/account.js";
import type { ProjectState } from "../report/projectState.js";

export interface Snapshot {
  project: ProjectState;
  // In the order of the page.
  rows: readonly AccountRow[];
  // Milliseconds since 1970; 0: never read.
  at: number;
  // Why it is not newer; empty: it is.
  failure: string;
}

export type ReadRows = (take: (row: AccountRow) => void) => Promise<ProjectState>;

const shortestAge = 1000;
const ageOfDuration = 4;
const patience = 10_000;

// What a person looks for first stands first.
const ranks: Record<RowVerdict, number> = {
  running: 0,
  failed: 1,
  retrying: 2,
  losses: 3,
  cancelled: 4,
  waiting: 5,
  whole: 6,
};

function compareText(one: string, other: string): number {
  return one < other ? -1 : one > other ? 1 : 0;
}

function compareRows(one: AccountRow, other: AccountRow): number {
  return (
    ranks[one.verdict] - ranks[other.verdict] ||
    compareText(one.server, other.server) ||
    compareText(one.machine, other.machine) ||
    compareText(one.path, other.path) ||
    compareText(one.id, other.id)
  );
}

function isSame(one: AccountRow, other: AccountRow): boolean {
  for (const name in one)
    if (one[name as keyof AccountRow] !== other[name as keyof AccountRow]) return false;
  return true;
}

const nothing: Snapshot = {
  project: { servers: [], tally: emptyTally(), isPaused: false, drained: "" },
  rows: [],
  at: 0,
  failure: "",
};

export class SnapshotSource {
  private current: Snapshot = nothing;
  private reading: Promise<void> | undefined;
  private freshUntil = -Infinity;
  private changes = 0;

  constructor(
    private readonly readRows: ReadRows,
    private readonly clock: Clock,
  ) {}

  // Never fails: what cannot be read anew is shown as it was, with the reason.
  async read(): Promise<Snapshot> {
    if (this.clock.ticks() < this.freshUntil) return this.current;
    try {
      this.reading ??= this.refresh().finally(() => {
        this.reading = undefined;
      });
      await within(this.clock, patience, this.reading);
      return this.current;
    } catch (error) {
      return { ...this.current, failure: messageOf(error) };
    }
  }

  // Something was changed: what is being read now may lack it.
  expire(): void {
    ++this.changes;
    this.freshUntil = -Infinity;
  }

  private async refresh(): Promise<void> {
    const begun = this.clock.ticks();
    const { changes } = this;
    const rows: AccountRow[] = [];
    const earlier = new Map(this.current.rows.map((row) => [row.id, row]));
    const project = await this.readRows((row) => {
      // What did not change stays the object that it was: the new one is gone before it costs room.
      const old = earlier.get(row.id);
      rows.push(old !== undefined && isSame(row, old) ? old : row);
    });
    rows.sort(compareRows);
    this.current = { project, rows, at: this.clock.now(), failure: "" };
    const ended = this.clock.ticks();
    if (changes === this.changes)
      this.freshUntil = ended + Math.max(shortestAge, ageOfDuration * (ended - begun));
  }
}
