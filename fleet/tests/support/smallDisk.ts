// A small volume in memory that a test fills to the last byte. It needs the rights of root.
import { execFileSync } from "node:child_process";
import {
  chmodSync,
  chownSync,
  closeSync,
  fstatSync,
  ftruncateSync,
  openSync,
  rmSync,
  statSync,
  writeSync,
} from "node:fs";
import { join } from "node:path";
import { codeOf } from "../../src/base/failures.js";

function mounted(folder: string, megabytes: number): boolean {
  try {
    const words = ["-t", "tmpfs", "-o", `size=${megabytes}m`, "tmpfs", folder];
    execFileSync("mount", words, { stdio: "ignore" });
    return true;
  } catch {
    return false;
  }
}

export class SmallDisk {
  private constructor(private readonly folder: string) {}

  // On an empty folder, which keeps its owner and rights. Undefined: none can be made here.
  static mount(folder: string, megabytes: number): SmallDisk | undefined {
    const { uid, gid, mode } = statSync(folder);
    if (!mounted(folder, megabytes)) return undefined;
    chownSync(folder, uid, gid);
    chmodSync(folder, mode & 0o7777);
    return new SmallDisk(folder);
  }

  // So many bytes are left; with none nothing can be written but into files that are there.
  fill(leave = 0): void {
    const file = openSync(this.ballast, "a");
    try {
      for (const bytes of [Buffer.alloc(1 << 20), Buffer.alloc(1 << 12)]) writeAll(file, bytes);
      ftruncateSync(file, Math.max(0, fstatSync(file).size - leave));
    } finally {
      closeSync(file);
    }
  }

  free(): void {
    rmSync(this.ballast, { force: true });
  }

  unmount(): void {
    execFileSync("umount", ["--lazy", this.folder]);
  }

  private get ballast(): string {
    return join(this.folder, "ballast");
  }
}

function writeAll(file: number, bytes: Buffer): void {
  try {
    for (;;) writeSync(file, bytes);
  } catch (error) {
    if (codeOf(error) !== "ENOSPC") throw error;
  }
}
