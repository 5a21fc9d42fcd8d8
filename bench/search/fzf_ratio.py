#!/usr/bin/env python3
"""Times `fzf --filter` against a search as whole processes on the same list.

usage: fzf_ratio.py MAKER [GLYMA]
  MAKER  the program bench_search_process
  GLYMA  the program glyma; without it, MAKER searches

Prints "ratio fzf_vs_glyma_search VALUE LIMIT ok|FAIL"; exits with 1 on FAIL.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time

QUERIES = ["smile", "he", "arrow", "greek", "grin face", "cat", "box draw", "s"]
ROUNDS = 32
LIMIT = 3.0


def timed(command, environment, stdin=None):
    with open(stdin or os.devnull, "rb") as source:
        start = time.perf_counter()
        subprocess.run(command, stdin=source, stdout=subprocess.DEVNULL, env=environment, check=False)
        return time.perf_counter() - start


def main():
    maker = os.path.abspath(sys.argv[1])
    glyma = os.path.abspath(sys.argv[2]) if len(sys.argv) > 2 else None
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([maker, "--make", folder], check=True)
        listing = str(pathlib.Path(folder) / "list.txt")
        environment = dict(os.environ, GLYMA_DATA_DIR=folder, GLYMA_CONFIG_DIR=folder)

        def search(query):
            if glyma:
                return [glyma, "search", query]
            return [maker, folder, query]

        subprocess.run(search("x"), stdout=subprocess.DEVNULL, env=environment, check=True)
        best = {}
        for round_number in range(ROUNDS):
            for number in range(len(QUERIES)):
                query = QUERIES[(number + round_number) % len(QUERIES)]
                alternatives = {
                    ("empty", ""): (["/bin/true"], None),
                    ("glyma", query): (search(query), None),
                    ("fzf", query): (["fzf", "--filter", query], listing),
                }
                for name, (command, stdin) in alternatives.items():
                    seconds = timed(command, environment, stdin)
                    best[name] = min(best.get(name, seconds), seconds)

    empty = best[("empty", "")]
    fzf = sum(best[("fzf", query)] - empty for query in QUERIES)
    ours = sum(best[("glyma", query)] - empty for query in QUERIES)
    for query in QUERIES:
        print(f"{query:12} fzf {1000 * (best[('fzf', query)] - empty):6.2f} ms"
              f"  glyma {1000 * (best[('glyma', query)] - empty):6.2f} ms")
    ratio = fzf / ours
    print(f"ratio fzf_vs_glyma_search {ratio:.2f} {LIMIT:g} {'ok' if ratio >= LIMIT else 'FAIL'}")
    return 0 if ratio >= LIMIT else 1


if __name__ == "__main__":
    sys.exit(main())
