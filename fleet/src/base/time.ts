// Clocks and waiting are a seam: tests have a clock of their own, and wait for nothing.

export interface Clock {
  // Milliseconds since 1970.
  now(): number;
  // Milliseconds that only ever grow.
  ticks(): number;
  // Ends early, without a word, when the signal is given.
  pause(milliseconds: number, signal?: AbortSignal): Promise<void>;
}

function pauseFor(milliseconds: number, signal?: AbortSignal): Promise<void> {
  return new Promise((resolve) => {
    if (signal?.aborted === true) {
      resolve();
      return;
    }
    const end = () => {
      clearTimeout(timer);
      signal?.removeEventListener("abort", end);
      resolve();
    };
    const timer = setTimeout(end, milliseconds);
    signal?.addEventListener("abort", end);
  });
}

export const systemClock: Clock = {
  now: () => Date.now(),
  ticks: () => performance.now(),
  pause: pauseFor,
};

// The promise's value; fails when it takes longer. What was asked goes on, and nobody hears of it.
export async function within<T>(
  clock: Clock,
  milliseconds: number,
  promise: Promise<T>,
): Promise<T> {
  const settled = new AbortController();
  const late = clock.pause(milliseconds, settled.signal).then((): never => {
    throw new Error(`no answer within ${Math.round(milliseconds / 1000)} s`);
  });
  // Ended by the answer it is late all the same, and then nobody's.
  late.catch(() => undefined);
  try {
    return await Promise.race([promise, late]);
  } finally {
    settled.abort();
  }
}

// "90s", "10m", "2h", "1500ms"; a number alone is seconds. Undefined: none of these.
export function parseDuration(text: string): number | undefined {
  const match = /^(\d+)(ms|s|m|h)?$/.exec(text);
  if (match === null) return undefined;
  const units: Record<string, number> = { ms: 1, s: 1000, m: 60_000, h: 3_600_000 };
  return Number(match[1]) * (units[match[2] ?? "s"] ?? 1000);
}
