"""The module beside the command line, and what arrays bring with them. QV8 is the program, QV8_SAMPLE a picture."""

import ast
import gc
import inspect
import os
import pickle
import signal
import subprocess
import sys
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import pytest
from PIL import Image as Pillow

import qv8
from qv8._native import describe

QV8 = os.environ["QV8"]
SAMPLE = os.environ["QV8_SAMPLE"]
EFFECTS = {effect["name"]: effect for effect in describe()}


def picture(channels=3, width=61, height=43):
    """Part of the sample, with a level of its own for each channel, and alpha."""
    pixels = np.asarray(qv8.read(SAMPLE))[100:100 + height, 200:200 + width]
    if channels == 1:
        return np.ascontiguousarray(pixels[:, :, 1])
    alpha = (np.arange(width * height).reshape(height, width, 1) % 255 + 1).astype(np.uint8)
    return np.ascontiguousarray(pixels) if channels == 3 else np.concatenate([pixels, alpha], axis=2)


PASTED = picture(width=30, height=20)
MASK = np.indices((43, 61)).sum(axis=0) % 7 < 3
SMALL_MASK = MASK[:20, :30]

# What each effect is called with, where it is not its defaults. Several rows for one effect are separate calls.
CALLS = [
    ("rgb-gamma", {"red": -0.5, "blue": 0.25}),
    ("rgb-level", {"red": 40, "green": -30}),
    ("rgb-rev", {"green": True}),
    ("ycc-gamma", {"y": -0.7, "cr": 0.1}),
    ("ycc-level", {"y": 10, "cb": 20}),
    ("chroma", {"amount": 80}),
    *[("convert-color", {"depth": depth, "dither": True}) for depth in EFFECTS["convert-color"]["parameters"][0]["choices"]],
    ("custom-filter", {"kernel": "gauss"}),
    ("sharp", {"strength": 70}),
    ("select-image", {"background": (1, 2, 3)}),
    ("auto-select-image", {"colour": (90, 120, 150), "match": "colour"}),
    ("layer", {"layer": PASTED, "x": 50, "y": -5, "opacity": 100}),
    ("paste-image", {"pasted": PASTED, "mask": SMALL_MASK, "angle": 30.5, "x": 30, "y": 20}),
    ("panorama", {"added": PASTED, "a1": (40, 5), "a2": (42, 35), "b1": (5, 3), "b2": (6, 17)}),
    ("rotation", {"angle": -33.25, "smooth": True, "background": (9, 8, 7)}),
    ("rotation", {"angle": 90, "mask": MASK}),
    ("resize", {"scale": 0.5, "smooth": True}),
    ("resize", {"width": 40, "mask": MASK}),
    ("affine", {"corners": ((5, 3), (50, 6), (55, 40), (2, 36))}),
    ("create-image", {"width": 20, "height": 10, "colour": (200, 100, 50)}),
    ("set-secret-image", {"picture": SMALL_MASK, "strength": 9}),
    ("set-secret-image", {"text": "hidden\\nmark", "strength": 9}),
    ("check-secret-image", {"marked": picture()[::-1]}),
]
CALLS += [(name, {}) for name in EFFECTS if name not in dict(CALLS)]
AREAS = {
    "ellipse": (qv8.Ellipse(5, 8, 50, 40), ["--ellipse", "5,8,50,40"]),
    "polygon": (~qv8.Polygon([(3, 4), (55, 10), (20, 41)]), ["--polygon", "3,4", "55,10", "20,41", "--outside"]),
    "mask": (MASK, ["--mask", MASK]),
    "no-mask": (qv8.Mask(MASK, outside=True), ["--mask", MASK, "--outside"]),
}


def as_word(value, folder):
    """A value of Python as the command line has it."""
    if isinstance(value, np.ndarray):
        name = folder / f"{id(value)}.png"
        Pillow.fromarray(value).save(name)
        return str(name)
    if isinstance(value, tuple):
        return (" " if isinstance(value[0], tuple) else ",").join(as_word(item, folder) for item in value)
    return str(value)


def run_command_line(name, image, values, area_words, folder):
    """What the command line makes of it: arrays, or nothing where it refuses."""
    words = [QV8, name] + ([as_word(image, folder)] if image is not None else [])
    for key, value in values.items():
        words += [f"--{key}"] if value is True else [f"--{key}={as_word(value, folder)}"]
    words += [as_word(word, folder) for word in area_words] + ["-o", str(folder / "out.png")]
    has_mask = EFFECTS[name]["gives_mask"] == "always" or (EFFECTS[name]["gives_mask"] == "with mask" and "mask" in values)
    words += ["--mask-out", str(folder / "mask.png")] if has_mask else []
    if subprocess.run(words, capture_output=True, check=False).returncode != 0:
        return None
    result = Pillow.open(folder / "out.png")
    pixels = np.asarray(result.convert({"P": "RGB", "1": "L"}.get(result.mode, result.mode)))
    if result.mode == "P" and (pixels == pixels[:, :, :1]).all():
        pixels = pixels[:, :, 0]
    return (pixels, np.asarray(Pillow.open(folder / "mask.png"))) if has_mask else (pixels,)


