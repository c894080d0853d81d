# %% [markdown]
# What the effects do, as one sheet. In an editor that knows cells this file is a notebook; as a script it writes the
# sheet:
#
#     plot_effects.py PICTURE SHEET.png

# %%
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np

import qv8

picture = qv8.resize(qv8.read(sys.argv[1]).array(), width=320, smooth=True)[:, :, :3]
height, width = picture.shape[:2]
middle = qv8.Ellipse(width // 5, height // 8, width * 4 // 5, height * 7 // 8)

# %% [markdown]
# An effect takes an array and gives one.

# %%
sheet = {
    "the picture": picture,
    "rgb_gamma(red=-0.6)": qv8.rgb_gamma(picture, red=-0.6),
    "chroma(150)": qv8.chroma(picture, 150),
    "set_gray()": qv8.set_gray(picture),
    "ycc_rev(y=True)": qv8.ycc_rev(picture, y=True),
    "sharp(100)": qv8.sharp(picture, 100),
    "shade(6, area=middle)": qv8.shade(picture, 6, area=middle),
    "mosaic(area=~middle)": qv8.mosaic(picture, area=~middle),
    "emboss()": qv8.emboss(picture),
    "outline(gain=2)": qv8.outline(picture, gain=2),
    'convert_color("4", dither=True)': qv8.convert_color(picture, "4", dither=True),
    "rotation(20, smooth=True)": qv8.rotation(picture, angle=20, smooth=True),
    "select_image(area=middle)": qv8.select_image(picture, (255, 255, 255), area=middle)[0],
    "a chain": qv8.Recipe("shade --radius 3 | mosaic --width 6 --height 6 | sharp --strength 40")(picture),
}

# %% [markdown]
# A mask is an array of bool: here what is brighter than most.

# %%
bright = picture.mean(axis=2) > np.percentile(picture.mean(axis=2), 70)
sheet["rgb_level(area=bright)"] = qv8.rgb_level(picture, red=90, green=-40, area=bright)

# %% [markdown]
# How a curve moves the levels.

# %%
figure, axes = plt.subplots(4, 4, figsize=(14, 12), constrained_layout=True)
for axis, (name, pixels) in zip(axes.flat, sheet.items()):
    axis.imshow(pixels, cmap="gray", vmin=0, vmax=255)
    axis.set_title(name, fontsize=10)
    axis.axis("off")
levels = np.arange(256, dtype=np.uint8)[np.newaxis]
curves = axes.flat[-1]
for strength in (-1, -0.5, 0, 0.5, 1):
    curves.plot(levels[0], qv8.rgb_gamma(np.dstack([levels] * 3), red=strength)[0, :, 0], label=f"red={strength}")
curves.set_title("rgb_gamma", fontsize=10)
curves.legend(fontsize=8)
figure.savefig(sys.argv[2], dpi=80)
