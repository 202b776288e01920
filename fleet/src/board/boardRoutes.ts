// Which request gets which answer.
//
// A change, by POST, has to come from this page, of somebody who signed in, with the token of the
// session. Whether a request names this page as its host has been asked before.
import type { IncomingMessage, ServerResponse } from "node:http";
import type { JsonObject } from "../base/json.js";
import type { Clock } from "../base/time.js";
import { databasesIn, openRows } from "../report/account.js";
import { readProject } from "../report/projectState.js";
import { explain } from "../store/store.js";
import type { Store } from "../store/store.js";
import { answer, answerJson, policyOfOthers, readJson, sendElsewhere } from "./answers.js";
import type { BoardData } from "./boardData.js";
import { makeChange } from "./changes.js";
import { Entrance } from "./entrance.js";
import { isOwnOrigin, isSameSecret } from "./guard.js";
import { readJobDetail } from "./jobDetail.js";
import { readPageFiles } from "./pageFiles.js";
import { loginPage, page } from "./pageText.js";
import type { QueuesPage } from "./queuesPage.js";
import { pageOfRows, parseQuery } from "./rowQuery.js";
import type { Session } from "./sessions.js";
import { SnapshotSource } from "./snapshot.js";

const queuesPath = "/queues/";
const jobsPath = "/api/jobs/";
const mostTold = 200;
const tokenHeader = "x-board-token";

export class BoardRoutes {
  private readonly source: SnapshotSource;
  private readonly files = readPageFiles();
  private queuesPage: QueuesPage | undefined;

  constructor(
    private readonly store: Store,
    private readonly entrance: Entrance,
    // Who changes something where nobody signs in.
    private readonly user: string,
    clock: Clock,
    private readonly say: (sentence: string) => void,
  ) {
    this.source = new SnapshotSource((take) => this.read(take), clock);
  }

  async take(request: IncomingMessage, response: ServerResponse, url: URL): Promise<void> {
    const { method } = request;
    if (method === "POST") await this.routePost(request, response, url.pathname);
    else if (method === "GET" || method === "HEAD") await this.routeGet(request, response, url);
    else answer(response, 405, "text/plain", "", { Allow: "GET, HEAD, POST" });
  }

  private async read(take: Parameters<typeof readProject>[2]) {
    try {
      return await readProject(this.store, undefined, take);
    } catch (error) {
      throw explain(error, this.store.name);
    }
  }

  private async routeGet(
    request: IncomingMessage,
    response: ServerResponse,
    url: URL,
  ): Promise<void> {
    const path = url.pathname;
    const file = this.files.get(path);
    if (file !== undefined) {
      answer(response, 200, file.type, file.text);
      return;
    }
    const session = this.entrance.session(request);
    if (path === "/login" || path === "/") this.openDoor(response, path, session);
    else if (session === undefined) this.refuse(response);
    else if (path === "/api/board") answerJson(response, 200, await this.data(session, url));
    else if (path.startsWith(jobsPath)) await this.showJob(response, path.slice(jobsPath.length));
    else if (path.startsWith(queuesPath)) await this.showQueues(response, url);
    else answerJson(response, 404, { error: "there is no such page" });
  }

  private openDoor(response: ServerResponse, path: string, session: Session | undefined): void {
    const isIn = session !== undefined;
    if (isIn !== (path === "/")) sendElsewhere(response, isIn ? "/" : "/login");
    else if (isIn) answer(response, 200, "text/html", page);
    else answer(response, 200, "text/html", loginPage(""));
  }

  private refuse(response: ServerResponse): void {
    answerJson(response, 401, { error: "sign in first" });
  }

  private async data(session: Session, url: URL): Promise<BoardData> {
    const { project, rows, at, failure } = await this.source.read();
    return {
      ...project,
      queue: this.store.name,
      user: session.user,
      token: session.token,
      asOf: at === 0 ? "" : new Date(at).toISOString(),
      failure,
      databases: databasesIn(project.tally),
      open: openRows(project.tally),
      list: pageOfRows(rows, parseQuery(url.searchParams)),
    };
  }

  private async showJob(response: ServerResponse, id: string): Promise<void> {
    const { rows } = await this.source.read();
    const row = rows.find((one) => one.id === id);
    const detail = row === undefined ? undefined : await readJobDetail(this.store, row);
    if (detail === undefined) answerJson(response, 404, { error: "there is no such job" });
    else answerJson(response, 200, detail);
  }

  // Its code is fetched when somebody wants it: it takes memory that a board need not have.
  private async showQueues(response: ServerResponse, url: URL): Promise<void> {
    const { QueuesPage } = await import("./queuesPage.js");
    this.queuesPage ??= new QueuesPage(this.store, queuesPath);
    const path = url.pathname.slice(queuesPath.length);
    const found = await this.queuesPage.find(path, url.searchParams);
    if (found === undefined) answerJson(response, 404, { error: "there is no such page" });
    else {
      const headers = { "Content-Security-Policy": policyOfOthers };
      answer(response, found.code, found.type, found.body, headers);
    }
  }

  private async routePost(
    request: IncomingMessage,
    response: ServerResponse,
    path: string,
  ): Promise<void> {
    if (!isOwnOrigin(request.headers)) {
      answerJson(response, 403, { error: "this did not come from the page" });
      return;
    }
    if (path === "/login" && this.entrance.hasLogin) {
      await this.entrance.signIn(request, response);
      return;
    }
    const session = this.entrance.session(request);
    if (session === undefined) this.refuse(response);
    else if (!this.hasToken(request, session))
      answerJson(response, 403, { error: "the page is out of date: load it again" });
    else if (path === "/api/change") await this.change(request, response, session);
    else if (path === "/api/leave")
      answerJson(response, 200, { told: "signed out" }, this.entrance.signOut(request));
    else answerJson(response, 404, { error: "there is no such page" });
  }

  private hasToken(request: IncomingMessage, session: Session): boolean {
    const token = request.headers[tokenHeader];
    return typeof token === "string" && isSameSecret(token, session.token);
  }

  private async change(
    request: IncomingMessage,
    response: ServerResponse,
    session: Session,
  ): Promise<void> {
    const body = await readJson(request);
    if (body === undefined) {
      answerJson(response, 400, { error: "this is no change" });
      return;
    }
    const by = session.user === "" ? this.user : session.user;
    const told = await this.makeChange(by, body);
    this.say(`${by}: ${told}`);
    answerJson(response, 200, { told });
  }

  // What failed may have been done in part: who wanted it is told in any case.
  private async makeChange(by: string, body: JsonObject): Promise<string> {
    try {
      return await makeChange(this.store, by, body);
    } catch (error) {
      const wanted = JSON.stringify(body).slice(0, mostTold);
      this.say(`${by}: ${wanted} failed: ${explain(error, this.store.name).message}`);
      throw error;
    } finally {
      this.source.expire();
    }
  }
}
