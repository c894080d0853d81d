"""The examples as they stand. QV8_EXAMPLES is their folder."""

import os
import re
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import qv8

EXAMPLES = Path(os.environ["QV8_EXAMPLES"])
CHAIN = "sharp --strength 30 | resize --scale 0.5 --smooth"


def make_pictures(folder, count):
    """Pictures that all differ, and what becomes of them."""
    folder.mkdir()
    noise = np.random.default_rng(1).integers(0, 256, (200, 300, 3), np.uint8)
    recipe = qv8.Recipe(CHAIN)
    expected = {}
    for number in range(count):
        name = folder / f"{number:03}.png"
        qv8.write(name, np.roll(noise, number), sync=False)
        expected[name.name] = recipe(np.roll(noise, number))
    return expected


def run(name, *words):
    done = subprocess.run([sys.executable, EXAMPLES / name, *words], capture_output=True, text=True, check=False, timeout=120)
    print(done.stdout, done.stderr)
    return done


def check_results(folder, expected):
    assert sorted(os.listdir(folder)) == sorted(expected)
    for name, pixels in expected.items():
        assert np.array_equal(qv8.read(folder / name), pixels)


def test_every_picture_is_done_once_though_a_worker_is_killed(tmp_path):
    pytest.importorskip("distributed")
    expected = make_pictures(tmp_path / "in", 200)
    done = run("dask_pictures.py", CHAIN, tmp_path / "out", *sorted((tmp_path / "in").iterdir()), "--kill")
    assert done.returncode == 0
    assert re.search(r"killed \d+ after 50 pictures", done.stdout)
    assert "200 of 200 pictures" in done.stdout
    check_results(tmp_path / "out", expected)


def test_one_broken_picture_does_not_stop_the_others(tmp_path):
    expected = make_pictures(tmp_path / "in", 20)
    (tmp_path / "in" / "broken.png").write_bytes(b"\x89PNG")
    done = run("futures_pictures.py", CHAIN, tmp_path / "out", *sorted((tmp_path / "in").iterdir()))
    assert done.returncode == 5 and "core-hours" in done.stdout and "broken.png" in done.stderr
    check_results(tmp_path / "out", expected)


def test_the_sheet_is_drawn(tmp_path):
    pytest.importorskip("matplotlib")
    assert run("plot_effects.py", os.environ["QV8_SAMPLE"], tmp_path / "sheet.png").returncode == 0
    width, height = qv8.read(tmp_path / "sheet.png").size
    assert width > 1000 and height > 900
