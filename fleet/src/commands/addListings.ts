// Queues a job for each database of listings.
import { readFileSync } from "node:fs";
import { CannotError, messageOf, UsageError } from "../base/failures.js";
import { upperCase } from "../base/fold.js";
import type { ExportOptions, JobData } from "../jobs/jobData.js";
import { jobIdOf } from "../jobs/jobId.js";
import { priorityOf } from "../jobs/priority.js";
import { queueNameOf } from "../jobs/queueName.js";
import { folderNameOf } from "../jobs/safeName.js";
import { parseListing } from "../listing/listing.js";
import type { ListedDatabase, Listing } from "../listing/listing.js";
import { Catalogue } from "../store/catalogue.js";
import type { CatalogueState } from "../store/catalogue.js";
import type { Store } from "../store/store.js";

export interface AddRequest {
  listings: string[];
  root: string;
  // Whose the databases are where a listing does not say it.
  server: string | undefined;
  machine: string | undefined;
  // Undefined: as it is, or the usual one for a new server.
  limit: number | undefined;
  attempts: number;
  options: ExportOptions;
}

export interface Added {
  listed: number;
  added: number;
  alreadyThere: number;
  folders: number;
}

interface NewJob {
  name: string;
  data: JobData;
  opts: {
    jobId: string;
    priority: number;
    attempts: number;
    backoff: { type: "exponential"; delay: number };
  };
}

const usualLimit = 4;
const batch = 1000;
const firstRetryPause = 30_000;

export function readListing(file: string, server: string | undefined): Listing {
  try {
    return parseListing(readFileSync(file), server);
  } catch (error) {
    throw new CannotError(`the listing '${file}': ${messageOf(error)}`);
  }
}

function caseFold(database: ListedDatabase): string {
  return upperCase(`${database.server}!!${database.path.replaceAll("/", "\\")}`);
}

// Databases of which the listing has another one with the same letters in another case.
function meetingOnes(databases: readonly ListedDatabase[]): Set<string> {
  const seen = new Map<string, string>();
  const meeting = new Set<string>();
  for (const database of databases) {
    const key = caseFold(database);
    const path = database.path.replaceAll("/", "\\");
    if ((seen.get(key) ?? path) !== path) meeting.add(key);
    seen.set(key, path);
  }
  return meeting;
}

// The jobs of a listing, by the queue that each belongs to.
export function jobsOf(listing: Listing, file: string, request: AddRequest): Map<string, NewJob[]> {
  const jobs = new Map<string, NewJob[]>();
  const meeting = meetingOnes(listing.databases);
  for (const database of listing.databases) {
    const isLocal = database.server === "";
    if (isLocal && request.machine === undefined)
      throw new CannotError(
        `the listing '${file}' has databases of the machine that it was made on:` +
          " name that with --machine, as its worker is called",
      );
    const machine = isLocal ? (request.machine ?? "") : "";
    const key = { server: database.server, machine, path: database.path };
    const meets = meeting.has(caseFold(database));
    const queue = queueNameOf(database.server, machine);
    const list = jobs.get(queue) ?? [];
    jobs.set(queue, list);
    list.push({
      name: database.title === "" ? database.path : database.title,
      data: {
        root: request.root,
        ...key,
        title: database.title,
        bytes: database.bytes,
        listing: file,
        folder: folderNameOf(key, meets),
        options: request.options,
      },
      opts: {
        jobId: jobIdOf(request.root, key, meets),
        priority: priorityOf(database.bytes),
        attempts: request.attempts,
        backoff: { type: "exponential", delay: firstRetryPause },
      },
    });
  }
  return jobs;
}

async function announce(
  store: Store,
  catalogue: Catalogue,
  state: CatalogueState,
  queue: string,
  { server, machine }: JobData,
  limit: number | undefined,
): Promise<void> {
  const known = state.entries.find((entry) => entry.queue === queue);
  const wanted = limit ?? known?.limit ?? usualLimit;
  if (known?.limit !== wanted) await catalogue.put({ queue, server, machine, limit: wanted });
  if (known === undefined && (await catalogue.readSwitches()).paused)
    await store.queue(queue).pause();
}

async function countOf(store: Store, queue: string): Promise<number> {
  const counts = await store
    .queue(queue)
    .getJobCounts("wait", "prioritized", "delayed", "active", "completed", "failed");
  return Object.values(counts).reduce((sum, count) => sum + count, 0);
}

// One job for each ID of what is to be added, the first of them.
function distinct(jobs: readonly NewJob[]): NewJob[] {
  return [...new Map([...jobs].reverse().map((job) => [job.opts.jobId, job])).values()].reverse();
}

async function addToQueue(store: Store, queue: string, jobs: NewJob[]): Promise<number> {
  const before = await countOf(store, queue);
  for (let at = 0; at < jobs.length; at += batch)
    await store.queue(queue).addBulk(jobs.slice(at, at + batch));
  return (await countOf(store, queue)) - before;
}

// What larkspan-console takes.
const mostWorkers = 16;

// "D:" alone is the drive's first folder.
const wholePath = /^(?:[a-z]:)?[\\/]|^[a-z]:$/i;

// Each job would fail for such a fault, and keeps the options with which it was added first.
function check({ root, options }: AddRequest): void {
  if (!wholePath.test(root))
    throw new UsageError(
      `'${root}' is no whole path: each machine would take another folder for it`,
    );
  const { stall, maxLosses, workers } = options;
  if (stall !== undefined && !/^(?!0+[smh]?$)\d{1,6}[smh]?$/.test(stall))
    throw new UsageError("--stall takes a time such as 90s, 10m or 2h");
  if (maxLosses !== undefined && !/^\d{1,9}(?:\.\d+)?%?$/.test(maxLosses))
    throw new UsageError("--max-losses takes a number, or a share such as 2%");
  if (workers !== undefined && workers > mostWorkers)
    throw new UsageError(`--workers takes a number up to ${mostWorkers}`);
}

// All listings are read before anything is queued.
export async function addListings(store: Store, request: AddRequest): Promise<Added> {
  check(request);
  const read = request.listings.map((file) => ({ file, ...readListing(file, request.server) }));
  const catalogue = new Catalogue(store);
  const added: Added = { listed: 0, added: 0, alreadyThere: 0, folders: 0 };
  const state = await catalogue.read();
  for (const listing of read) {
    added.folders += listing.folders;
    for (const [queue, jobs] of jobsOf(listing, listing.file, request)) {
      const [first] = jobs;
      if (first !== undefined)
        await announce(store, catalogue, state, queue, first.data, request.limit);
      added.listed += jobs.length;
      added.added += await addToQueue(store, queue, distinct(jobs));
    }
  }
  added.alreadyThere = added.listed - added.added;
  return added;
}
