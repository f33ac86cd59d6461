#!/usr/bin/python3
"""Reprojection speed from Python: UTM zone 33N forward on 10 million
points in one call (separate coordinate arrays, and an interleaved (N, 2)
array converted in place), the same conversion through the C API (ctypes,
the library routine alone), and a ThreadPoolExecutor over chunks of one
array with 1, 2 and 4 threads.  Best of five runs each; million points per
second.

    PYTHONPATH=build/python /usr/bin/python3 bench/python_reproject.py [build]
"""

import ctypes
import os
import sys
import time
from concurrent.futures import ThreadPoolExecutor

import numpy as np

import ox

N = 10_000_000
ROUNDS = 5


def best(f, n=N):
    times = []
    for _ in range(ROUNDS):
        t = time.perf_counter()
        f()
        times.append(time.perf_counter() - t)
    return n / min(times) / 1e6


def main():
    build = sys.argv[1] if len(sys.argv) > 1 else "build"
    rng = np.random.default_rng(1)
    lon, lat = rng.uniform(12, 18, N), rng.uniform(-80, 84, N)
    pairs = np.column_stack([lon, lat])
    utm = ox.CoordinateSystem(ox.CoordinateSystem(32633).to_string())

    work = pairs.copy()

    def c_api():
        lib = c_api.lib
        np.copyto(work, pairs)
        t = time.perf_counter()
        lib.ox_geog_to_proj(c_api.h, N, work.ctypes.data_as(ctypes.POINTER(ctypes.c_double)))
        return time.perf_counter() - t

    lib = ctypes.CDLL(os.path.join(build, "libox.so"))
    lib.ox_projcs_from_string.restype = ctypes.c_void_p
    lib.ox_projcs_from_string.argtypes = [ctypes.c_char_p]
    lib.ox_geog_to_proj.argtypes = [ctypes.c_void_p, ctypes.c_int32, ctypes.POINTER(ctypes.c_double)]
    c_api.lib, c_api.h = lib, lib.ox_projcs_from_string(utm.to_string().encode())
    lib.ox_projcs_load_constants.argtypes = [ctypes.c_void_p]
    lib.ox_projcs_load_constants(c_api.h)
    c_rate = N / min(c_api() for _ in range(ROUNDS)) / 1e6

    def inplace_timed():
        np.copyto(work, pairs)
        t = time.perf_counter()
        utm.project(work, inplace=True)
        return time.perf_counter() - t

    inplace_rate = N / min(inplace_timed() for _ in range(ROUNDS)) / 1e6
    separate_rate = best(lambda: utm.project(lon, lat))

    def threaded(threads):
        def run():
            np.copyto(work, pairs)
            chunks = np.array_split(np.arange(N), 4 * threads)
            t = time.perf_counter()
            with ThreadPoolExecutor(threads) as pool:
                list(pool.map(lambda idx: utm.project(work[idx[0]:idx[-1] + 1], inplace=True), chunks))
            return time.perf_counter() - t
        return N / min(run() for _ in range(ROUNDS)) / 1e6

    rates = {t: threaded(t) for t in (1, 2, 4)}
    print("| conversion | million points/s |")
    print("|---|---|")
    print("| C API (`ox_geog_to_proj`, ctypes, interleaved in place) | %.1f |" % c_rate)
    print("| `project(pairs, inplace=True)` | %.1f (%.0f %% of the C API) |" % (inplace_rate, 100 * inplace_rate / c_rate))
    print("| `project(lon, lat)`, new arrays | %.1f (%.0f %% of the C API) |" % (separate_rate, 100 * separate_rate / c_rate))
    for t, r in rates.items():
        print("| ThreadPoolExecutor, %d thread%s, in place | %.1f (x%.2f) |" % (t, "s" if t > 1 else "", r, r / rates[1]))


if __name__ == "__main__":
    main()
