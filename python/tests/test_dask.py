"""ox.dask on a local cluster of two worker processes: lazy, block by block,
the system shipped by its object string, results equal to the in-process
conversion bit for bit."""

import numpy as np
import pytest

import ox
import ox.dask

da = pytest.importorskip("dask.array")
dd = pytest.importorskip("dask.dataframe")
distributed = pytest.importorskip("distributed")
pd = pytest.importorskip("pandas")


@pytest.fixture(scope="module")
def client():
    cluster = distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None)
    c = distributed.Client(cluster)
    yield c
    c.close()
    cluster.close()


def test_arrays_block_by_block_on_worker_processes(client):
    utm = ox.CoordinateSystem(32633)
    rng = np.random.default_rng(3)
    pairs = np.column_stack([rng.uniform(12, 18, 200000), rng.uniform(-80, 84, 200000)])
    lazy = ox.dask.project(da.from_array(pairs, chunks=(25000, 2)), utm)
    assert isinstance(lazy, da.Array)  # nothing converted yet
    projected = lazy.compute()
    assert np.array_equal(projected.view(np.uint64), utm.project(pairs).view(np.uint64))
    # The workers really converted the blocks: they are other processes.
    pids = client.run(lambda: __import__("os").getpid())
    assert len(pids) == 2
    back = ox.dask.unproject(da.from_array(projected, chunks=(30000, 2)), "EPSG:32633").compute()
    assert np.array_equal(back.view(np.uint64), utm.unproject(projected).view(np.uint64))
    # Chunks that split the pairs are joined first.
    split = da.from_array(pairs, chunks=(50000, 1))
    assert np.array_equal(ox.dask.project(split, utm).compute(), projected)


def test_dataframe_columns_partition_by_partition(client):
    utm = ox.CoordinateSystem(32633)
    rng = np.random.default_rng(4)
    frame = pd.DataFrame({"lon": rng.uniform(12, 18, 50000), "lat": rng.uniform(-80, 84, 50000),
                          "name": ["p"] * 50000})
    ddf = dd.from_pandas(frame, npartitions=5)
    out = ox.dask.project(ddf, utm, columns=("lon", "lat"), outputs=("x", "y")).compute()
    x, y = utm.project(frame["lon"].to_numpy(), frame["lat"].to_numpy())
    assert np.array_equal(out["x"].to_numpy(), x) and np.array_equal(out["y"].to_numpy(), y)
    assert list(out["name"]) == list(frame["name"])
    with pytest.raises(ValueError):
        ox.dask.project(ddf, utm)


def test_bad_inputs():
    with pytest.raises(ValueError):
        ox.dask.project(da.zeros((10, 3), chunks=5), 32633)
    with pytest.raises(TypeError):
        ox.dask.project(np.zeros((10, 2)), 32633)
    with pytest.raises(ValueError):
        ox.dask.project(da.zeros((10, 2), chunks=5), "EPSG:0")


def test_transformations_block_by_block_and_by_columns(client):
    shift = ox.Transformation(1173)  # a geocentric translation, shipped by its object string
    rng = np.random.default_rng(5)
    pairs = np.column_stack([rng.uniform(-120, -70, 100000), rng.uniform(25, 50, 100000)])
    shifted = ox.dask.transform(da.from_array(pairs, chunks=(20000, 2)), shift).compute()
    assert np.array_equal(shifted.view(np.uint64), shift.forward(pairs).view(np.uint64))
    back = ox.dask.transform(da.from_array(shifted, chunks=(30000, 2)), 1173, inverse=True).compute()
    assert np.array_equal(back.view(np.uint64), shift.inverse(shifted).view(np.uint64))
    frame = pd.DataFrame({"lon": pairs[:5000, 0], "lat": pairs[:5000, 1]})
    out = ox.dask.transform(dd.from_pandas(frame, npartitions=3), shift, columns=("lon", "lat")).compute()
    lon, lat = shift.forward(frame["lon"].to_numpy(), frame["lat"].to_numpy())
    assert np.array_equal(out["lon"].to_numpy(), lon) and np.array_equal(out["lat"].to_numpy(), lat)
