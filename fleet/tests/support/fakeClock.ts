// A clock that stands until a test moves it. Pauses end when it comes there.
import type { Clock } from "../../src/base/time.js";

interface Pause {
  at: number;
  end: () => void;
}

export class FakeClock implements Clock {
  private time = 1_000_000;
  private pauses: Pause[] = [];

  now(): number {
    return this.time;
  }

  ticks(): number {
    return this.time;
  }

  pause(milliseconds: number, signal?: AbortSignal): Promise<void> {
    return new Promise((resolve) => {
      if (signal?.aborted === true) {
        resolve();
        return;
      }
      const pause = { at: this.time + milliseconds, end: resolve };
      this.pauses.push(pause);
      signal?.addEventListener("abort", () => {
        this.pauses = this.pauses.filter((other) => other !== pause);
        resolve();
      });
    });
  }

  // As when the machine stood still: nothing happens on the way.
  jump(milliseconds: number): void {
    this.time += milliseconds;
  }

  // In steps, so that what a pause leads to happens in its time.
  async advance(milliseconds: number): Promise<void> {
    for (const end = this.time + milliseconds; this.time < end;) {
      this.time = Math.min(end, this.time + 100);
      const due = this.pauses.filter(({ at }) => at <= this.time);
      this.pauses = this.pauses.filter(({ at }) => at > this.time);
      for (const pause of due) pause.end();
      await settle();
    }
  }
}

// All that follows from what happened has happened.
export async function settle(): Promise<void> {
  for (let turn = 0; turn < 3; ++turn)
    await new Promise((resolve) => {
      setImmediate(resolve);
    });
}
