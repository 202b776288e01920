// The largest database first: begun last, it would be waited for alone.

// The queue takes 1 (first) to 2,097,151 (last).
const last = 2_097_151;
const stepsOfDoubling = 43_000;

export function priorityOf(bytes: number | null): number {
  if (bytes === null || !Number.isFinite(bytes) || bytes <= 0) return last;
  return Math.max(1, Math.round(last - stepsOfDoubling * Math.log2(bytes + 1)));
}
