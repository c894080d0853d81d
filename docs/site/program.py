"""What the command line tells about itself: effects with their parameters, commands with their options."""

import json
import subprocess


class Program:
    def __init__(self, path):
        text = subprocess.run([path, "effects", "--json"], check=True, capture_output=True, text=True).stdout
        self.path = path
        self.__dict__.update(json.loads(text))  # version, help, footer, options, effects, commands

    def effect_of(self, function):
        """The effect that stands for an export, or None."""
        return next((e for e in self.effects if function in (e["function"], e["twin"])), None)

    def families(self):
        return list(dict.fromkeys(effect["family"] for effect in self.effects))

    def command(self, name):
        return next((c for c in self.commands if c["name"] == name), None)
