"""The user pages of a release, as Markdown and as HTML.

A link to a page that is not among them becomes its text. cmark-gfm makes the HTML; headings get the
names that links use, and links between pages lead to the HTML.
"""

import html
import pathlib
import posixpath
import re
import subprocess

PAGES = ("FIRST-RUN.md", "README.md", "CHANGELOG.md", "docs/bags.md", "docs/batch-events.md",
         "docs/calling.md", "docs/console.md", "docs/events.md", "docs/listings.md",
         "docs/messages.md", "docs/output.md", "docs/performance.md", "docs/views.md")

LINK = re.compile(r"(!?)\[([^\]]*)\]\(([^)\s]+)\)")
HEADING = re.compile(r"<h([1-6])>(.*?)</h\1>", re.DOTALL)
REFERENCE = re.compile(r'href="([^":#]+)\.md(#[^"]*)?"')

FRAME = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{title}</title>
<style>
:root {{ color-scheme: light dark; }}
body {{ font: 16px/1.5 "Segoe UI", sans-serif; max-width: 60rem; margin: 2rem auto; padding: 0 1rem; }}
pre, code {{ font-family: Consolas, "DejaVu Sans Mono", monospace; font-size: 0.9em; }}
pre {{ overflow-x: auto; padding: 0.75rem; border: 1px solid #8888; }}
table {{ border-collapse: collapse; }}
th, td {{ border: 1px solid #8888; padding: 0.25rem 0.5rem; text-align: left; vertical-align: top; }}
img {{ max-width: 100%; }}
</style>
</head>
<body>
{body}</body>
</html>
"""


def write_pages(root, folder, pages=PAGES):
    for page in pages:
        text = _without_links_out((root / page).read_text(encoding="utf-8"), page, pages)
        target = folder / page
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")
        target.with_suffix(".html").write_text(_as_html(text), encoding="utf-8")
        for name in _files_beside(text, page):
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            (folder / name).write_bytes((root / name).read_bytes())


def _target(page, link):
    """The file that a link of a page leads to, from the root; empty: the page itself, or abroad."""
    path = link.partition("#")[0]
    if not path or "://" in link:
        return ""
    return posixpath.normpath(posixpath.join(posixpath.dirname(page), path))


def _without_links_out(text, page, pages):
    def keep_or_tell(match):
        target = _target(page, match[3])
        return match[2] if target.endswith(".md") and target not in pages else match[0]
    return LINK.sub(keep_or_tell, text)


def _files_beside(text, page):
    """The pictures and schemas that a page links to."""
    targets = {_target(page, match[3]) for match in LINK.finditer(text)}
    return sorted(target for target in targets if target and pathlib.Path(target).suffix != ".md")


def _as_html(text):
    body = subprocess.run(["cmark-gfm", "--extension", "table"], input=text, check=True,
                          capture_output=True, encoding="utf-8").stdout
    seen = {}
    body = HEADING.sub(lambda match: _named_heading(match, seen), body)
    body = REFERENCE.sub(lambda match: f'href="{match[1]}.html{match[2] or ""}"', body)
    title = html.escape(text.partition("\n")[0].lstrip("# "))
    return FRAME.format(title=title, body=body)


def _named_heading(match, seen):
    text = html.unescape(re.sub(r"<[^>]*>", "", match[2])).lower()
    name = re.sub(r"[^a-z0-9 _-]", "", text).replace(" ", "-")
    seen[name] = seen.get(name, -1) + 1
    if seen[name]:
        name = f"{name}-{seen[name]}"
    return f'<h{match[1]} id="{name}">{match[2]}</h{match[1]}>'
