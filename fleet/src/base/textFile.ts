// A text file that is written piece by piece, and takes its name when it is whole. Until then it has a
// name that no other one has: two programs may write for one name at a time.
import { randomBytes } from "node:crypto";
import { open, rename, rm } from "node:fs/promises";
import type { FileHandle } from "node:fs/promises";
import { CannotError, messageOf } from "./failures.js";

const unitsHeldBack = 1 << 16;

export class TextFile {
  private readonly path: string;
  private handle: FileHandle | undefined;
  private held = "";
  private isMade = false;

  // Beside the file that it is written for, which messages are about.
  constructor(private readonly purpose: string) {
    this.path = `${purpose}.${process.pid}-${randomBytes(4).toString("hex")}.new`;
  }

  async write(text: string): Promise<void> {
    this.held += text;
    if (this.held.length >= unitsHeldBack) await this.flush();
  }

  // Whole on the disk, and under its name from now on; what had the name before is replaced.
  async place(): Promise<void> {
    await this.flush();
    await this.tell(async () => {
      await this.handle?.sync();
      await this.close();
      await rename(this.path, this.purpose);
    });
  }

  // Adds all that another file holds, piece by piece.
  async append(other: TextFile): Promise<void> {
    await other.flush();
    await this.tell(async () => {
      const from = await open(other.path);
      try {
        for await (const piece of from.createReadStream({ encoding: "utf8", autoClose: false }))
          await this.write(String(piece));
      } finally {
        await from.close();
      }
    });
  }

  // Nothing is left of it, unless it was placed.
  async discard(): Promise<void> {
    await this.close().catch(() => undefined);
    if (this.isMade) await rm(this.path, { force: true }).catch(() => undefined);
  }

  private async close(): Promise<void> {
    const { handle } = this;
    this.handle = undefined;
    await handle?.close();
  }

  private async flush(): Promise<void> {
    const text = this.held;
    this.held = "";
    await this.tell(async () => {
      this.handle ??= await this.make();
      await this.handle.writeFile(text);
    });
  }

  private async make(): Promise<FileHandle> {
    const handle = await open(this.path, "wx");
    this.isMade = true;
    return handle;
  }

  private async tell(work: () => Promise<void>): Promise<void> {
    try {
      await work();
    } catch (error) {
      if (error instanceof CannotError) throw error;
      throw new CannotError(`'${this.purpose}' cannot be written: ${messageOf(error)}`);
    }
  }
}
