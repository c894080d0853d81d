#!/usr/bin/env python3
"""Makes the files in tests/data/pictures with other programs, and list.txt with what they show.

Needs Pillow, ImageMagick, GraphicsMagick and libtiff-tools. Each line of the list: file, width, height, depth of the picture block
that is expected, and a hash (FNV-1a, 64 bits) of its red, green, blue and alpha from the top, as Pillow sees them, or
ImageMagick where Pillow does not read such a file. "-" stands for a file that is to be refused, and words of the reason.
"""
import io, os, struct, subprocess, zlib
from PIL import Image, ImageCms, ImageOps

FOLDER = os.path.join(os.path.dirname(__file__), '..', 'data', 'pictures')
os.makedirs(FOLDER, exist_ok=True)
os.chdir(FOLDER)
for name in os.listdir('.'):
    os.remove(name)
WIDTH, HEIGHT = 21, 13
lines = []


def noise(x, y, channel):
    return (x * 11 + y * 17 + channel * 59 + (x * y * 7 + channel * x * 3) % 31) % 256


def rgb():
    picture = Image.new('RGB', (WIDTH, HEIGHT))
    picture.putdata([tuple(noise(x, y, c) for c in range(3)) for y in range(HEIGHT) for x in range(WIDTH)])
    return picture


def rgba(alpha=None):
    picture = rgb().convert('RGBA')
    values = [noise(x, y, 3) if alpha is None else alpha for y in range(HEIGHT) for x in range(WIDTH)]
    mask = Image.new('L', (WIDTH, HEIGHT))
    mask.putdata(values)
    picture.putalpha(mask)
    return picture


def table(colours):
    return rgb().quantize(colours, method=Image.Quantize.MEDIANCUT, dither=Image.Dither.NONE)


def seen(name, magick):
    if magick:
        orient = ['-auto-orient'] if magick == 'orient' else []
        run = subprocess.run(['convert', name + '[0]', *orient, '-depth', '16', '-endian', 'MSB', 'rgba:-'],
                             capture_output=True, check=True)
        size = subprocess.run(['convert', name + '[0]', *orient, '-format', '%w %h', 'info:'], capture_output=True,
                              check=True).stdout.split()
        deep = struct.unpack(f'>{len(run.stdout) // 2}H', run.stdout)
        return int(size[0]), int(size[1]), bytes((value + 128) // 257 for value in deep)
    picture = ImageOps.exif_transpose(Image.open(name))
    return *picture.size, picture.convert('RGBA').tobytes()


def listed(name, depth, magick=False):
    width, height, pixels = seen(name, magick)
    value = 0xCBF29CE484222325
    for byte in pixels:
        value = (value ^ byte) * 0x100000001B3 & 0xFFFFFFFFFFFFFFFF
    lines.append(f'{name} {width} {height} {depth} {value:016x}')


def refused(name, words):
    lines.append(f'{name} - {words}')


def run(*words):
    subprocess.run(words, check=True, capture_output=True)


def saved(name, picture, depth, magick=False, **options):
    picture.save(name, **options)
    listed(name, depth, magick)


def png(name, depth, *options, source='rgba'):
    run('convert', '-depth', '16', f'{source}.miff', *options, f'PNG:{name}')
    listed(name, depth, True)


def chunk(kind, data):
    return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data))


def raw_png(name, header, *chunks):
    with open(name, 'wb') as file:
        file.write(b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) + b''.join(chunks) + chunk(b'IEND', b''))


profile = ImageCms.ImageCmsProfile(ImageCms.createProfile('sRGB')).tobytes()


def exif(orientation):
    """With a small picture, whose first and last bytes are marks."""
    block = b'MM\0*' + struct.pack('>I', 8)
    first = struct.pack('>H', 2) + struct.pack('>HHIHH', 0x112, 3, 1, orientation, 0)
    first += struct.pack('>HHI4s', 0x13B, 2, 4, b'Ann\0') + struct.pack('>I', 38)
    second = struct.pack('>H', 2) + struct.pack('>HHII', 0x201, 4, 1, 68) + struct.pack('>HHII', 0x202, 4, 1, 6)
    return block + first + second + struct.pack('>I', 0) + b'SMALL!'


