// The queue in Redis.
import { readFileSync } from "node:fs";
import { createRedisBackend, Queue } from "bullmq";
import type { BackendFactory, IQueueBackend, Job } from "bullmq";
import { Redis } from "ioredis";
import type { RedisOptions } from "ioredis";
import { CannotError, UsageError } from "../base/failures.js";
import type { JobData, JobResult, JobState } from "../jobs/jobData.js";
import type { Address } from "./address.js";
import type { Backend, JobRow, RowState } from "./backend.js";

const rowsOfPage = 500;
const oldestMajor = 6;

const statesOfQueue: Record<
  RowState,
  ("wait" | "prioritized" | "active" | "delayed" | "completed" | "failed")[]
> = {
  waiting: ["wait", "prioritized"],
  running: ["active"],
  delayed: ["delayed"],
  completed: ["completed"],
  failed: ["failed"],
};

// From LARKSPAN_REDIS_PASSWORD_FILE, else from LARKSPAN_REDIS_PASSWORD.
function passwordOf(environment: NodeJS.ProcessEnv): string | undefined {
  const file = environment["LARKSPAN_REDIS_PASSWORD_FILE"];
  if (file === undefined) return environment["LARKSPAN_REDIS_PASSWORD"];
  try {
    return readFileSync(file, "utf8").split(/\r?\n/, 1)[0];
  } catch {
    throw new CannotError(`the password file '${file}' cannot be read`);
  }
}

function optionsOf(address: Address): RedisOptions {
  const password = passwordOf(process.env);
  return {
    host: address.host,
    port: address.port,
    db: Number(address.database),
    ...(address.user === "" ? {} : { username: address.user }),
    ...(password === undefined ? {} : { password }),
    ...(address.tls === false ? {} : { tls: address.tls }),
  };
}

function field(info: string, name: string): string {
  return new RegExp(`^${name}:(.*)$`, "m").exec(info)?.[1]?.trim() ?? "";
}

function rowOf(job: Job<JobData, JobResult>, state: RowState): JobRow {
  return {
    id: job.id ?? "",
    state,
    data: job.data,
    progress: typeof job.progress === "object" ? (job.progress as JobState) : null,
    result: state === "completed" ? job.returnvalue : null,
    failedReason: job.failedReason,
    attemptsMade: job.attemptsMade,
    stalls: job.stalledCounter,
    addedAt: job.timestamp,
    startedAt: job.processedOn ?? null,
    endedAt: job.finishedOn ?? null,
  };
}

export class RedisBackend implements Backend {
  private readonly client: Redis;
  private wasReached = false;
  readonly workerConnection: unknown;
  readonly factory = createRedisBackend as unknown as BackendFactory<IQueueBackend, unknown>;

  constructor(private readonly address: Address) {
    this.workerConnection = { ...optionsOf(address), maxRetriesPerRequest: null };
    this.client = new Redis({
      ...optionsOf(address),
      lazyConnect: true,
      maxRetriesPerRequest: 2,
      // Whoever waits hears soon that nobody is there. One that was there comes back.
      retryStrategy: (times: number) => (this.wasReached || times <= 3 ? 500 : null),
    });
    this.client.on("error", () => undefined);
  }

  // One for all queues. A change that waited for the server would be made when nobody thinks of it
  // any more.
  get queueConnection(): Redis {
    return this.client;
  }

  async open(): Promise<void> {
    await this.client.ping();
    this.wasReached = true;
  }

  async close(): Promise<void> {
    this.client.disconnect();
    return Promise.resolve();
  }

  async prepare(): Promise<string[]> {
    const info = await this.client.info();
    const version = field(info, "redis_version");
    if (!(Number(version.split(".")[0]) >= oldestMajor))
      throw new CannotError(`Redis ${version} is too old; ${oldestMajor} is the oldest`);
    const told = [`Redis ${version}`];
    if (field(info, "maxmemory_policy") !== "noeviction")
      throw new CannotError("Redis may throw jobs away: set maxmemory-policy to noeviction");
    if (field(info, "aof_enabled") !== "1")
      told.push("warning: appendonly is off; what was queued last is lost when Redis ends");
    return told;
  }

  grant(): Promise<void> {
    throw new UsageError("--grant is for PostgreSQL; write an ACL for Redis");
  }

  async serverTime(): Promise<number> {
    const [seconds, microseconds] = await this.client.time();
    return Number(seconds) * 1000 + Number(microseconds) / 1000;
  }

  async *rows(name: string): AsyncGenerator<JobRow> {
    const queue = new Queue<JobData, JobResult>(name, {
      connection: this.queueConnection,
      prefix: this.address.schema,
    });
    // A job that moves on while this is read would come twice.
    const seen = new Set<string>();
    try {
      for (const state of Object.keys(statesOfQueue) as RowState[])
        for (let start = 0; ; start += rowsOfPage) {
          const jobs = await queue.getJobs(statesOfQueue[state], start, start + rowsOfPage - 1);
          for (const job of jobs) {
            const row = rowOf(job, state);
            if (!seen.has(row.id)) yield row;
            seen.add(row.id);
          }
          if (jobs.length === 0) break;
        }
    } finally {
      await queue.close();
    }
  }
}
