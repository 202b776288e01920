// What a person does to jobs that are queued: cancel them, and have them tried again.
import { randomUUID } from "node:crypto";
import { CannotError } from "../base/failures.js";
import { databaseName } from "../jobs/jobData.js";
import type { JobData } from "../jobs/jobData.js";
import { Catalogue } from "../store/catalogue.js";
import type { FleetJob, FleetQueue, Store } from "../store/store.js";

interface Found {
  job: FleetJob;
  queue: FleetQueue;
  state: string;
}

async function find(store: Store, id: string): Promise<Found> {
  const { entries } = await new Catalogue(store).read();
  for (const { queue: name } of entries) {
    const queue = store.queue(name);
    const job = await queue.getJob(id);
    if (job !== undefined) return { job, queue, state: await queue.getJobState(id) };
  }
  throw new CannotError(`there is no job '${id}'; 'status --jobs' lists them`);
}

function isFinished(state: string): boolean {
  return state === "completed" || state === "failed";
}

// A job that waits is cancelled at once; one that runs as soon as its worker looks, in a few
// seconds. Returns a sentence.
export async function cancelJob(store: Store, id: string, by: string): Promise<string> {
  const { job, state } = await find(store, id);
  const name = databaseName(job.data);
  if (isFinished(state)) throw new CannotError(`${name} has ended already`);
  await job.updateData({ ...job.data, cancel: { at: new Date().toISOString(), by } });
  return state === "active" ? `${name} is being stopped` : `${name} is cancelled`;
}

function fresh(data: JobData, stalls: number): JobData {
  const { cancel, ...rest } = data;
  return { ...rest, stallsForgiven: stalls };
}

async function tryAgain(job: FleetJob, state: "failed" | "completed"): Promise<void> {
  await job.retry(state, { resetAttemptsMade: true, resetAttemptsStarted: true });
}

// With again an export that has its name is made anew; its folder is renamed first, by the worker
// that takes the job.
export async function retryJob(store: Store, id: string, again: boolean): Promise<string> {
  const { job, state } = await find(store, id);
  const name = databaseName(job.data);
  const data = fresh(job.data, job.stalledCounter);
  if (state === "completed") {
    if (!again)
      throw new CannotError(
        `${name} is exported; with --again it is exported once more, and the old folder is renamed`,
      );
    const number = randomUUID().slice(0, 8);
    await job.updateData({ ...data, again: { id: number, at: new Date().toISOString() } });
    await tryAgain(job, "completed");
    return `${name} is exported again`;
  }
  if (state === "failed") {
    await job.updateData(data);
    await tryAgain(job, "failed");
    return `${name} is tried again`;
  }
  if (state === "active") throw new CannotError(`${name} is being exported`);
  if (job.data.cancel === undefined) throw new CannotError(`${name} waits already`);
  await job.updateData(data);
  return `${name} is no longer cancelled`;
}

// Whole before any of them moves: Redis would skip the ones that move up.
async function failedIds(store: Store, queue: string): Promise<string[]> {
  const ids: string[] = [];
  for await (const row of store.rows(queue))
    if (row.state === "failed" && row.data.cancel === undefined) ids.push(row.id);
  return ids;
}

// All that failed for good, but for those that were cancelled. Returns their number.
export async function retryFailed(store: Store): Promise<number> {
  const { entries } = await new Catalogue(store).read();
  let tried = 0;
  for (const { queue: name } of entries) {
    const queue = store.queue(name);
    for (const id of await failedIds(store, name)) {
      const job = await queue.getJob(id);
      if (job === undefined) continue;
      await job.updateData(fresh(job.data, job.stalledCounter));
      await tryAgain(job, "failed");
      ++tried;
    }
  }
  return tried;
}
