// Where the queue is: a URL without a password, and what it says of encryption. A password comes
// from a password file or the environment, since a command line can be read by others.
import { readFileSync } from "node:fs";
import { CannotError, UsageError } from "../base/failures.js";

export interface Tls {
  rejectUnauthorized: boolean;
  ca?: string;
  // Set to skip the check of the host's name.
  checkServerIdentity?: () => undefined;
}

export interface Address {
  kind: "postgres" | "redis";
  host: string;
  port: number;
  user: string;
  // Of PostgreSQL; of Redis its number.
  database: string;
  // Of PostgreSQL; of Redis the prefix of its keys.
  schema: string;
  // False: unencrypted.
  tls: Tls | false;
  // For messages.
  name: string;
}

const loopback = new Set(["localhost", "127.0.0.1", "::1"]);

function hostOf(url: URL): string {
  return url.hostname.replace(/^\[|\]$/g, "");
}

function authorityOf(url: URL, environment: NodeJS.ProcessEnv): string | undefined {
  const file = url.searchParams.get("sslrootcert") ?? environment["PGSSLROOTCERT"];
  if (file === undefined || file === "") return undefined;
  try {
    return readFileSync(file, "utf8");
  } catch {
    throw new CannotError(`the certificate file '${file}' cannot be read`);
  }
}

// The words are those of libpq. Without one the server has to prove its name, unless it is here.
function tlsOf(url: URL, mode: string, environment: NodeJS.ProcessEnv): Tls | false {
  const ca = authorityOf(url, environment);
  const checked: Tls = { rejectUnauthorized: true, ...(ca === undefined ? {} : { ca }) };
  switch (mode) {
    case "disable":
      return false;
    case "require":
      return { rejectUnauthorized: false };
    case "verify-ca":
      return { ...checked, checkServerIdentity: () => undefined };
    case "verify-full":
      return checked;
    default:
      throw new UsageError(
        `sslmode '${mode}' is none of verify-full, verify-ca, require and disable`,
      );
  }
}

function defaultMode(url: URL): string {
  if (url.protocol === "rediss:") return "verify-full";
  return loopback.has(hostOf(url)) ? "disable" : "verify-full";
}

function parse(text: string): URL {
  try {
    const url = new URL(text);
    if (url.hostname !== "") return url;
  } catch {
    // Told below.
  }
  throw new UsageError("the address of the queue is no URL; say postgres://USER@HOST/DATABASE");
}

function decoded(part: string): string {
  try {
    return decodeURIComponent(part);
  } catch {
    throw new UsageError(`'${part}' in the address of the queue: a % is written as %25 there`);
  }
}

function databaseOf(url: URL, isPostgres: boolean): string {
  const name = decoded(url.pathname.slice(1)) || (isPostgres ? "larkspan" : "0");
  if (!isPostgres && !/^\d+$/.test(name)) throw new UsageError(`'${name}' is no number of a Redis`);
  return name;
}

// The queue library writes it into its statements as it is.
function schemaOf(url: URL): string {
  const schema = url.searchParams.get("schema") ?? "larkspan";
  if (!/^[A-Za-z_][A-Za-z0-9_]{0,62}$/.test(schema))
    throw new UsageError(`schema '${schema}' is not made of letters, digits and underscores`);
  return schema;
}

// Both servers have the parameter of the URL, and PostgreSQL alone that of the environment.
function modeOf(url: URL, isPostgres: boolean, environment: NodeJS.ProcessEnv): string {
  const ofEnvironment = isPostgres ? environment["PGSSLMODE"] : undefined;
  return url.searchParams.get("sslmode") ?? ofEnvironment ?? defaultMode(url);
}

export function parseAddress(text: string, environment: NodeJS.ProcessEnv): Address {
  const url = parse(text);
  if (url.password !== "")
    throw new UsageError("a password does not belong into the URL: use a password file");
  const kinds: Record<string, Address["kind"]> = {
    "postgres:": "postgres",
    "postgresql:": "postgres",
    "redis:": "redis",
    "rediss:": "redis",
  };
  const kind = kinds[url.protocol];
  if (kind === undefined) throw new UsageError("the URL begins with neither postgres: nor redis:");
  const isPostgres = kind === "postgres";
  return {
    kind,
    host: hostOf(url),
    port: url.port === "" ? (isPostgres ? 5432 : 6379) : Number(url.port),
    user: decoded(url.username),
    database: databaseOf(url, isPostgres),
    schema: schemaOf(url),
    tls: tlsOf(url, modeOf(url, isPostgres, environment), environment),
    name: `${url.protocol}//${url.host}`,
  };
}
