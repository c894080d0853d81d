"""Times whole calls on 1080p beside Pillow, OpenCV and scikit-image, where they are and have the operation.

    benchmark.py [REPETITIONS]

Each number is the median of paired repetitions, in time of the processor, on one thread; "times" says how often as long
as qv8 the other takes. All start from and give arrays of H x W x 3, but for Pillow, which gets its own pictures. "kept"
is qv8 on a qv8.Image, as in a chain. The operations are the nearest there are, and do not give the same bytes.
"""

import statistics
import sys
import time

import numpy as np

import qv8

try:
    from PIL import Image, ImageEnhance, ImageFilter, ImageOps
except ImportError:
    Image = None
try:
    import cv2
except ImportError:
    cv2 = None
try:
    import skimage.color
    import skimage.exposure
    import skimage.filters
    import skimage.transform
    import skimage.util
except ImportError:
    skimage = None

REPETITIONS = int(sys.argv[1]) if len(sys.argv) > 1 else 15
rng = np.random.default_rng(7)
picture = np.kron(rng.integers(0, 256, (135, 240, 3), np.uint8), np.ones((8, 8, 1), np.uint8))
picture = (picture // 2 + rng.integers(0, 128, picture.shape, np.uint8)).astype(np.uint8)
second = np.ascontiguousarray(picture[::-1])
pillow = Image.fromarray(picture) if Image else None
pillow_second = Image.fromarray(second) if Image else None
table = (np.arange(256) * 0.8 + 40).clip(0, 255).astype(np.uint8)
weights = np.array([[0, -1, 0], [-1, 5, -1], [0, -1, 0]])
gauss = qv8.Kernel([[1, 2, 1], [2, 4, 2], [1, 2, 1]], 16)
small = (960, 540)
array = source = picture
kept = qv8.Image(picture)
turn = cv2.getRotationMatrix2D((960, 540), 20, 1) if cv2 else None

# Operation: ours, Pillow's, OpenCV's, scikit-image's.
ROWS = {
    "invert": (lambda: qv8.rgb_rev(source), lambda: ImageOps.invert(pillow), lambda: cv2.bitwise_not(picture),
               lambda: skimage.util.invert(picture)),
    "add a level": (lambda: qv8.rgb_level(source, 40, 40, 40), lambda: pillow.point(list(table) * 3),
                    lambda: cv2.add(picture, (40, 40, 40, 0)), None),
    "curve": (lambda: qv8.rgb_gamma(source, 0.5, 0.5, 0.5), lambda: pillow.point(list(table) * 3),
              lambda: cv2.LUT(picture, table), lambda: skimage.exposure.adjust_gamma(picture, 0.7)),
    "colourfulness": (lambda: qv8.chroma(source, 50), lambda: ImageEnhance.Color(pillow).enhance(1.5), None, None),
    "to grey": (lambda: qv8.convert_color(source, "grey"), lambda: pillow.convert("L"),
                lambda: cv2.cvtColor(picture, cv2.COLOR_RGB2GRAY), lambda: skimage.color.rgb2gray(picture)),
    "sharpen": (lambda: qv8.sharp(source, 40), lambda: pillow.filter(ImageFilter.SHARPEN),
                lambda: cv2.filter2D(picture, -1, weights), lambda: skimage.filters.unsharp_mask(picture, channel_axis=2)),
    "3 x 3 kernel": (lambda: qv8.custom_filter(source, gauss),
                     lambda: pillow.filter(ImageFilter.Kernel((3, 3), (1, 2, 1, 2, 4, 2, 1, 2, 1), 16)),
                     lambda: cv2.filter2D(picture, -1, np.array([[1, 2, 1], [2, 4, 2], [1, 2, 1]]) / 16), None),
    "box blur 5 x 5": (lambda: qv8.shade(source, 2), lambda: pillow.filter(ImageFilter.BoxBlur(2)),
                       lambda: cv2.blur(picture, (5, 5)), None),
    "box blur 21 x 21": (lambda: qv8.shade(source, 10), lambda: pillow.filter(ImageFilter.BoxBlur(10)),
                         lambda: cv2.blur(picture, (21, 21)), None),
    "median 3 x 3": (lambda: qv8.remove_noise(source, "channels"), lambda: pillow.filter(ImageFilter.MedianFilter(3)),
                     lambda: cv2.medianBlur(picture, 3), None),
    "emboss": (lambda: qv8.emboss(source), lambda: pillow.filter(ImageFilter.EMBOSS), None, None),
    "edges": (lambda: qv8.outline(source), lambda: pillow.filter(ImageFilter.FIND_EDGES), None,
              lambda: skimage.filters.sobel(picture)),
    "half size": (lambda: qv8.resize(source, 960, 540, smooth=True),
                  lambda: pillow.resize(small, Image.Resampling.BOX),
                  lambda: cv2.resize(picture, small, interpolation=cv2.INTER_AREA),
                  lambda: skimage.transform.downscale_local_mean(picture, (2, 2, 1))),
    "half size, nearest": (lambda: qv8.resize(source, 960, 540), lambda: pillow.resize(small, Image.Resampling.NEAREST),
                           lambda: cv2.resize(picture, small, interpolation=cv2.INTER_NEAREST), None),
    "quarter turn": (lambda: qv8.rotation(source, 90), lambda: pillow.transpose(Image.Transpose.ROTATE_90),
                     lambda: cv2.rotate(picture, cv2.ROTATE_90_COUNTERCLOCKWISE), None),
    "mirror": (lambda: qv8.rotation(source, mirror=True), lambda: ImageOps.mirror(pillow), lambda: cv2.flip(picture, 1),
               None),
    "turn by 20 degrees": (lambda: qv8.rotation(source, 20, smooth=True, keep_size=True),
                           lambda: pillow.rotate(20, Image.Resampling.BILINEAR),
                           lambda: cv2.warpAffine(picture, turn, (1920, 1080)),
                           lambda: skimage.transform.rotate(picture, 20)),
    "blend two": (lambda: qv8.layer(source, second, 128, transparent=(1, 2, 3)),
                  lambda: Image.blend(pillow, pillow_second, 0.5),
                  lambda: cv2.addWeighted(picture, 0.5, second, 0.5, 0), None),
}


def seconds(call):
    begin = time.thread_time()
    call()
    return time.thread_time() - begin


def on_image(call):
    """The same call with the picture as an Image."""

    def called():
        global source
        source = kept
        call()
        source = array

    return called


def main():
    if cv2:
        cv2.setNumThreads(1)
    peers = [("Pillow", Image), ("OpenCV", cv2), ("scikit-image", skimage)]
    print(f"{'':20}{'qv8':>11}{'kept':>11}" + "".join(f"{name:>24}" for name, _ in peers))
    for name, (ours, *theirs) in ROWS.items():
        calls = [call if there else None for call, (_, there) in zip(theirs, peers)]
        times = [[seconds(call) * 1e3 if call else None for call in (ours, on_image(ours), *calls)]
                 for _ in range(REPETITIONS + 1)][1:]
        columns = list(zip(*times))
        line = f"{name:20}" + "".join(f"{statistics.median(column):8.2f} ms" for column in columns[:2])
        for column in columns[2:]:
            ratio = statistics.median(other / own for other, own in zip(column, columns[0])) if column[0] else None
            words = f"{statistics.median(column):.2f} ms, {ratio:.2f} times" if ratio else ""
            line += f"{words:>24}"
        print(line, flush=True)


main()
