// The list of all queues, and the switches of the whole project: entries of a queue that no worker
// reads, so that both kinds of server keep them alike.
import type { FleetQueue, Store } from "./store.js";

export interface QueueEntry {
  queue: string;
  // Empty: that of a machine's own databases.
  server: string;
  machine: string;
  // So many exports at once.
  limit: number;
}

export interface Switches {
  paused: boolean;
  // Workers that find it end; empty: none are asked to.
  drained: string;
}

interface Entry {
  entry?: QueueEntry;
  switches?: Switches;
}

const catalogueQueue = "larkspan-catalogue";
const switchesId = "switches";
const mostEntries = 100_000;
const noSwitches: Switches = { paused: false, drained: "" };

export interface CatalogueState {
  entries: QueueEntry[];
  switches: Switches;
}

export class Catalogue {
  private readonly queue: FleetQueue<Entry, null>;

  constructor(private readonly store: Store) {
    this.queue = store.queue<Entry, null>(catalogueQueue);
  }

  async read(): Promise<CatalogueState> {
    const jobs = await this.queue.getJobs(["wait"], 0, mostEntries);
    const entries = jobs.flatMap((job) => job.data.entry ?? []);
    entries.sort((one, other) => (one.queue < other.queue ? -1 : 1));
    const switches = jobs.find((job) => job.id === switchesId)?.data.switches;
    return { entries, switches: { ...noSwitches, ...switches } };
  }

  async readSwitches(): Promise<Switches> {
    const job = await this.queue.getJob(switchesId);
    return { ...noSwitches, ...job?.data.switches };
  }

  // Adds a queue, or gives it another limit.
  async put(entry: QueueEntry): Promise<void> {
    await this.set(`q-${entry.queue}`, { entry });
    await this.store.queue(entry.queue).setGlobalConcurrency(entry.limit);
  }

  async putSwitches(switches: Switches): Promise<void> {
    await this.set(switchesId, { switches });
  }

  private async set(id: string, data: Entry): Promise<void> {
    const job = await this.queue.getJob(id);
    if (job === undefined) await this.queue.add("entry", data, { jobId: id });
    else await job.updateData(data);
  }
}
