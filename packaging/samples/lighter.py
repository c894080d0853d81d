"""Makes a picture lighter, in Python without any module but its own:

  python lighter.py IN.bmp OUT.bmp            tells how far it is
  python lighter.py IN.bmp OUT.bmp PERCENT    cancels the work when it is that far, and writes nothing

qv8effect_declarations.py holds the declarations. On Windows the two DLLs lie beside these files, with as many bits as
Python has. Run on Linux; not yet on Windows.
"""
import ctypes
import struct
import sys

import qv8effect_declarations as qv8

FILE_HEADER, PICTURE_HEADER = 14, 40


def read_picture(name):
    """What follows the 14 bytes of a BMP file's own header is a picture, as the library wants it."""
    with open(name, "rb") as file:
        header, rest = file.read(FILE_HEADER), file.read()
    if header[:2] != b"BM" or len(rest) < PICTURE_HEADER or struct.unpack("<I", rest[:4]) != (PICTURE_HEADER,):
        raise ValueError(f"{name} is not a BMP file of the usual kind")
    picture = qv8.GlobalAlloc(2, len(rest))
    if not picture:
        raise MemoryError
    place = qv8.GlobalLock(picture)
    ctypes.memmove(place, rest, len(rest))
    begin = FILE_HEADER + PICTURE_HEADER + qv8.GetDibPalSize(place)
    qv8.GlobalUnlock(picture)
    if struct.unpack("<I", header[10:]) != (begin,):
        qv8.GlobalFree(picture)
        raise ValueError(f"{name} has a gap before its pixels")
    return picture


def write_picture(name, picture):
    place = qv8.GlobalLock(picture)
    rest = ctypes.string_at(place, qv8.GlobalSize(picture))
    begin = FILE_HEADER + PICTURE_HEADER + qv8.GetDibPalSize(place)
    qv8.GlobalUnlock(picture)
    with open(name, "wb") as file:
        file.write(b"BM" + struct.pack("<III", FILE_HEADER + len(rest), 0, begin) + rest)


def main(words):
    if len(words) < 2:
        sys.exit("usage: lighter.py IN.bmp OUT.bmp [PERCENT]")
    cancel_at = int(words[2]) if len(words) > 2 else 101
    told = set()

    @qv8.ProgressCallback
    def on_progress(percent, _context):
        if percent // 25 not in told:
            told.add(percent // 25)
            print(percent, "%")
        return percent < cancel_at  # 0 cancels

    target = qv8.ImageSet(read_picture(words[0]), None)
    owner = qv8.AddProgressOwner(on_progress, None)
    lighter = qv8.QV8RGBGamma(target, qv8.QV8_AREA_WHOLE, None, 0, None, 1, -0.5, -0.5, -0.5, owner, 0, 0, 0)
    qv8.RemoveProgressOwner(owner)
    print(qv8.GetErrorStatusText(qv8.GetErrorStatus()).decode())
    if lighter:
        write_picture(words[1], lighter)
        qv8.GlobalFree(lighter)
    qv8.GlobalFree(target.hImage)
    return 0 if lighter else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
