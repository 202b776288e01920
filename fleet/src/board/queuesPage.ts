// The page that the queue library's makers offer, for a look into the queues themselves.
//
// It can only read here. Its buttons know nothing of cancelled jobs, of folders and of the account,
// so it shows none, and nothing but GET is answered. Its markup names fonts of another site, which are
// left out, and styles of its own, which its policy has to let through.
import { readdirSync } from "node:fs";
import { readFile } from "node:fs/promises";
import { createRequire } from "node:module";
import { dirname, extname, join } from "node:path";
import { createBullBoard } from "@bull-board/api";
import { BullMQAdapter } from "@bull-board/api/bullMQAdapter";
import type {
  AppControllerRoute,
  AppViewRoute,
  BullBoardQueues,
  ControllerHandlerReturnType,
  IServerAdapter,
  UIConfig,
} from "@bull-board/api/typings/app";
import { Catalogue } from "../store/catalogue.js";
import type { Store } from "../store/store.js";

export interface FoundPage {
  code: number;
  type: string;
  body: string | Buffer;
}

interface Route {
  pattern: RegExp;
  names: string[];
  definition: AppControllerRoute;
}

function patternOf(path: string): RegExp {
  return new RegExp(`^${path.replaceAll(/:\w+/g, "([^/]+)")}$`);
}

const types: Record<string, string> = {
  ".css": "text/css",
  ".ico": "image/x-icon",
  ".js": "text/javascript",
  ".json": "application/json",
  ".png": "image/png",
  ".svg": "image/svg+xml",
};

function routeOf(path: string, definition: AppControllerRoute): Route {
  const names = [...path.matchAll(/:(\w+)/g)].map((match) => match[1] ?? "");
  return { pattern: patternOf(path), names, definition };
}

// Undefined: it is no address.
function partsOf(match: RegExpExecArray): string[] | undefined {
  try {
    return match.slice(1).map(decodeURIComponent);
  } catch {
    return undefined;
  }
}

function oneOrMore<T>(value: T | T[]): T[] {
  return Array.isArray(value) ? value : [value];
}

// Its types know of Redis alone, its code of both kinds of server.
function asQueue(queue: unknown): ConstructorParameters<typeof BullMQAdapter>[0] {
  return queue as ConstructorParameters<typeof BullMQAdapter>[0];
}

// It does not see the workers, and would say that there are none.
const uiConfig: UIConfig = { boardTitle: "Queues", showWorkers: false, hideDocsLink: true };

// What the library would have a server do; here it is only noted.
class Notes implements IServerAdapter {
  queues: BullBoardQueues = new Map();
  routes: Route[] = [];
  entry: AppViewRoute | undefined;
  config: UIConfig = {};
  onError: (error: Error) => ControllerHandlerReturnType = (error) => ({ body: error.message });

  setQueues(queues: BullBoardQueues): this {
    this.queues = queues;
    return this;
  }
  setViewsPath(): this {
    return this;
  }
  setStaticPath(): this {
    return this;
  }
  setEntryRoute(entry: AppViewRoute): this {
    this.entry = entry;
    return this;
  }
  setErrorHandler(handler: (error: Error) => ControllerHandlerReturnType): this {
    this.onError = handler;
    return this;
  }
  setApiRoutes(routes: AppControllerRoute[]): this {
    for (const route of routes)
      if (oneOrMore(route.method).includes("get"))
        this.routes.push(...oneOrMore(route.route).map((path) => routeOf(path, route)));
    return this;
  }
  setUIConfig(config: UIConfig): this {
    this.config = config;
    return this;
  }
}

export class QueuesPage {
  private readonly notes = new Notes();
  private readonly folder = join(
    dirname(createRequire(import.meta.url).resolve("@bull-board/ui/package.json")),
    "dist",
  );
  // By their paths, so that no other file can be asked for.
  private readonly files: ReadonlySet<string>;
  private readonly adapters = new Map<string, BullMQAdapter>();
  private readonly replaceQueues: (queues: BullMQAdapter[]) => void;

  constructor(
    private readonly store: Store,
    // With a slash at its end.
    private readonly basePath: string,
  ) {
    const names = readdirSync(join(this.folder, "static"), { recursive: true, encoding: "utf8" });
    this.files = new Set(names.map((name) => `static/${name.replaceAll("\\", "/")}`));
    const { replaceQueues } = createBullBoard({
      queues: [],
      serverAdapter: this.notes,
      options: { uiBasePath: dirname(this.folder), uiConfig },
    });
    this.replaceQueues = replaceQueues;
  }

  // The path is what follows after that of the page.
  async find(path: string, query: URLSearchParams): Promise<FoundPage | undefined> {
    const type = types[extname(path)];
    if (type !== undefined && this.files.has(path))
      return { code: 200, type, body: await readFile(join(this.folder, path)) };
    return path.startsWith("api/") ? this.ask(`/${path}`, query) : this.markup(`/${path}`);
  }

  private async ask(path: string, query: URLSearchParams): Promise<FoundPage | undefined> {
    for (const { pattern, names, definition } of this.notes.routes) {
      const match = pattern.exec(path);
      if (match === null) continue;
      const parts = partsOf(match);
      if (parts === undefined) return undefined;
      const params = Object.fromEntries(names.map((name, index) => [name, parts[index]]));
      const { status, body } = await this.call(definition, params, Object.fromEntries(query));
      return { code: status ?? 200, type: "application/json", body: JSON.stringify(body) };
    }
    return undefined;
  }

  private async call(
    definition: AppControllerRoute,
    params: object,
    query: object,
  ): Promise<ControllerHandlerReturnType> {
    const { queues, config } = this.notes;
    try {
      await this.readQueues();
      return await definition.handler({
        queues,
        uiConfig: config,
        params,
        query,
        body: {},
        headers: {},
      });
    } catch (error) {
      return this.notes.onError(error instanceof Error ? error : new Error(String(error)));
    }
  }

  private async readQueues(): Promise<void> {
    const { entries } = await new Catalogue(this.store).read();
    this.replaceQueues(entries.map(({ queue }) => this.adapter(queue)));
  }

  private adapter(queue: string): BullMQAdapter {
    const made =
      this.adapters.get(queue) ??
      new BullMQAdapter(asQueue(this.store.queue(queue)), {
        readOnlyMode: true,
        allowRetries: false,
      });
    this.adapters.set(queue, made);
    return made;
  }

  private async markup(path: string): Promise<FoundPage | undefined> {
    const { entry, config } = this.notes;
    const isKnown = oneOrMore(entry?.route ?? []).some((route) => patternOf(route).test(path));
    if (entry === undefined || !isKnown) return undefined;
    const view = entry.handler({ basePath: this.basePath, uiConfig: config });
    const values = view.params as Partial<Record<string, string>>;
    const text = await readFile(join(this.folder, "index.ejs"), "utf8");
    const body = text
      .replaceAll(/<link[^>]+href="https?:[^>]*>/g, "")
      .replaceAll(/<%[=-]\s*(\w+)\s*%>/g, (_all, name: string) => values[name] ?? "");
    return { code: 200, type: "text/html", body };
  }
}