def run_python(name, image, values, **more):
    """Arrays, or nothing where it is refused."""
    function = getattr(qv8, name.replace("-", "_"))
    try:
        result = function(*([image] if image is not None else []), **values, **more)
    except qv8.Error:
        return None
    results = result if isinstance(result, tuple) else (result,)
    return tuple(part.array() if isinstance(part, qv8.Image) else part for part in results)


def same(ours, theirs):
    return (ours is None) == (theirs is None) and (ours is None or len(ours) == len(theirs) and all(
        a.dtype == b.dtype and a.shape == b.shape and np.array_equal(a, b) for a, b in zip(ours, theirs)))


@pytest.mark.parametrize("channels", [1, 3, 4])
def test_bytes_are_those_of_the_command_line(channels, tmp_path):
    failed = []
    image = picture(channels)
    for name, values in CALLS:
        given = image if EFFECTS[name]["takes_picture"] else None
        ours = run_python(name, given, values)
        if not same(ours, run_command_line(name, given, values, [], tmp_path)):
            failed.append((name, values))
        if given is not None:
            theirs = run_python(name, qv8.Image(image), values)
            if not same(ours and ours[:1], theirs and theirs[:1]):
                failed.append((name, "as an Image"))
    assert not failed


def test_arrays_in_bands_are_the_whole():
    """Arrays larger than a band, with strides of their own, and progress that never goes back."""
    for channels in (3, 4):
        image = np.tile(picture(channels), (40, 3, 1))[::-1, ::2]
        for name, values in CALLS:
            told = []
            whole = run_python(name, qv8.Image(image), values) if EFFECTS[name]["family"] in ("Tone and colour", "Depth") else None
            if whole is not None:
                assert same(run_python(name, image, values, progress=told.append), whole), name
                assert told == sorted(told) and told[-1] == 100
    with pytest.raises(qv8.Cancelled):
        qv8.rgb_rev(image, progress=lambda percent: percent < 50)


def test_areas_are_those_of_the_command_line(tmp_path):
    image = picture()
    for name, effect in EFFECTS.items():
        if not effect["takes_area"]:
            continue
        values = dict(CALLS)[name]
        for kind, (area, words) in AREAS.items():
            if "mask" in kind and effect["gives_mask"] == "always":
                with pytest.raises(ValueError):
                    run_python(name, image, values, area=area)
                continue
            assert same(run_python(name, image, values, area=area),
                        run_command_line(name, image, values, words, tmp_path)), (name, kind)


def test_a_rectangle_is_its_pixels():
    image = picture()
    for sides in [(3, 5, 40, 30), (-4, -9, 200, 2), (7, 8, 8, 9), (7, 8, 8, 20)]:
        left, top, right, bottom = (max(side, 0) for side in sides)
        expected = image.copy()
        expected[top:bottom, left:right] = 255 - expected[top:bottom, left:right]
        assert np.array_equal(qv8.rgb_rev(image, area=qv8.Rectangle(*sides)), expected), sides
    with pytest.raises(ValueError):
        qv8.rgb_rev(image, area=qv8.Rectangle(61, 0, 70, 10))


@pytest.mark.parametrize("channels", [1, 3, 4])
def test_arrays_of_any_strides_and_widths(channels):
    base = picture(channels, width=80)
    colours = (np.s_[..., ::-1],) if channels == 3 else ()
    for view in (np.s_[:], np.s_[::-1], np.s_[:, ::-1], np.s_[::2, 3::3], *[np.s_[:, :n] for n in range(1, 20)], *colours):
        array = base[view]
        for shown in (array, array.swapaxes(0, 1)):
            before = shown.copy()
            result = qv8.copy_image(shown)
            assert np.array_equal(result, before) and np.array_equal(shown, before)
            assert result.flags.writeable and not np.shares_memory(result, shown)


def test_what_is_no_picture_is_refused():
    image = picture()
    for wrong, kind in [(image.astype(float), TypeError), (image[0, 0], ValueError), (image[:, :, :2], ValueError),
                        (image[:0], ValueError), ("text", TypeError), (None, TypeError),
                        (Pillow.fromarray(image).convert("P"), TypeError), (image[..., 0] > 9, TypeError)]:
        with pytest.raises(kind):
            qv8.sharp(wrong)
    for values in [{"strength": 101}, {"strength": 1.5}, {"strength": "much"}, {"area": qv8.Ellipse(1, 2, "x", 4)},
                   {"area": image[..., 0] > 9, "strength": ()}, {"area": np.ones((3, 3), bool)}]:
        with pytest.raises((ValueError, qv8.Error)):
            qv8.sharp(image, **values)


