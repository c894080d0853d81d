#!/usr/bin/env python3
"""What tests/data/pictures/list.txt says of pictures, by the word of other programs.

    hash_pictures.py            compares the whole list with what they see
    hash_pictures.py FILE ...   prints the lines of new files, but for the depth of the picture block, which is ours

Needs Pillow and ImageMagick. A line of the list: file, width, height, depth, and a hash (FNV-1a, 64 bits) of its red,
green, blue and alpha from the top, 16 bits rounded to 8, upright; ? for a hash where nobody's colours are the only
right ones; "-" for a file that is to be refused, and words of the reason. The files were made with these programs,
GraphicsMagick and libtiff's tools.
"""
import os, struct, subprocess, sys
from PIL import Image, ImageOps


def by_pillow(name):
    picture = ImageOps.exif_transpose(Image.open(name))
    return *picture.size, picture.convert('RGBA').tobytes()


def by_magick(name):
    def convert(*options):
        return subprocess.run(['convert', name + '[0]', '-auto-orient', *options], capture_output=True, check=True).stdout
    width, height = convert('-format', '%w %h', 'info:').split()
    deep = convert('-depth', '16', '-endian', 'MSB', 'rgba:-')
    return int(width), int(height), bytes((value + 128) // 257 for value, in struct.iter_unpack('>H', deep))


def line(name, seen):
    width, height, pixels = seen
    value = 0xCBF29CE484222325
    for byte in pixels:
        value = (value ^ byte) * 0x100000001B3 & 0xFFFFFFFFFFFFFFFF
    return f'{os.path.basename(name)} {width} {height}', f'{value:016x}'


if len(sys.argv) > 1:
    for name in sys.argv[1:]:
        print(' ? '.join(line(name, by_magick(name))))
    sys.exit()
os.chdir(os.path.join(os.path.dirname(__file__), '..', 'data', 'pictures'))
wrong = 0
for listed in open('list.txt'):
    name, *rest = listed.split()
    if rest[0] == '-' or rest[3] == '?':
        continue
    expected = f'{name} {rest[0]} {rest[1]}', rest[3]
    if expected not in (line(name, seen(name)) for seen in (by_magick, by_pillow)):
        print('differs:', listed.strip())
        wrong += 1
sys.exit(wrong != 0)
