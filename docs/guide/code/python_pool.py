"""Pictures of many models by a pool of processes. Wants a folder for them, and models."""

import concurrent.futures
import functools
import multiprocessing
import sys

import orvex


def shade_of(path, size):
    return path, orvex.render(path, size=size).mean()


if __name__ == "__main__":
    spawn = multiprocessing.get_context("spawn")
    with concurrent.futures.ProcessPoolExecutor(2, mp_context=spawn) as pool:
        for path, shade in pool.map(functools.partial(shade_of, size=(64, 48)), sys.argv[1:]):
            print(f"{path}: {shade:.0f}")
