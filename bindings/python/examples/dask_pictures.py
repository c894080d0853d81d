"""A recipe over many pictures on a Dask cluster: here two processes of this machine, elsewhere as many as there are.

    dask_pictures.py 'resize --scale 0.25 --smooth | sharp' OUT_FOLDER PICTURES...

A piece of work may be lost with its worker, and is given to another one. That is safe: a result takes its name when it
is whole, and whoever finds one leaves it. `--kill` ends a worker in the middle, to see it. A worker that is killed
leaves its temporary file behind; such files are swept away in the end.
"""

import argparse
import os
import signal
import time
from collections import Counter
from pathlib import Path

from dask.distributed import Client, LocalCluster, as_completed

import qv8


def do_picture(recipe, picture, output):
    """Tells the process, and whether the result was there before."""
    was_there = output.exists()
    if not was_there:
        recipe.run(picture, output)
    return os.getpid(), was_there


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("recipe")
    parser.add_argument("folder", type=Path)
    parser.add_argument("pictures", nargs="+", type=Path)
    parser.add_argument("--kill", action="store_true", help="end a worker when a quarter is done")
    given = parser.parse_args()
    given.folder.mkdir(parents=True, exist_ok=True)
    begin = time.monotonic()

    def tell(words):
        print(f"{time.monotonic() - begin:6.2f} s  {words}", flush=True)

    with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster, Client(cluster) as client:
        workers = list(client.run(os.getpid).values())
        tell(f"workers {workers}")
        recipe = qv8.Recipe(given.recipe)
        work = [client.submit(do_picture, recipe, picture.resolve(), given.folder.resolve() / picture.name, pure=False)
                for picture in given.pictures]
        done = Counter()
        for _, (worker, was_there) in as_completed(work, with_results=True):
            done[worker] += 1
            if was_there:
                tell("a result of the worker that is gone was whole")
            if given.kill and done.total() == len(work) // 4:
                os.kill(workers[0], signal.SIGKILL)
                tell(f"killed {workers[0]} after {done.total()} pictures")
        tell(f"{done.total()} of {len(work)} pictures, by worker {dict(done)}")
    for left in given.folder.glob("qv8.*.tmp"):
        left.unlink()
        tell(f"swept away {left.name}")


if __name__ == "__main__":
    main()
