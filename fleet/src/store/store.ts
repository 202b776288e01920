// The door to the queue server: opens it, and hands out the queues of the Notes servers.
import { Queue, Worker } from "bullmq";
import type { IQueueBackend, Job, JobProgress } from "bullmq";
import { CannotError, codeOf, messageOf, UsageError } from "../base/failures.js";
import type { JobData, JobResult } from "../jobs/jobData.js";
import type { Address } from "./address.js";
import type { Backend, JobRow, RoleKind } from "./backend.js";
import { PostgresBackend } from "./postgres.js";
import { RedisBackend } from "./redis.js";

export type FleetJob = Job<JobData, JobResult>;

export type FleetQueue<Data = JobData, Result = JobResult> = Queue<
  Data,
  Result,
  string,
  Data,
  Result,
  string,
  IQueueBackend,
  unknown
>;

export type FleetWorker = Worker<JobData, JobResult, string, IQueueBackend, JobProgress, unknown>;

export interface WorkerTimes {
  lock: number;
  // Between two looks for jobs whose worker is gone.
  stalledInterval: number;
}

// Stalls are counted by the worker that takes the job, since the server's count is never reset.
const everyStall = 1_000_000;

// What the server's own words come to.
export function explain(error: unknown, name: string): Error {
  // Said already: its words are a person's, such as the name of a listing.
  if (error instanceof CannotError || error instanceof UsageError) return error;
  const code = codeOf(error);
  const text = messageOf(error);
  const said = (what: string) => new CannotError(`the queue at ${name}: ${what}`);
  if (code === "28P01" || code === "28000" || /SASL|password|NOAUTH/i.test(text))
    return said(`it refuses this user, or the password (${text})`);
  if (code === "3D000") return said(`there is no such database (${text})`);
  if (code === "42704") return said(`there is no such role (${text})`);
  if (code === "53300") return said(`it has no connection left: raise max_connections (${text})`);
  if (code === "42501") return said(`a right is missing (${text})`);
  if (/migrat|SchemaMigration/i.test(text)) return said("it is not prepared: call 'init' first");
  if (code === "53100") return said("its disk is full");
  if (/certificate|self.signed|altnames|does not support SSL/i.test(text))
    return said(`its encryption cannot be trusted: ${text}`);
  if (isOfConnection(error)) return said(`it cannot be reached (${text})`);
  return error instanceof Error ? error : new Error(text);
}

const connectionCodes = new Set([
  "ECONNREFUSED",
  "ECONNRESET",
  "EPIPE",
  "ETIMEDOUT",
  "ENOTFOUND",
  "EAI_AGAIN",
  "EHOSTUNREACH",
  "ENETUNREACH",
]);

// The server is away, or going away: 57P0x is its shutdown, 08xxx a broken connection.
export function isOfConnection(error: unknown): boolean {
  const code = codeOf(error);
  if (connectionCodes.has(code) || code.startsWith("57P") || code.startsWith("08")) return true;
  return /Connection (?:terminated|is closed)|timeout|max retries per request/i.test(
    messageOf(error),
  );
}

export class Store {
  private readonly queues = new Map<string, FleetQueue<never, never>>();

  constructor(
    readonly address: Address,
    private readonly backend: Backend,
  ) {}

  get name(): string {
    return this.address.name;
  }

  // The queue of a Notes server. Kept open until the store is closed.
  queue<Data = JobData, Result = JobResult>(name: string): FleetQueue<Data, Result> {
    let queue = this.queues.get(name);
    if (queue === undefined) {
      queue = new Queue(name, this.options(this.backend.queueConnection), this.backend.factory);
      queue.on("error", () => undefined);
      this.queues.set(name, queue);
    }
    return queue as unknown as FleetQueue<Data, Result>;
  }

  // Takes no job by itself.
  worker(name: string, machine: string, times: WorkerTimes): FleetWorker {
    const worker: FleetWorker = new Worker(
      name,
      null,
      {
        ...this.options(this.backend.workerConnection),
        autorun: false,
        name: machine,
        lockDuration: times.lock,
        stalledInterval: times.stalledInterval,
        maxStalledCount: everyStall,
      },
      this.backend.factory,
    );
    worker.on("error", () => undefined);
    return worker;
  }

  rows(queue: string): AsyncIterable<JobRow> {
    return this.backend.rows(queue);
  }

  serverTime(): Promise<number> {
    return this.backend.serverTime();
  }

  async close(): Promise<void> {
    for (const queue of this.queues.values()) await queue.close();
    await this.backend.close();
  }

  private options(connection: unknown) {
    return { connection, prefix: this.address.schema };
  }
}

function backendOf(address: Address): Backend {
  return address.kind === "postgres" ? new PostgresBackend(address) : new RedisBackend(address);
}

// Throws a CannotError that says why it cannot be used.
export async function openStore(address: Address): Promise<Store> {
  const backend = backendOf(address);
  try {
    await backend.open();
    return new Store(address, backend);
  } catch (error) {
    await backend.close().catch(() => undefined);
    throw explain(error, address.name);
  }
}

// Makes what the server needs, and says what is there.
export async function prepareStore(
  address: Address,
  roles: readonly { name: string; kind: RoleKind }[],
): Promise<string[]> {
  const backend = backendOf(address);
  try {
    const told = await backend.prepare();
    for (const { name, kind } of roles) await backend.grant(name, kind);
    return told;
  } catch (error) {
    throw explain(error, address.name);
  } finally {
    await backend.close().catch(() => undefined);
  }
}

// Runs a command on an open store.
export async function withStore<T>(
  address: Address,
  work: (store: Store) => Promise<T>,
): Promise<T> {
  const store = await openStore(address);
  try {
    return await work(store);
  } catch (error) {
    throw explain(error, address.name);
  } finally {
    await store.close().catch(() => undefined);
  }
}
