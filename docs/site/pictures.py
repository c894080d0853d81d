"""Pictures of the reference: each is made by the command line that is shown beside it."""

import math
import shlex
import subprocess
from dataclasses import dataclass
from pathlib import Path

FOLDER = "pictures"
SAMPLES = ("landscape", "portrait")
WIDTH = 400  # of the samples as the pages show them


@dataclass
class Picture:
    name: str
    text: str  # in place of the picture, for those who do not see it
    width: int
    height: int
    size: int  # of the file

    @property
    def address(self):
        return f"{FOLDER}/{self.name}"


@dataclass
class Example:
    before: list[Picture]
    after: Picture
    masks: list[Picture]
    command: str
    shows: str


class Gallery:
    def __init__(self, program, samples, out):
        self.program = program
        self.folder = Path(out) / FOLDER
        self.folder.mkdir(parents=True, exist_ok=True)
        self.texts = {"landscape.png": "a lake before mountains, with a red hut, fir trees and a sunny sky",
                      "portrait.png": "a made portrait of a woman beside a chart of letters, lines and colours"}
        for name in SAMPLES:
            self.run(["resize", "--width", str(WIDTH), "--smooth", "--force", f"{Path(samples).resolve()}/{name}.png",
                      f"{name}.png"])

    def run(self, words):
        done = subprocess.run([Path(self.program.path).resolve(), *words], cwd=self.folder, capture_output=True,
                              text=True)
        if done.returncode != 0:
            raise SystemExit(f"qv8 {shlex.join(words)}\n{done.stderr}")
        return done.stdout

    def picture(self, name):
        data = (self.folder / name).read_bytes()
        width, height = (int.from_bytes(data[at:at + 4], "big") for at in (16, 20))  # as PNG has them
        return Picture(name, self.texts.get(name, ""), width, height, len(data))

    def example(self, command, shows):
        words = shlex.split(command)
        output = words[-1]
        before = [word for word in words[1:-1] if word.endswith(".png") and word in self.texts]
        self.run([words[0], "--force", *words[1:]])
        self.texts[output] = shows
        masks = [words[at + 1] for at, word in enumerate(words) if word == "--mask-out"]
        self.texts.update({mask: f"black and white mask: {shows}" for mask in masks})
        return Example([self.picture(name) for name in before], self.picture(output),
                       [self.picture(mask) for mask in masks], "qv8 " + command, shows)

    def pixels(self, name):
        """The rows of a picture in 24 bits, without their header."""
        self.run(["run", "convert-color --depth 24", "-o", "pixels.bmp", name])
        data = (self.folder / "pixels.bmp").read_bytes()
        (self.folder / "pixels.bmp").unlink()
        return data[int.from_bytes(data[10:14], "little"):]

    def psnr(self, name, original):
        """Peak signal to noise ratio in decibels: the higher, the nearer to the original; from 40 on hard to tell."""
        one, other = self.pixels(name), self.pixels(original)
        error = sum((a - b) ** 2 for a, b in zip(one, other)) / len(other)
        return 10 * math.log10(255 ** 2 / error) if error else math.inf