# --- PNG: every colour type and depth, interlaced or not
for form, depth, colours in ((1, 1, 2), (2, 4, 4), (4, 4, 13), (8, 8, 200)):
    saved(f'table{form}.png', table(colours), depth, bits=form)
deep = Image.new('RGBA', (1, 1))
levels = b''.join(struct.pack('<4H', *((noise(x, y, c) * 257 + x * 23 + y * 7 + c) % 65536 for c in range(4)))
                  for y in range(HEIGHT) for x in range(WIDTH))
with open('deep.rgba', 'wb') as file:
    file.write(levels)
run('convert', '-size', f'{WIDTH}x{HEIGHT}', '-depth', '16', '-endian', 'LSB', 'rgba:deep.rgba', 'rgba.miff')
run('convert', 'rgba.miff', '-alpha', 'off', 'rgb.miff')
run('convert', 'rgb.miff', '-colorspace', 'gray', 'grey.miff')
for bits in (1, 2, 4):
    saved(f'grey{bits}.png', rgb().convert('L').point(lambda v, b=bits: v >> (8 - b)), 4 if bits == 2 else bits)
    os.remove(f'grey{bits}.png')
    lines.pop()
    run('convert', 'grey.miff', '-depth', str(bits), '-define', f'png:bit-depth={bits}', '-define', 'png:color-type=0',
        f'grey{bits}.png')
    listed(f'grey{bits}.png', 4 if bits == 2 else bits, True)
for interlaced in ('', '-interlaced'):
    how = ('-interlace', 'PNG') if interlaced else ()
    for kind, code, sources in (('grey', 0, 'grey'), ('colour', 2, 'rgb'), ('grey-alpha', 4, 'rgba'), ('alpha', 6, 'rgba')):
        for bits in (8, 16):
            depth = 8 if code == 0 else 24 if code == 2 else 32
            extra = ('-colorspace', 'gray') if code == 4 else ()
            png(f'{kind}{bits}{interlaced}.png', depth, *extra, '-depth', str(bits), *how, '-define', f'png:bit-depth={bits}',
                '-define', f'png:color-type={code}', source=sources)
for name, depth in (('grey1', 1), ('grey2', 4)):
    run('convert', f'{name}.png', '-interlace', 'PNG', '-define', 'png:color-type=0', '-define', f'png:bit-depth={name[-1]}',
        f'{name}-interlaced.png')
    listed(f'{name}-interlaced.png', depth, True)
run('gm', 'convert', '-interlace', 'Line', 'table4.png', 'table4-interlaced.png')
listed('table4-interlaced.png', 4, True)
saved('clear.png', rgba(0), 32)
saved('key.png', rgb(), 32, transparency=rgb().getpixel((4, 5)))
saved('table-alpha.png', table(100), 32, transparency=bytes(range(0, 200, 2)))
saved('profile.png', rgb(), 24, icc_profile=profile, dpi=(300, 150))
for orientation in range(1, 9):
    saved(f'orientation{orientation}.png', rgb().crop((0, 0, 5, 3)), 24, exif=exif(orientation))
small_header = struct.pack('>IIBBBBB', 2, 2, 8, 2, 0, 0, 0)
pixels = chunk(b'IDAT', zlib.compress(bytes(14)))
raw_png('bomb-size.png', struct.pack('>IIBBBBB', 16000, 16000, 1, 0, 0, 0, 0), chunk(b'IDAT', zlib.compress(b'')))
refused('bomb-size.png', 'too short')
raw_png('bomb-limit.png', struct.pack('>IIBBBBB', 60000, 60000, 1, 0, 0, 0, 0), chunk(b'IDAT', zlib.compress(b'')))
refused('bomb-limit.png', 'limit')
raw_png('bomb-profile.png', small_header, chunk(b'iCCP', b'x\0\0' + zlib.compress(bytes(17 << 20), 9)), pixels)
refused('bomb-profile.png', 'chunk')
raw_png('broken-rows.png', small_header, chunk(b'IDAT', zlib.compress(bytes(13))))
refused('broken-rows.png', 'decoded')

