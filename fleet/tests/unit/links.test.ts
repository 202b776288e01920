// Where a page's links to folders lead.
import assert from "node:assert/strict";
import { describe, test } from "node:test";
import { fileURLToPath } from "node:url";
import { html } from "../../src/report/html.js";
import { fileUrl, isBelow, Links, relativeLink } from "../../src/report/links.js";

describe("the address of a path", () => {
  const addresses: [string, string | undefined][] = [
    ["D:\\export\\a b.nsf", "file:///D:/export/a%20b.nsf"],
    [
      "\\\\store\\export$\\Mill_Example\\50%#?.nsf",
      "file://store/export%24/Mill_Example/50%25%23%3F.nsf",
    ],
    ["//store/export/Z\u00FCrich.nsf", "file://store/export/Z%C3%BCrich.nsf"],
    ["\\\\?\\D:\\export\\a.nsf", "file:///D:/export/a.nsf"],
    ["\\\\?\\UNC\\store\\export\\a.nsf", "file://store/export/a.nsf"],
    ["/srv/export/a;b.nsf", "file:///srv/export/a%3Bb.nsf"],
    ["D:\\half \uD83D of a sign", "file:///D:/half%20%EF%BF%BD%20of%20a%20sign"],
    ["export\\a.nsf", undefined],
    ["D:export\\a.nsf", undefined],
  ];
  for (const [path, address] of addresses)
    test(path.toWellFormed(), () => {
      assert.equal(fileUrl(path), address);
    });
});

describe("a link from a page", () => {
  const links: [string, string, string, string, string | undefined][] = [
    ["in the root", "D:\\out", "D:\\out", "D:\\out\\M\\a b.nsf", "M/a%20b.nsf"],
    ["below the root", "D:\\OUT\\pages", "d:/out", "d:/out/M\\a.nsf", "../M/a.nsf"],
    ["beside the root", "D:\\", "D:\\out", "D:\\out\\M\\a.nsf", "out/M/a.nsf"],
    ["on a share", "\\\\store\\x\\p", "\\\\STORE\\x", "\\\\STORE\\x\\M\\a.nsf", "../M/a.nsf"],
    ["elsewhere", "D:\\pages", "D:\\out", "D:\\out\\M\\a.nsf", undefined],
    ["on another disk", "C:\\out", "D:\\out", "D:\\out\\M\\a.nsf", undefined],
    ["on another share", "\\\\store\\y", "\\\\store\\x", "\\\\store\\x\\a.nsf", undefined],
    ["of a folder that begins with dots", "/out/..p", "/out", "/out/M/a.nsf", "../M/a.nsf"],
    ["of another system", "/out", "D:\\out", "D:\\out\\M\\a.nsf", undefined],
  ];
  for (const [where, folder, root, target, link] of links)
    test(where, () => {
      assert.equal(relativeLink(folder, root, target), link);
    });
});

describe("what lies below the root", () => {
  const places: [string, string, boolean][] = [
    ["D:\\out", "D:\\out\\M\\a.nsf", true],
    ["D:\\out\\", "d:/OUT/M/a.nsf.attempt-1", true],
    ["\\\\store\\x", "\\\\?\\UNC\\store\\x\\M\\a.nsf", true],
    ["/srv/out", "/srv/out\\M\\..a.nsf", true],
    ["D:\\out", "D:\\out", false],
    ["D:\\out", "D:\\outside\\a.nsf", false],
    ["D:\\out", "D:\\out\\..\\other", false],
    ["D:\\out", "E:\\out\\a.nsf", false],
    ["D:\\out", "\\\\evil\\out\\a.nsf", false],
    ["\\\\store\\x", "\\\\evil\\x\\a.nsf", false],
    ["/srv/out", "/srv/out\\..\\..\\etc", false],
    ["/srv/out", "\\\\evil\\x", false],
    ["/srv/out", "", false],
  ];
  for (const [root, target, isThere] of places)
    test(`${root} has ${isThere ? "" : "not "}${target}`, () => {
      assert.equal(isBelow(root, target), isThere);
    });

  test("is alone linked to", async () => {
    const folder = fileURLToPath(new URL(".", import.meta.url));
    const [root, inside, outside] = [`${folder}unit`, `${folder}unit/a`, `${folder}links.test.js`];
    const links = new Links(`${folder}page.html`, []);
    assert.equal(links.to(root, inside), "unit/a");
    assert.equal(links.to(root, outside), undefined);
    assert.equal(await links.toFirst(folder, [outside]), "links.test.js");
    assert.equal(await links.toFirst(`${folder}../unit/`, [`${folder}../support`]), undefined);
  });
});

test("no text is taken for a piece of the page", () => {
  assert.equal(
    html("<b a=\"1\" c='2'>&\t\r\n\u0000\u009F\uFFFF\uD800z\u{1F426}"),
    "&lt;b a=&quot;1&quot; c=&#39;2&#39;&gt;&amp;   \uFFFD\uFFFD\uFFFD\uFFFDz\u{1F426}",
  );
});
