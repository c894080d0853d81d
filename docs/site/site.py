"""Makes the pages of the reference."""

import argparse
import json
import re
import shutil
import subprocess
import tomllib
from pathlib import Path

import jinja2
from markupsafe import Markup

import headers
import markup
from pictures import Gallery
from program import Program

HERE = Path(__file__).parent
GUIDES = (("first-program", "Your first program"), ("areas", "Areas and masks"),
          ("colour-reduction", "Colour reduction: which one"), ("progress", "Progress and cancelling"),
          ("threads", "Threads and memory"), ("moving", "Moving an old application over"),
          ("exactness", "Exactness: what is promised"))
# The pages of the companion libraries are a header each.
HEADER_PAGES = {"qv8com.h": ("companion", "Companion"), "qv8platform.h": ("platform", "Platform"),
                "qv8version.h": ("version", "Version")}

RETURNS = {
    "HGLOBAL": "A new picture, which the caller frees with GlobalFree, or 0. What is passed in stays the caller's and is "
               "not changed.",
    "ImageSet": "A new picture and its mask, both of which the caller frees with GlobalFree, or {0, 0}. What is passed "
                "in stays the caller's and is not changed.",
    "QV8BOOL": "1, or 0 on failure. The picture and the mask that are stored are new; the caller frees both with "
               "GlobalFree. What is passed in stays the caller's and is not changed.",
}


