#!/usr/bin/env python3
"""Checks the user guide as the help window and a browser read it: every page is listed in the
contents, every link and picture points at a file of the guide and an anchor that exists, nothing
is fetched from outside (help is read offline), every page is well-formed enough to parse, and
each entry of the index lands on a heading that names it: the page's title heading, a section
heading, or the first cell of a table row (the row's own heading).

    guide_links_test.py GUIDE_FOLDER
"""
import html.parser
import os
import re
import sys
import urllib.parse

HEADINGS = ("h1", "h2", "h3")
SMALL_WORDS = {"a", "an", "and", "by", "for", "from", "in", "of", "on", "the", "to", "with"}


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.ids, self.links, self.images, self.title, self.stack = set(), [], [], "", []
        self._in_title = False
        # Heading texts: by the id they carry, and the page's first h1.
        self.headings, self.h1, self._open, self._row_start = {}, None, [], False

    def handle_starttag(self, tag, attrs):
        a = dict(attrs)
        if "id" in a:
            self.ids.add(a["id"])
        if tag == "tr":
            self._row_start = True
        elif tag in HEADINGS or (tag in ("td", "th") and self._row_start):
            self._open.append([tag, a.get("id"), ""])
        if tag in ("td", "th"):
            self._row_start = False
        if tag == "tr" and "id" in a:
            self.links.append(("<tr id> (the help window cannot jump to a table row)", a["id"]))
        if tag == "a" and "href" in a:
            self.links.append(("a", a["href"]))
        if tag == "link" and "href" in a:
            self.links.append(("link", a["href"]))
        if tag == "img":
            self.images.append(a.get("src", ""))
        self._in_title = tag == "title"

    def handle_data(self, data):
        if self._in_title:
            self.title += data
        for heading in self._open:
            heading[2] += data

    def handle_endtag(self, tag):
        self._in_title = False
        if self._open and self._open[-1][0] == tag:
            kind, anchor, text = self._open.pop()
            text = " ".join(text.split())
            if kind == "h1" and self.h1 is None:
                self.h1 = text
            if anchor:
                self.headings[anchor] = text


def words(text):
    """The words that name something: lower case, singular, without parenthesised asides."""
    out = []
    for w in re.findall(r"[a-z0-9]+", re.sub(r"\([^)]*\)", " ", text.lower())):
        if w in SMALL_WORDS:
            continue
        if w.endswith("ies"):
            w = w[:-3] + "y"
        elif re.search(r"(x|s|ch|sh)es$", w):
            w = w[:-2]
        elif w.endswith("s") and not w.endswith("ss"):
            w = w[:-1]
        out.append(w)
    return out


def heading_names(heading, keyword):
    """Every word of the keyword stands in the heading (words of five letters or more may differ
    in their ending: "customised" names "Customized", "crossing" names "cross")."""
    same = lambda a, b: a[:5] == b[:5] if min(len(a), len(b)) >= 5 else a == b
    return all(any(same(k, h) for h in words(heading)) for k in words(keyword))


class IndexEntries(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.entries, self._href, self._text = [], None, ""

    def handle_starttag(self, tag, attrs):
        if tag == "a":
            self._href, self._text = dict(attrs).get("href"), ""

    def handle_data(self, data):
        if self._href is not None:
            self._text += data

    def handle_endtag(self, tag):
        if tag == "a" and self._href is not None:
            self.entries.append((" ".join(self._text.split()), self._href))
            self._href = None


def main(folder):
    names = sorted(n for n in os.listdir(folder) if n.endswith(".html"))
    pages = {}
    for name in names:
        page = Page()
        with open(os.path.join(folder, name), encoding="utf-8") as f:
            page.feed(f.read())
        pages[name] = page

    faults = []
    for name, page in pages.items():
        if not page.title.strip():
            faults.append(f"{name}: no title")
        for kind, href in page.links:
            if kind.startswith("<tr"):
                faults.append(f"{name}: {kind}: {href}")
                continue
            url = urllib.parse.urlsplit(href)
            if url.scheme or url.netloc:
                faults.append(f"{name}: outside link {href}")
                continue
            target = url.path or name
            if not os.path.isfile(os.path.join(folder, target)):
                faults.append(f"{name}: link to missing {target}")
            elif url.fragment and url.fragment not in pages.get(target, Page()).ids:
                faults.append(f"{name}: link to missing anchor {href}")
        for src in page.images:
            if urllib.parse.urlsplit(src).scheme or not os.path.isfile(os.path.join(folder, src)):
                faults.append(f"{name}: picture {src!r} is not a file of the guide")

    listed = {urllib.parse.urlsplit(h).path for k, h in pages["index.html"].links if k == "a"}
    for name in names:
        if name != "index.html" and name not in listed:
            faults.append(f"{name}: not in the contents")
    if not any(k == "a" for k, _ in pages.get("keywords.html", Page()).links):
        faults.append("keywords.html: the index has no entries")
    index = IndexEntries()
    with open(os.path.join(folder, "keywords.html"), encoding="utf-8") as f:
        index.feed(f.read())
    for keyword, href in index.entries:
        url = urllib.parse.urlsplit(href)
        if url.path == "index.html" or url.path not in pages:
            continue  # the way back to the contents; a missing page is reported above
        page = pages[url.path]
        heading = page.headings.get(url.fragment) if url.fragment else page.h1
        if heading is None:
            faults.append(f"keywords.html: {keyword!r} lands on {href}, which is no heading")
        elif not heading_names(heading, keyword):
            faults.append(f"keywords.html: {keyword!r} lands on {href}, headed {heading!r}")

    for fault in faults:
        print(fault)
    print(f"{len(names)} pages, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