def test_errors_have_status_and_words():
    with pytest.raises(qv8.Error, match="grey table") as caught:
        qv8.sharp(qv8.convert_color(qv8.Image(picture()), "4"))
    assert caught.value.status == 7
    copy = pickle.loads(pickle.dumps(caught.value))
    assert (copy.status, str(copy)) == (7, str(caught.value))
    with pytest.raises(OSError, match="missing.png"):
        qv8.read("missing.png")
    # The status is the calling thread's, whatever others do at that time.
    def status(number):
        if number % 2:
            qv8.sharp(picture())
            return 0
        with pytest.raises(qv8.Error) as error:
            qv8.panorama(picture(), PASTED, (1, 1), (1, 1), (2, 2), (3, 3))
        return error.value.status
    with ThreadPoolExecutor(4) as threads:
        assert set(zip(map(lambda n: n % 2, range(200)), threads.map(status, range(200)))) == {(0, 5), (1, 0)}


def test_progress_cancels_and_raises():
    image = np.zeros((600, 600, 3), np.uint8)
    seen = []
    qv8.outline(image, progress=seen.append)
    assert seen == sorted(seen) and seen[-1] == 100
    with pytest.raises(qv8.Cancelled) as caught:
        qv8.outline(image, progress=lambda percent: percent < 50)
    assert caught.value.status == 1
    with pytest.raises(ZeroDivisionError):
        qv8.outline(image, progress=lambda percent: 1 / 0)


def test_ctrl_c_cancels_and_other_threads_run():
    image = np.zeros((1500, 1500, 3), np.uint8)
    long = qv8.Recipe(" | ".join(["shade --radius 20"] * 500))
    ticks = []
    stop = threading.Event()
    ticker = threading.Thread(target=lambda: [ticks.append(stop.wait(0.01)) for _ in iter(stop.is_set, True)])
    ticker.start()
    threading.Timer(0.2, os.kill, (os.getpid(), signal.SIGINT)).start()
    with pytest.raises(KeyboardInterrupt):
        long(image)
    stop.set()
    ticker.join()
    assert len(ticks) > 5


def test_files_and_pillow(tmp_path):
    image = picture(4)
    for ending in ("png", "bmp", "tif"):
        name = tmp_path / f"a.{ending}"
        qv8.write(name, image)
        assert np.array_equal(qv8.read(name), image)
        assert np.array_equal(qv8.decode(name.read_bytes()), image)
        assert name.read_bytes() == qv8.encode(qv8.Image(image), ending)
    assert sorted(os.listdir(tmp_path)) == ["a.bmp", "a.png", "a.tif"]
    kept = qv8.Image(picture())
    assert np.array_equal(np.asarray(Pillow.fromarray(kept)), picture())
    assert np.array_equal(qv8.sharp(Pillow.fromarray(picture())), qv8.sharp(picture()))
    small = qv8.convert_color(kept, 4)
    again = pickle.loads(pickle.dumps(small))
    assert again.depth == 4 and again.size == (61, 43) and np.array_equal(again, small)


def test_recipes_are_those_of_the_command_line(tmp_path):
    qv8.write(tmp_path / "in.png", picture(4))
    chain = "resize --scale 0.5 --smooth | sharp --strength 20 | convert-color --depth 32"
    recipe = tmp_path / "small.json"
    recipe.write_text('{"steps": [{"effect": "resize", "scale": 0.5, "smooth": true}, {"effect": "sharp", "strength": 20},'
                      ' {"effect": "convert-color", "depth": 32}], "format": "tif"}')
    for number, source in enumerate([chain, recipe]):
        ours, theirs = (tmp_path / f"{who}{number}.tif" for who in ("ours", "theirs"))
        subprocess.run([QV8, "run", source, tmp_path / "in.png", "-o", theirs], check=True, capture_output=True)
        prepared = pickle.loads(pickle.dumps(qv8.Recipe(source)))
        prepared.run(tmp_path / "in.png", ours)
        assert ours.read_bytes() == theirs.read_bytes()
        assert np.array_equal(prepared(picture(4)), qv8.read(theirs))
        with pytest.raises(qv8.FileError):
            prepared.run(tmp_path / "in.png", ours)
    with pytest.raises(ValueError, match="did you mean"):
        qv8.Recipe("sharpp")


def test_memory_stays_flat():
    def resident():
        gc.collect()
        return int(Path("/proc/self/statm").read_text().split()[1]) * os.sysconf("SC_PAGE_SIZE")

    image = picture()
    def calls(count):
        for _ in range(count):
            qv8.select_image(image, area=qv8.Ellipse(1, 2, 30, 40))
            qv8.paste_image(qv8.Image(image), PASTED, 3, 4, mask=SMALL_MASK)
            with pytest.raises(ValueError):
                qv8.sharp(image, 500)
    calls(300)
    before = resident()
    calls(1500) # 20 kB of pictures each
    assert resident() - before < 2 << 20


def test_stubs_tell_the_functions():
    stubs = ast.parse(Path(inspect.getfile(qv8.sharp)).with_suffix(".pyi").read_text())
    told = {}
    for node in stubs.body:
        if isinstance(node, ast.FunctionDef):
            words = node.args.args + node.args.kwonlyargs
            told.setdefault(node.name, set()).update(word.arg for word in words)
    for name in qv8.effect_names:
        function = getattr(qv8, name)
        assert told[name] == set(inspect.signature(function).parameters)
        assert function.__doc__.count("\n") > 2


if __name__ == "__main__":
    sys.exit(pytest.main([__file__, *sys.argv[1:]]))
