"""Reprojection of dask arrays and dataframes, block by block, lazily.

The coordinate system or transformation travels to the workers by its object
string (objects pickle that way), so any worker process or machine with the
module converts its blocks itself; the results equal the in-process ones bit
for bit, as every block goes through the same library routine::

    import dask.array as da
    import ox, ox.dask

    points = da.random.uniform(-1, 1, size=(100_000_000, 2), chunks=(1_000_000, 2))
    xy = ox.dask.project(points * [3, 80] + [15, 0], ox.CoordinateSystem(32633))
    xy.compute()
"""

import numpy as _np

from . import CoordinateSystem, Transformation

__all__ = ["project", "unproject", "transform"]


def _pairs_block(block, obj, method, kwargs):
    return getattr(obj, method)(_np.ascontiguousarray(block, dtype=_np.float64), **kwargs)


def _frame_partition(frame, obj, method, columns, outputs, kwargs):
    arrays = [frame[c].to_numpy(dtype=_np.float64) for c in columns]
    results = getattr(obj, method)(*arrays, **kwargs)
    frame = frame.copy()
    for name, values in zip(outputs, results):
        frame[name] = values
    return frame


def _apply(data, obj, method, columns, outputs, kwargs):
    try:
        import dask.array as da
    except ImportError:  # pragma: no cover
        raise ImportError("ox.dask needs dask") from None
    if isinstance(data, da.Array):
        if data.ndim != 2 or data.shape[1] != 2:
            raise ValueError("a dask array of points has the shape (N, 2)")
        if len(data.chunks[1]) != 1:
            data = data.rechunk({1: 2})
        return data.map_blocks(_pairs_block, obj, method, kwargs, dtype=_np.float64)
    try:
        import dask.dataframe as dd
    except ImportError:  # pragma: no cover
        dd = None
    if dd is not None and isinstance(data, dd.DataFrame):
        if columns is None or len(columns) not in (2, 3):
            raise ValueError("a dataframe needs the names of its coordinate columns, e.g. columns=('lon', 'lat')")
        outputs = tuple(outputs) if outputs is not None else tuple(columns)
        if len(outputs) != len(columns):
            raise ValueError("outputs must name as many columns as columns")
        meta = data._meta.copy()
        for name in outputs:
            meta[name] = _np.array([], dtype=_np.float64)
        return data.map_partitions(_frame_partition, obj, method, tuple(columns), outputs, kwargs, meta=meta)
    raise TypeError("ox.dask converts dask arrays of shape (N, 2) and dask dataframes, not %s" % type(data).__name__)


def project(data, system, columns=None, outputs=None):
    """Projects a dask array of (longitude, latitude) pairs, shape (N, 2), or
    the two columns `columns` of a dask dataframe (written to `outputs`,
    by default the same columns), lazily, block by block; `system` is a
    CoordinateSystem or anything it takes."""
    cs = system if isinstance(system, CoordinateSystem) else CoordinateSystem(system)
    return _apply(data, cs, "project", columns, outputs, {})


def unproject(data, system, columns=None, outputs=None, center=None):
    """The inverse of :func:`project`."""
    cs = system if isinstance(system, CoordinateSystem) else CoordinateSystem(system)
    return _apply(data, cs, "unproject", columns, outputs, {"center": center})


def transform(data, transformation, columns=None, outputs=None, inverse=False):
    """Shifts (longitude, latitude) pairs or the columns of a dataframe (two,
    or three with heights) through a Transformation, forward or inverse."""
    t = transformation if isinstance(transformation, Transformation) else Transformation(transformation)
    return _apply(data, t, "inverse" if inverse else "forward", columns, outputs, {})
