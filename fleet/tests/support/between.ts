// What stands between a worker and the queue's server, and loses connections as a network does: both
// sides stay, and neither hears of the other again. New connections come through.
import { connect, createServer } from "node:net";
import type { AddressInfo, Server, Socket } from "node:net";

interface Pair {
  near: Socket;
  far: Socket;
}

export class Between {
  private readonly pairs = new Set<Pair>();

  private constructor(
    private readonly server: Server,
    readonly port: number,
  ) {}

  static start(to: number): Promise<Between> {
    return new Promise((resolve) => {
      const server = createServer((near) => {
        between.join({ near, far: connect(to, "127.0.0.1") });
      });
      let between: Between;
      server.listen(0, "127.0.0.1", () => {
        between = new Between(server, (server.address() as AddressInfo).port);
        resolve(between);
      });
    });
  }

  fallSilent(): void {
    for (const { near, far } of this.pairs) {
      near.unpipe().resume();
      far.unpipe().resume();
    }
    this.pairs.clear();
  }

  // As a server that is there and does nothing more.
  freeze(): void {
    for (const { near, far } of this.pairs) {
      near.unpipe().pause();
      far.unpipe().pause();
    }
  }

  end(): void {
    this.server.close();
    for (const { near, far } of this.pairs) {
      near.destroy();
      far.destroy();
    }
  }

  private join(pair: Pair): void {
    const { near, far } = pair;
    this.pairs.add(pair);
    near.pipe(far);
    far.pipe(near);
    for (const socket of [near, far]) {
      socket.on("error", () => socket.destroy());
      socket.on("close", () => this.pairs.delete(pair));
    }
  }
}
