// The queue in PostgreSQL. All queues of a process share one pool: with one each, fifty machines
// and ten servers would have a thousand connections.
import { PostgresConnection, PostgresQueueBackend, runMigrations } from "bullmq";
import type { BackendFactory, IQueueBackend, PgPoolConfig } from "bullmq";
import pg from "pg";
import { CannotError } from "../base/failures.js";
import type { JobData, JobResult, JobState } from "../jobs/jobData.js";
import type { Address } from "./address.js";
import type { Backend, JobRow, RoleKind } from "./backend.js";
import { rowState } from "./backend.js";

const connections = 3;
const connectMilliseconds = 10_000;
const queryMilliseconds = 60_000;
const rowsOfPage = 2000;
const oldestVersion = 130_000;

interface Row {
  id: string;
  state: string;
  data: JobData;
  progress: JobState | number | null;
  return_value: JobResult | null;
  failed_reason: string | null;
  attempts_made: number;
  stalled_count: number;
  added_at_ms: string;
  processed_at_ms: string | null;
  finished_at_ms: string | null;
}

function configOf(address: Address): PgPoolConfig & { schema: string } {
  return {
    host: address.host,
    port: address.port,
    database: address.database,
    ...(address.user === "" ? {} : { user: address.user }),
    ssl: address.tls,
    schema: address.schema,
    max: connections,
    connectionTimeoutMillis: connectMilliseconds,
    query_timeout: queryMilliseconds,
    keepAlive: true,
    application_name: "larkspan-fleet",
  };
}

function timeOf(text: string | null): number | null {
  return text === null ? null : Number(text);
}

function rowOf(row: Row): JobRow {
  return {
    id: row.id,
    state: rowState(row.state),
    data: row.data,
    progress: typeof row.progress === "object" ? row.progress : null,
    result: row.return_value,
    failedReason: row.failed_reason ?? "",
    attemptsMade: row.attempts_made,
    stalls: row.stalled_count,
    addedAt: Number(row.added_at_ms),
    startedAt: timeOf(row.processed_at_ms),
    endedAt: timeOf(row.finished_at_ms),
  };
}

export class PostgresBackend implements Backend {
  readonly connection: PostgresConnection;

  constructor(private readonly address: Address) {
    // Both this client and the queue's take the password from PGPASSFILE or PGPASSWORD.
    this.connection = new PostgresConnection(configOf(address));
    // The pool tells of a connection that broke; whoever asks next hears of it.
    this.connection.on("error", () => undefined);
  }

  readonly factory: BackendFactory<IQueueBackend, unknown> = (name, options) =>
    new PostgresQueueBackend(
      this.connection,
      name,
      options as ConstructorParameters<typeof PostgresQueueBackend>[2],
      false,
    );

  readonly queueConnection = {};
  readonly workerConnection = {};

  async open(): Promise<void> {
    await this.connection.waitUntilReady();
  }

  async close(): Promise<void> {
    await this.connection.close();
  }

  // Makes the schema. Safe to call again.
  async prepare(): Promise<string[]> {
    const client = await this.connection.pool.connect();
    try {
      const { rows } = await client.query<{ version: string; name: string }>(
        "SELECT current_setting('server_version_num') AS version," +
          " current_setting('server_version') AS name",
      );
      const version = Number(rows[0]?.version);
      if (!(version >= oldestVersion))
        throw new CannotError(`PostgreSQL ${rows[0]?.name ?? "?"} is too old; 13 is the oldest`);
      const schema = await runMigrations(client, this.address.schema);
      return [
        `PostgreSQL ${rows[0]?.name ?? "?"}`,
        `schema '${this.address.schema}', version ${schema}`,
      ];
    } finally {
      client.release();
    }
  }

  // What the role needs of the schema, and nothing else. Adding jobs makes a sequence for each queue.
  async grant(role: string, kind: RoleKind): Promise<void> {
    const to = pg.escapeIdentifier(role);
    const schema = pg.escapeIdentifier(this.address.schema);
    const rights = [
      `GRANT USAGE ON SCHEMA ${schema} TO ${to}`,
      ...(kind === "person" ? [`GRANT CREATE ON SCHEMA ${schema} TO ${to}`] : []),
      `GRANT SELECT, INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA ${schema} TO ${to}`,
      `GRANT USAGE, SELECT, UPDATE ON ALL SEQUENCES IN SCHEMA ${schema} TO ${to}`,
      `GRANT EXECUTE ON ALL FUNCTIONS IN SCHEMA ${schema} TO ${to}`,
    ];
    for (const right of rights) await this.connection.pool.query(right);
  }

  async serverTime(): Promise<number> {
    const { rows } = await this.connection.pool.query<{ now: string }>(
      "SELECT extract(epoch FROM clock_timestamp()) * 1000 AS now",
    );
    return Number(rows[0]?.now);
  }

  // One query a page: asked job by job, thirty thousand of them take minutes.
  async *rows(queue: string): AsyncGenerator<JobRow> {
    for (let after = ""; ;) {
      const { rows } = await this.connection.pool.query<Row>(
        "SELECT id, state, data, progress, return_value, failed_reason, attempts_made," +
          " stalled_count, added_at_ms, processed_at_ms, finished_at_ms" +
          " FROM job WHERE queue = $1 AND id > $2 ORDER BY id LIMIT $3",
        [queue, after, rowsOfPage],
      );
      for (const row of rows) yield rowOf(row);
      const last = rows.at(-1);
      if (last === undefined || rows.length < rowsOfPage) return;
      after = last.id;
    }
  }
}
