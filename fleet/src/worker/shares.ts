// The workers of the Notes library that all exports of this machine may have together. What an export
// gets depends on what the others have left; its result does not.
export class Shares {
  private taken = 0;
  private running = 0;

  // So many at the most, for so many exports at once; there is one for each.
  constructor(
    private readonly most: number,
    private readonly exports: number,
  ) {}

  // As many as are left up to this number. One is kept for each export that may still begin.
  take(wanted: number): number {
    const kept = this.exports - ++this.running;
    const share = Math.max(1, Math.min(wanted, this.most - this.taken - kept));
    this.taken += share;
    return share;
  }

  giveBack(share: number): void {
    --this.running;
    this.taken -= share;
  }
}
