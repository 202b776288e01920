// The server of the board: listens, lets nobody in who calls it by another name, and tells what
// failed.
import { createPrivateKey, X509Certificate } from "node:crypto";
import { createServer } from "node:http";
import type { IncomingMessage, Server, ServerResponse } from "node:http";
import { createServer as createTlsServer } from "node:https";
import { once } from "node:events";
import type { AddressInfo, Socket } from "node:net";
import { CannotError, codeOf, messageOf, UsageError } from "../base/failures.js";
import type { Clock } from "../base/time.js";
import { explain } from "../store/store.js";
import type { Store } from "../store/store.js";
import { answer, answerJson } from "./answers.js";
import { BoardRoutes } from "./boardRoutes.js";
import { Entrance } from "./entrance.js";
import { isOwnHost } from "./guard.js";

export interface BoardSettings {
  host: string;
  port: number;
  // Names by which browsers may call it, beside its addresses.
  names: ReadonlySet<string>;
  tls: { cert: string; key: string } | undefined;
  // Undefined: without a login.
  passwordFile: string | undefined;
  // Who cancels where nobody signs in.
  user: string;
}

const mostConnections = 500;

type Take = (request: IncomingMessage, response: ServerResponse) => void;

function serverOf(tls: BoardSettings["tls"], take: Take): Server {
  if (tls === undefined) return createServer(take);
  try {
    // An empty file would be no certificate, and no fault either.
    if (!new X509Certificate(tls.cert).checkPrivateKey(createPrivateKey(tls.key)))
      throw new Error("the key is that of another certificate");
    return createTlsServer({ ...tls, minVersion: "TLSv1.2" }, take);
  } catch (error) {
    throw new CannotError(`the certificate and the key cannot be used: ${messageOf(error)}`);
  }
}

export class BoardServer {
  private readonly server: Server;
  private readonly routes: BoardRoutes;
  private readonly sockets = new Set<Socket>();

  constructor(
    private readonly store: Store,
    private readonly settings: BoardSettings,
    clock: Clock,
    private readonly say: (sentence: string) => void,
  ) {
    const { tls, passwordFile, user } = settings;
    const entrance = new Entrance(passwordFile, tls !== undefined, clock, say);
    this.routes = new BoardRoutes(store, entrance, user, clock, say);
    this.server = serverOf(tls, (request, response) => {
      void this.take(request, response);
    });
    this.server.maxConnections = mostConnections;
    this.server.on("connection", (socket: Socket) => {
      this.sockets.add(socket);
      socket.on("close", () => this.sockets.delete(socket));
    });
  }

  // The port that it has.
  async listen(): Promise<number> {
    const { host, port } = this.settings;
    this.server.listen(port, host);
    try {
      await once(this.server, "listening");
    } catch (error) {
      const why = codeOf(error) === "EADDRINUSE" ? "another program has it" : messageOf(error);
      throw new CannotError(`${host}, port ${port}, cannot be listened on: ${why}`);
    }
    this.server.on("error", (error) => {
      this.say(`the board's server: ${messageOf(error)}`);
    });
    return (this.server.address() as AddressInfo).port;
  }

  // Those too that are no connection of HTTP yet, in the midst of agreeing on keys.
  async close(): Promise<void> {
    this.server.close();
    for (const socket of this.sockets) socket.destroy();
    await once(this.server, "close");
  }

  private async take(request: IncomingMessage, response: ServerResponse): Promise<void> {
    const path = request.url ?? "";
    try {
      if (!isOwnHost(request, this.settings.names))
        answer(response, 421, "text/plain", "This page has another name; --name gives it one.\n");
      else if (!path.startsWith("/")) answer(response, 400, "text/plain", "");
      else await this.routes.take(request, response, new URL(`http://board${path}`));
    } catch (error) {
      this.fail(response, error);
    }
  }

  private fail(response: ServerResponse, error: unknown): void {
    const told = explain(error, this.store.name);
    const isForeseen = told instanceof CannotError || told instanceof UsageError;
    if (!isForeseen) this.say(told.stack ?? told.message);
    if (response.headersSent) response.destroy();
    else
      answerJson(response, isForeseen ? 409 : 500, {
        error: isForeseen ? told.message : "it failed; the output of the board tells why",
      });
  }
}
