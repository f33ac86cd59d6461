"""Shared fixtures: the library's C API through ctypes (the truth the module
must equal bit for bit) and a few systems."""

import ctypes
import os

import numpy as np
import pytest

import ox


def _library_path():
    # build/python/ox/_ox*.so -> build/libox.so
    package = os.path.dirname(ox.__file__)
    for candidate in ("libox.so", "libox.so.9"):
        path = os.path.join(package, "..", "..", candidate)
        if os.path.exists(path):
            return path
    return None


@pytest.fixture(scope="session")
def capi():
    """ox_projcs_from_string, ox_geog_to_proj and ox_proj_to_geog of the shared library."""
    path = _library_path()
    if path is None:
        pytest.skip("the shared library is not beside the module")
    lib = ctypes.CDLL(path)
    lib.ox_projcs_from_string.restype = ctypes.c_void_p
    lib.ox_projcs_from_string.argtypes = [ctypes.c_char_p]
    lib.ox_projcs_del.argtypes = [ctypes.c_void_p]
    for f in (lib.ox_geog_to_proj, lib.ox_proj_to_geog):
        f.restype = ctypes.c_int32
        f.argtypes = [ctypes.c_void_p, ctypes.c_int32, ctypes.POINTER(ctypes.c_double)]
    return lib


@pytest.fixture(scope="session")
def utm():
    return ox.CoordinateSystem(32633)


def random_points(n, lon0=15.0, width=3.0, seed=1):
    rng = np.random.default_rng(seed)
    return rng.uniform(lon0 - width, lon0 + width, n), rng.uniform(-80.0, 84.0, n)
