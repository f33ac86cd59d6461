#!/usr/bin/python3
"""Reprojection of 100 million points on a local dask cluster: the points are
generated on the workers (dask.array.random), projected to UTM zone 33N
block by block (ox.dask.project) and reduced there (a sum, so that nothing
but one number travels back), with 1 and then 2 worker processes of one
thread each.  Prints million points per second; the generation alone is
timed too and subtracted.

    PYTHONPATH=build/python /usr/bin/python3 bench/dask_reproject.py [points]
"""

import sys
import time

import dask.array as da
import distributed

import ox
import ox.dask


def run(workers, n, chunk):
    with distributed.LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                                  dashboard_address=None) as cluster, distributed.Client(cluster):
        def points():
            lon = da.random.RandomState(1).uniform(12, 18, size=n, chunks=chunk)
            lat = da.random.RandomState(2).uniform(-80, 84, size=n, chunks=chunk)
            return da.stack([lon, lat], axis=1)

        t = time.perf_counter()
        points().sum().compute()
        generate = time.perf_counter() - t
        t = time.perf_counter()
        ox.dask.project(points(), ox.CoordinateSystem(32633)).sum().compute()
        total = time.perf_counter() - t
        return n / total / 1e6, n / max(total - generate, 1e-9) / 1e6


def main():
    n = int(float(sys.argv[1])) if len(sys.argv) > 1 else 100_000_000
    chunk = 2_000_000
    print("| workers | million points/s (generation included) | million points/s (reprojection alone) |")
    print("|---|---|---|")
    for workers in (1, 2):
        with_generation, alone = run(workers, n, chunk)
        print("| %d | %.1f | %.1f |" % (workers, with_generation, alone))


if __name__ == "__main__":
    main()
