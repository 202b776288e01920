// What the page shows: a job, or a page of jobs under a filter. It stands in the address behind "#",
// so that a reload shows the same, and a link to a job can be handed on.

const names = ["verdict", "server", "search", "page"] as const;
export type FilterName = (typeof names)[number];

export class View {
  private readonly values: URLSearchParams;

  constructor(hash: string) {
    this.values = new URLSearchParams(hash.replace(/^#/, ""));
  }

  get job(): string {
    return this.values.get("job") ?? "";
  }

  get(name: FilterName): string {
    return this.values.get(name) ?? "";
  }

  parameters(): URLSearchParams {
    const told = new URLSearchParams();
    for (const name of names) if (this.get(name) !== "") told.set(name, this.get(name));
    return told;
  }

  // With another filter the pages are others too.
  with(name: FilterName, value: string): string {
    const told = this.parameters();
    told.delete("page");
    if (value === "") told.delete(name);
    else told.set(name, value);
    return `#${told.toString()}`;
  }
}

export function linkToJob(id: string): string {
  return `#job=${encodeURIComponent(id)}`;
}
