// What the tests of a file share, and what each has of its own.
import { after, afterEach, before, beforeEach } from "node:test";
import { Fleet } from "./fleet.js";
import { TestServer } from "./postgres.js";

export interface Bed {
  server: TestServer;
  // Of this test alone.
  schema: string;
  fleet: Fleet;
}

// One PostgreSQL for all tests of the file; each test has a schema in it, and gets it here.
export function eachTestHas(take: (bed: Bed) => void, { isPrepared = true } = {}): void {
  let server: TestServer;
  let bed: Bed;
  let schemas = 0;

  before(async () => {
    server = await TestServer.start();
  });

  after(() => {
    server.remove();
  });

  beforeEach(() => {
    // An earlier test may have failed while it was down.
    server.revive();
    const schema = `test${++schemas}`;
    bed = { server, schema, fleet: new Fleet(`${server.url}?schema=${schema}`) };
    if (isPrepared) bed.fleet.do("init");
    take(bed);
  });

  afterEach(async () => {
    await bed.fleet.end();
  });
}
