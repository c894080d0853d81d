"""Tells which links and pictures of the pages lead nowhere, and which pictures have no words in their place."""

import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit


class Page(HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links, self.names, self.mistakes = [], set(), []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if "id" in values:
            if values["id"] in self.names:
                self.mistakes.append(f"id {values['id']} stands there twice")
            self.names.add(values["id"])
        if tag == "img" and "alt" not in values:
            self.mistakes.append(f"{values.get('src')} has no text in its place")
        self.links += [values[name] for name in ("href", "src") if values.get(name)]


def problems(folder):
    pages = {path.name: Page(path.read_text()) for path in sorted(Path(folder).glob("*.html"))}
    for name, page in pages.items():
        yield from (f"{name}: {mistake}" for mistake in page.mistakes)
        for link in page.links:
            parts = urlsplit(link)
            if parts.scheme == "data":
                continue
            target = unquote(parts.path) or name
            if parts.scheme or not (Path(folder) / target).is_file():
                yield f"{name}: {link} leads nowhere"
            elif parts.fragment and target in pages and parts.fragment not in pages[target].names:
                yield f"{name}: {link}: there is no such place on that page"
    print(f"links: {len(pages)} pages, {sum(len(page.links) for page in pages.values())} links and pictures")


def main():
    found = list(problems(sys.argv[1]))
    sys.exit("\n".join(found) if found else 0)


if __name__ == "__main__":
    main()
