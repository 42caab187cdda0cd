#!/usr/bin/env python3
"""Checks the user guide as the help window and a browser read it: every page is listed in the
contents, every link and picture points at a file of the guide and an anchor that exists, nothing
is fetched from outside (help is read offline), and every page is well-formed enough to parse.

    guide_links_test.py GUIDE_FOLDER
"""
import html.parser
import os
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.ids, self.links, self.images, self.title, self.stack = set(), [], [], "", []
        self._in_title = False

    def handle_starttag(self, tag, attrs):
        a = dict(attrs)
        if "id" in a:
            self.ids.add(a["id"])
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

    def handle_endtag(self, tag):
        self._in_title = False


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

    for fault in faults:
        print(fault)
    print(f"{len(names)} pages, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