# --- JPEG
saved('halved.jpg', rgb(), 24, quality=80)
saved('full.jpg', rgb(), 24, quality=95, subsampling=0, progressive=True)
saved('grey.jpg', rgb().convert('L'), 8, quality=90, dpi=(72, 72))
saved('whole.jpg', rgb(), 24, quality=90, icc_profile=profile, exif=b'Exif\0\0' + exif(6), dpi=(300, 150))
rgb().convert('CMYK').save('inks.jpg', quality=95)
lines.append(f'inks.jpg {WIDTH} {HEIGHT} 24 ?')

# --- TIFF: every kind of pixel, packing, order and partition
for name, source, depth, *options in (
        ('colour8', 'rgb', 24, '-depth', '8', '-compress', 'LZW'), ('colour16', 'rgb', 24, '-depth', '16', '-compress', 'Zip'),
        ('alpha8', 'rgba', 32, '-depth', '8', '-compress', 'None'), ('alpha16', 'rgba', 32, '-depth', '16', '-compress', 'LZW'),
        ('grey8', 'grey', 8, '-depth', '8', '-compress', 'RLE'), ('grey16', 'grey', 8, '-depth', '16', '-compress', 'None'),
        ('fax', 'grey', 1, '-monochrome', '-compress', 'Group4'),
        ('planes16', 'rgb', 24, '-depth', '16', '-interlace', 'Plane', '-compress', 'None')):
    run('convert', f'{source}.miff', *options, f'{name}.tif')
    listed(f'{name}.tif', depth, True)
for form, depth, colours in ((1, 1, 2), (4, 4, 13), (8, 8, 200)):
    run('convert', f'table{form}.png', '-type', 'Palette', '-define', 'tiff:alpha=none', '-compress', 'Zip', f'table{form}.tif')
    bits = subprocess.run(['tiffinfo', f'table{form}.tif'], capture_output=True, text=True).stdout
    bits = int(bits.split('Bits/Sample: ')[1].split()[0])
    listed(f'table{form}.tif', bits, True)
for name, source, *options in (
        ('tiles', 'colour8', '-t', '-w', '16', '-l', '16'), ('planes', 'alpha8', '-p', 'separate'),
        ('planes-tiles', 'colour8', '-p', 'separate', '-t', '-w', '16', '-l', '16'), ('table-tiles', 'table4', '-t', '-w', '16', '-l', '16'),
        ('big-endian', 'colour16', '-B'), ('big', 'colour8', '-8'), ('strips', 'alpha8', '-r', '3', '-c', 'lzw')):
    run('tiffcp', *options, f'{source}.tif', f'{name}.tif')
    listed(f'{name}.tif', {'alpha16': 32, 'alpha8': 32, 'table4': 4}.get(source, 24), True)
run('convert', 'colour8.tif', '-orient', 'RightTop', '-density', '300x150', '-units', 'PixelsPerInch', '-compress', 'Zip', 'turned.tif')
listed('turned.tif', 24, 'orient')
run('tiffcp', 'colour8.tif', 'grey8.tif', 'two.tif')
listed('two.tif', 24, True)
rgb().convert('CMYK').save('inks.tif')
lines.append(f'inks.tif {WIDTH} {HEIGHT} 24 ?')
rgb().convert('F').save('float.tif')
refused('float.tif', '32 bits')

# --- WebP
saved('colour.webp', rgb(), 24, lossless=True, exif=b'Exif\0\0' + exif(8), icc_profile=profile)
saved('alpha.webp', rgba(), 32, lossless=True, exact=True)
saved('lossy.webp', rgb(), 24, quality=80)
rgb().save('moving.webp', save_all=True, append_images=[rgb().rotate(180)])
refused('moving.webp', 'moving')


# --- BMP: what this program's own writer does not make
def bmp(name, depth, header, colours, pixels, entry=4):
    start = 14 + len(header) + len(colours)
    with open(name, 'wb') as file:
        file.write(b'BM' + struct.pack('<IHHI', start + len(pixels), 0, 0, start) + header + colours + pixels)
    listed(name, depth, True)


def info(bits, compression, size=0, used=0, extra=b''):
    return struct.pack('<IiiHHIIiiII', 40 + len(extra), WIDTH, HEIGHT, 1, bits, compression, size, 2835, 2835, used, 0) + extra


