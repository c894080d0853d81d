"""A recipe over many pictures on all processors of this machine, without any package but qv8.

    futures_pictures.py 'resize --scale 0.25 --smooth | sharp' OUT_FOLDER PICTURES...

Threads do, for every call leaves the interpreter to others while it works. One picture that cannot be read does not
stop the others. In the end it says what a million such pictures cost.
"""

import argparse
import os
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import qv8


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("recipe")
    parser.add_argument("folder", type=Path)
    parser.add_argument("pictures", nargs="+", type=Path)
    given = parser.parse_args()
    given.folder.mkdir(parents=True, exist_ok=True)
    recipe = qv8.Recipe(given.recipe)

    def do_picture(picture):
        try:
            recipe.run(picture, given.folder / picture.name, force=True)
        except qv8.Error as error:
            return str(error)
        return None

    begin = time.monotonic(), time.process_time()
    with ThreadPoolExecutor(len(os.sched_getaffinity(0))) as threads:
        mistakes = [words for words in threads.map(do_picture, given.pictures) if words]
    seconds, work = time.monotonic() - begin[0], time.process_time() - begin[1]
    count = len(given.pictures)
    print(f"{count} pictures in {seconds:.1f} s; a million cost {work / count * 1e6 / 3600:.1f} core-hours")
    for words in mistakes:
        print(words, file=sys.stderr)
    return 5 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