class Site:
    def __init__(self, options):
        self.out = Path(options.out)
        self.out.mkdir(parents=True, exist_ok=True)
        self.program = Program(options.qv8)
        self.headers = headers.read_headers(options.xml)
        self.data = tomllib.loads((HERE / "examples.toml").read_text())
        self.gallery = Gallery(self.program, options.samples, self.out)
        self.programs = Path(options.programs)
        self.index = []
        self.addresses = self._addresses()
        self.environment = jinja2.Environment(loader=jinja2.FileSystemLoader(HERE / "templates"), autoescape=True,
                                              undefined=jinja2.StrictUndefined, trim_blocks=True, lstrip_blocks=True)
        self.environment.filters.update(text=self.text, limits=self.limits, words=self.words, linked=self.linked)

    def _addresses(self):
        pages = {page["family"]: page["address"] for page in self.data["page"]}
        addresses = {}
        for header in self.headers.values():
            for function in header.functions:
                page = HEADER_PAGES.get(header.name, (None,))[0] or pages[self.family(function)]
                addresses[function.name] = f"{page}.html#{function.name}"
        return addresses

    def family(self, function):
        return self.program.effect_of(function.name)["family"]

    # What templates call.

    def linked(self, text):
        """HTML in which the names of functions lead to them."""
        names = "|".join(sorted(self.addresses, key=len, reverse=True))
        return Markup(re.sub(rf"\b({names})\b(?![^<]*>)", lambda m: f'<a href="{self.addresses[m[1]]}">{m[1]}</a>', text))

    def words(self, element):
        return self.linked(markup.render(element, markup.HTML))

    def text(self, parameter):
        return self.linked(parameter.text(markup.HTML))

    def limits(self, parameter):
        return Markup(parameter.limits(markup.HTML))

    # Pages.

    def write(self, address, template, title, **values):
        page = self.environment.get_template(template).render(
            title=title, address=address, families=self.data["page"], guides=GUIDES, version=self.program.version,
            header_pages=HEADER_PAGES.values(), **values)
        (self.out / f"{address}.html").write_text(page)

    def note(self, title, address, words):
        """Makes something known to the search field."""
        self.index.append({"title": title, "address": address, "words": " ".join(words.split())})

    def entry(self, function, header):
        effect = self.program.effect_of(function.name)
        self.note(function.name, self.addresses[function.name],
                  " ".join([effect["name"] if effect else "", effect["help"] if effect else "",
                            markup.render(function.brief, markup.PLAIN), *function.names()]))
        described = {name for parameter in function.documented for name in parameter.names}
        shared = [parameter for section in header.sections for parameter in section.parameters
                  if not described & set(parameter.names) and set(parameter.names) & set(function.names())]
        shared.sort(key=lambda parameter: function.names().index(parameter.names[0]))
        twin = effect and effect["twin"] == function.name
        made = [] if effect is None or twin else self.data["examples"].get(effect["name"], [])
        return {"function": function, "effect": effect, "shared": shared, "is_twin": twin,
                "returns": function.section("return"), "rule": RETURNS.get(function.returns, ""),
                "statuses": function.section("par", "Statuses"),
                "examples": [self.gallery.example(*example) for example in made],
                "instead": Markup(self.data["words"].get(function.name, ""))}

    def families(self):
        library = self.headers["qv8effect.h"]
        for example in self.data["prepared"]:
            self.gallery.example(example["command"], example["shows"])
        pages = []
        for page in self.data["page"]:
            members = [f for f in library.functions if self.family(f) == page["family"]]
            pages.append((page, [self.entry(function, library) for function in members]))
            self.note(page["family"], f"{page['address']}.html", page["about"])
        return pages

    def reductions(self, sample):
        rows = []
        original = f"{sample}.png"
        for number, reduction in enumerate(self.data["reduction"], 1):
            output = f"{sample}-reduced-{number}.png"
            example = self.gallery.example(f"convert-color {reduction['options']} {original} {output}",
                                           f"{sample}: {reduction['name']}")
            rows.append({**reduction, "example": example, "psnr": self.gallery.psnr(output, original)})
        return {"sample": sample, "original": self.gallery.picture(original), "rows": rows}

    def guides(self):
        sources = {path.name: path.read_text() for path in sorted((HERE / "programs").iterdir())}
        outputs = {name: subprocess.run([self.programs / name.replace(".", "_")], check=True, capture_output=True,
                                        text=True).stdout for name in sources}
        areas = [self.gallery.example(*example) for example in (
            ("chroma --amount -100 --ellipse 40,20,220,210 portrait.png area-ellipse.png", "grey inside an ellipse"),
            ("chroma --amount -100 --polygon 20,280 120,20 240,280 portrait.png area-polygon.png", "grey in a polygon"),
            ("auto-select-image --colour 60,110,180 --tolerance 40 --mask-out sky.png landscape.png box.png",
             "the picture of the area, here the whole"),
            ("rgb-level --red 60 --mask sky.png landscape.png red-sky.png", "a red sky and its mirror image, through that mask"))]
        values = {"first-program": {"sources": sources, "outputs": outputs}, "areas": {"examples": areas},
                  "colour-reduction": {"samples": [self.reductions(name) for name in ("landscape", "portrait")]},
                  "progress": {"sources": sources, "outputs": outputs}}
        for address, title in GUIDES:
            self.write(address, f"{address}.html", title, **values.get(address, {}))
            self.note(title, f"{address}.html", "guide " + address.replace("-", " "))

    def build(self):
        pages = self.families()
        for page, entries in pages:
            self.write(page["address"], "family.html", page["family"], page=page, entries=entries,
                       about=self.headers["qv8effect.h"].groups[page["family"]])
        for name, (address, title) in HEADER_PAGES.items():
            header = self.headers[name]
            self.write(address, "header.html", title, header=header,
                       entries=[self.entry(function, header) for function in header.functions])
        library = self.headers["qv8effect.h"]
        self.write("conventions", "conventions.html", "Conventions", header=library)
        for section in library.sections:
            self.note(section.title, f"conventions.html#{section.identity}", markup.render(section.element, markup.PLAIN))
        self.guides()
        self.write("index", "index.html", "Qv8Effect", pages=pages, count=len(library.functions))
        (self.out / "search-index.js").write_text("const INDEX = " + json.dumps(self.index) + ";\n")
        for name in ("style.css", "site.js"):
            shutil.copy(HERE / name, self.out)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("--xml", "--qv8", "--samples", "--programs", "--out"):
        parser.add_argument(name, required=True)
    Site(parser.parse_args()).build()


if __name__ == "__main__":
    main()