def rows(picture, bits):
    data = list(picture.getdata())
    for y in reversed(range(HEIGHT)):
        yield data[y * WIDTH:(y + 1) * WIDTH]


def quads(picture, count, entry=4):
    colours = picture.getpalette()[:3 * count]
    return b''.join(bytes((colours[i + 2], colours[i + 1], colours[i], 0)[:entry]) for i in range(0, len(colours), 3))


def packed8(picture):
    result = b''
    for row in rows(picture, 8):
        x = 0
        while x < WIDTH:
            run_length = 1
            while x + run_length < WIDTH and row[x + run_length] == row[x]:
                run_length += 1
            if run_length == 1 and WIDTH - x >= 3:
                result += bytes((0, 3, *row[x:x + 3], 0))
                x += 3
            else:
                result += bytes((run_length, row[x]))
                x += run_length
        result += b'\0\0'
    return result + b'\0\1'


def packed4(picture):
    result = b''
    for y, row in enumerate(rows(picture, 4)):
        result += bytes((5, row[0] << 4 | row[0], 0, 2, 0, 0)) if y == 2 else b''  # a move by nothing
        x = 5 if y == 2 else 0
        result += bytes((0, 5, row[x] << 4 | row[x + 1], row[x + 2] << 4 | row[x + 3], row[x + 4] << 4, 0))
        for at in range(x + 5, WIDTH):
            result += bytes((1, row[at] << 4))
        result += b'\0\0'
    return result + b'\0\1'


blocks = table(13).resize((7, 5), Image.NEAREST).resize((WIDTH, HEIGHT), Image.NEAREST)
even = blocks.copy()
for y in range(HEIGHT):  # the row with the move begins with five equal pixels
    for x in range(5):
        even.putpixel((x, y), even.getpixel((0, y)))
bmp('rle8.bmp', 8, info(8, 1), quads(blocks, 256).ljust(1024, b'\0'), packed8(blocks))
bmp('rle4.bmp', 4, info(4, 2, used=13), quads(even, 13), packed4(even))
lines24 = b''.join(b''.join(bytes((p[2], p[1], p[0])) for p in row).ljust(64, b'\0') for row in rows(rgb(), 24))
bmp('os2-24.bmp', 24, struct.pack('<IHHHH', 12, WIDTH, HEIGHT, 1, 24), b'', lines24)
lines8 = b''.join(bytes(row).ljust(24, b'\0') for row in rows(blocks, 8))
bmp('os2-8.bmp', 8, struct.pack('<IHHHH', 12, WIDTH, HEIGHT, 1, 8), quads(blocks, 256, 3).ljust(768, b'\0'), lines8)
bmp('os2-2.bmp', 24, info(24, 0, extra=bytes(24)), b'', lines24)
bmp('plain24.bmp', 24, info(24, 0), b'', lines24)
bmp('short-table.bmp', 8, info(8, 0, used=13), quads(blocks, 13), lines8)
top_down = bytearray(info(8, 0, used=13))
top_down[8:12] = struct.pack('<i', -HEIGHT)
with_gap = b''.join(reversed([lines8[i:i + 24] for i in range(0, len(lines8), 24)]))
bmp('top-down.bmp', 8, bytes(top_down), quads(blocks, 13) + b'gap!', with_gap)
lines16 = b''.join(b''.join(struct.pack('<H', p[0] >> 3 << 11 | p[1] >> 2 << 5 | p[2] >> 3) for p in row).ljust(44, b'\0')
                   for row in rows(rgb(), 16))
bmp('masks16.bmp', 16, info(16, 3), struct.pack('<III', 0xF800, 0x7E0, 0x1F), lines16)
lines.pop()
lines.append(f'masks16.bmp {WIDTH} {HEIGHT} 16 ?')
run('convert', 'rgba.miff', '-depth', '8', 'BMP:alpha.bmp')
listed('alpha.bmp', 32, True)

for name in ('rgba.miff', 'rgb.miff', 'grey.miff', 'deep.rgba'):
    os.remove(name)
with open('list.txt', 'w') as file:
    file.write('\n'.join(lines) + '\n')
