"""Coordinate systems, map projections and datum transformations over numpy.

The library's objects from a code (``32633``, ``"EPSG:32633"``), a definition
string (``"OX_PCS_WGS_1984_UTM_ZONE_33N"``), an object string
(``'PROJCS["WGS_1984_UTM_Zone_33N",...]'``) or a file holding one::

    import numpy as np
    import ox

    utm = ox.CoordinateSystem("EPSG:32633")
    x, y = utm.project(np.array([15.0, 16.5]), np.array([52.0, 48.2]))
    lon, lat = utm.unproject(x, y)

Conversions take numpy arrays of any shape (other dtypes are converted to
float64 once), or scalars, and return new arrays; ``out=`` writes into
given arrays, and ``inplace=True`` converts an interleaved ``(N, 2)``
float64 C-contiguous array where it is, with no copy.  The interpreter lock
is released around every conversion, so threads converting chunks of one
array run in parallel.  A point that cannot be converted comes back as NaN;
``return_count=True`` adds the number of points converted to the result.
Objects pickle by their object string, so they travel to other processes
and machines (see :mod:`ox.dask`).
"""

import os as _os

from . import _ox

__all__ = [
    "CoordinateSystem",
    "Transformation",
    "lookup",
    "list_systems",
    "identify",
    "version",
]

_PREFIX_KINDS = (
    ("OX_PCS_", "projcs"),
    ("OX_GCS_", "geogcs"),
    ("OX_VCS_", "vertcs"),
    ("OX_GT_", "geogtran"),
)

# A plain code names a coordinate system first: projected, geographic, vertical.
_SYSTEM_KINDS = ("projcs", "geogcs", "vertcs")


def version():
    """The library's version text."""
    return _ox.version()


def _parse_code(text):
    """The code of "EPSG:NNNN" or "NNNN", else None."""
    t = text.strip()
    if t[:5].upper() == "EPSG:":
        t = t[5:].strip()
    if t.isdigit():
        return int(t)
    return None


def _handle(source, kinds):
    """The library object that `source` names, of one of `kinds`; ValueError
    saying what was wrong otherwise."""
    if isinstance(source, bool) or source is None:
        raise ValueError("a coordinate system needs a code, a definition string, an object string or a file, "
                         "not %r" % (source,))
    if isinstance(source, int):
        code = source
    elif isinstance(source, str):
        text = source.strip()
        if not text:
            raise ValueError("an empty text names no object")
        if "\0" in text:
            raise ValueError("the text holds a NUL character")
        code = _parse_code(text)
        if code is None and text.upper().startswith("OX_"):
            kind = next((k for p, k in _PREFIX_KINDS if text.upper().startswith(p)), None)
            code = _ox.defstring_to_int(text)
            if code == 0 or kind not in kinds:
                raise ValueError("no %s in the catalogue has the definition string %r" % ("/".join(kinds), text))
            h = _ox.from_code(kind, code)
            if h is None:
                raise ValueError("the catalogue cannot build %r" % text)
            return h
        if code is None:
            if "[" in text:
                h = _ox.from_string(text)
                if h is None:
                    raise ValueError("the object string could not be read: %.80s..." % text)
                if h.kind not in kinds:
                    raise ValueError("the object string holds a %s, not a %s" % (h.kind, "/".join(kinds)))
                return h
            if _os.path.isfile(text):
                with open(text, "r", encoding="utf-8", errors="replace") as f:
                    content = f.read(1 << 20)
                if "[" in content:
                    return _handle(content, kinds)
                # A legacy keyword-per-line projection file.
                h, error = _ox.from_prjstring(content)
                if h is None or h.kind not in kinds:
                    raise ValueError("the file %r holds neither an object string nor a legacy projection file "
                                     "the library reads as a system (error %d)" % (text, error))
                return h
            raise ValueError("%r is neither a code, a definition string, an object string nor a file" % text)
    else:
        raise ValueError("a coordinate system needs a code or a text, not %s" % type(source).__name__)
    if code <= 0 or code > 2147483647:
        raise ValueError("%d is not a catalogue code" % code)
    for kind in kinds:
        h = _ox.from_code(kind, code)
        if h is not None:
            return h
    raise ValueError("the catalogue has no %s with the code %d" % (" or ".join(kinds), code))


def _readable_text(handle):
    """The object string with as many AUTHORITY clauses as still read back."""
    for option in (2, 1, 0):
        text = handle.text(option)
        if text and _ox.from_string(text) is not None:
            return text
    return handle.text(0)


# The status of an object built from the catalogue for the code asked.
_CATALOGUE_STATUS = 4


def _fold(name):
    """A name as the library compares names: case and separators ignored."""
    return "".join(c for c in name.lower() if c not in " \t\r\n-_")


class _Object:
    """What systems and transformations share: the handle, names, texts,
    equality, pickling."""

    __slots__ = ("_h",)
    _kinds = ()

    def __init__(self, source):
        self._h = source._h if isinstance(source, _Object) else _handle(source, self._kinds)

    @classmethod
    def _from_handle(cls, h):
        obj = cls.__new__(cls)
        obj._h = h
        return obj

    @property
    def name(self):
        """The object's name."""
        return self._h.name

    @property
    def authority(self):
        """The name of the authority that defines the object ("EPSG"), or None."""
        a = self._h.authority()
        return a[0] if a else None

    @property
    def code(self):
        """The object's code in its authority, or None."""
        a = self._h.authority()
        return a[1] if a and a[1] > 0 else None

    def to_string(self, authority=0):
        """The object string; `authority` 0 writes no AUTHORITY clause, 1 on the
        outermost object, 2 on every object ("" when the text would be longer
        than the library's object strings)."""
        return self._h.text(int(authority))

    def __str__(self):
        return self.to_string()

    def __repr__(self):
        code = self.code
        where = "%s:%d " % (self.authority, code) if code else ""
        return '%s(%s"%s")' % (type(self).__name__, where, self.name)

    def __eq__(self, other):
        if not isinstance(other, _Object):
            return NotImplemented
        return self._h.equals(other._h)

    def __hash__(self):
        # Equal objects have names equal under the library's comparison.
        return hash((self._h.kind, _fold(self.name)))

    def __reduce__(self):
        # The object string, and the code when the object came from the
        # catalogue as it is: the text carries 16 significant digits, so a
        # catalogue object is rebuilt from its code (bit for bit the same,
        # converting to the same bits) when the catalogue there gives the
        # object the text describes.
        code = self.code if self._h.status == _CATALOGUE_STATUS else None
        return (_restore, (type(self), self._h.kind, code, _readable_text(self._h)))


def _restore(cls, kind, code, text):
    described = _handle(text, cls._kinds)
    if code:
        built = _ox.from_code(kind, code)
        if built is not None and built.equals(described):
            return cls._from_handle(built)
    return cls._from_handle(described)


def _result(values, scalar, return_count):
    """The converted arrays (one array of pairs, or one per coordinate; floats
    for scalars), with the count when asked."""
    *arrays, count = values
    if scalar:
        arrays = [float(a.reshape(-1)[0]) for a in arrays]
    if len(arrays) == 1:
        return (arrays[0], count) if return_count else arrays[0]
    return (*arrays, count) if return_count else tuple(arrays)


def _is_scalar(v):
    return not hasattr(v, "__len__") and not hasattr(v, "shape")


class CoordinateSystem(_Object):
    """A projected, geographic or vertical coordinate system.

    ``CoordinateSystem(source)`` takes a catalogue code (``32633``,
    ``"EPSG:32633"``; a plain code names a projected system first, then a
    geographic, then a vertical one), a definition string, an object string
    or the name of a file holding one or a legacy projection file;
    ValueError says what was wrong.
    """

    __slots__ = ()
    _kinds = _SYSTEM_KINDS

    @property
    def is_projected(self):
        """True for a projected system."""
        return self._h.kind == "projcs"

    @property
    def is_geographic(self):
        """True for a geographic system."""
        return self._h.kind == "geogcs"

    @property
    def geographic(self):
        """The geographic system of a projected system (itself for a
        geographic one; None for a vertical one)."""
        if self._h.kind == "geogcs":
            return self
        h = _ox.geographic_of(self._h)
        return CoordinateSystem._from_handle(h) if h is not None else None

    def _convert(self, inverse, x, y, out, inplace, return_count, center=None):
        if not self.is_projected:
            raise TypeError("only a projected system projects points; %r is not one" % self)
        scalar = _is_scalar(x) and (y is None or _is_scalar(y))
        if scalar and y is not None:
            x, y = [x], [y]
        return _result(_ox.convert(self._h, inverse, x, y, None, out, inplace, center), scalar and y is not None,
                       return_count)

    def to_prj(self):
        """The legacy keyword-per-line projection file of the system (a
        projected or geographic one); ValueError when it has no legacy form."""
        text, error = _ox.to_prjstring(self._h)
        if error != 0 or not text:
            raise ValueError("%r has no legacy projection file form (error %d)" % (self, error))
        return text

    def project(self, x, y=None, *, out=None, inplace=False, return_count=False):
        """Projects longitudes and latitudes (in the angular unit of the
        system's geographic system) to x and y (in its linear unit).

        ``project(lon, lat)`` with two arrays of one shape (or two scalars)
        returns ``(x, y)``; ``project(pairs)`` with one array whose last
        dimension is 2 returns one array of pairs.  ``out``: the arrays (a
        pair of arrays, or one array of pairs) to write into;
        ``inplace=True``: convert the (N, 2) float64 C-contiguous ``pairs``
        where they are.  ``return_count=True`` adds the number of points
        converted; the others are NaN.
        """
        return self._convert(False, x, y, out, inplace, return_count)

    def unproject(self, x, y=None, *, center=None, out=None, inplace=False, return_count=False):
        """Unprojects x and y back to longitudes and latitudes, as
        :meth:`project` takes them; ``center``: return longitudes within half
        a turn of this longitude."""
        return self._convert(True, x, y, out, inplace, return_count, center)


class Transformation(_Object):
    """A geographic transformation between two datums (a catalogue code such
    as ``1314``, ``"EPSG:1314"``, a definition string, a GEOGTRAN object
    string or a file holding one)."""

    __slots__ = ()
    _kinds = ("geogtran",)

    def _convert(self, inverse, lon, lat, h, out, inplace, return_count):
        scalar = _is_scalar(lon) and (lat is None or _is_scalar(lat))
        if scalar and lat is not None:
            lon, lat = [lon], [lat]
            h = None if h is None else [h]
        return _result(_ox.convert(self._h, inverse, lon, lat, h, out, inplace), scalar and lat is not None,
                       return_count)

    def forward(self, lon, lat=None, h=None, *, out=None, inplace=False, return_count=False):
        """Shifts longitudes and latitudes from the first system to the second
        (heights in metres alongside when given); arrays as for
        :meth:`CoordinateSystem.project`."""
        return self._convert(False, lon, lat, h, out, inplace, return_count)

    def inverse(self, lon, lat=None, h=None, *, out=None, inplace=False, return_count=False):
        """Shifts from the second system back to the first."""
        return self._convert(True, lon, lat, h, out, inplace, return_count)


def lookup(code):
    """The catalogue object of a code or definition string: a
    CoordinateSystem (projected, geographic or vertical, in that order) or a
    Transformation; ValueError when the catalogue has none."""
    try:
        return CoordinateSystem(code)
    except ValueError:
        pass
    try:
        return Transformation(code)
    except ValueError:
        raise ValueError("the catalogue has nothing for %r" % (code,)) from None


_LIST_KINDS = ("projcs", "geogcs", "vertcs", "geogtran", "datum", "vdatum", "spheroid", "primem", "projection",
               "parameter", "method", "htmethod", "angular_unit", "linear_unit")


def list_systems(kind="projcs"):
    """Every current catalogue object of a kind as a list of (code, name),
    sorted by name; kind is one of "projcs", "geogcs", "vertcs", "geogtran",
    "datum", "vdatum", "spheroid", "primem", "projection", "parameter",
    "method", "htmethod", "angular_unit", "linear_unit"."""
    if kind not in _LIST_KINDS:
        raise ValueError("unknown kind %r; one of %s" % (kind, ", ".join(_LIST_KINDS)))
    return _ox.predefined(kind)


def identify(system, limit=16):
    """The catalogue systems equivalent to `system` (a CoordinateSystem or
    anything it takes) by their parameters, best first, as a list of
    (code, score) with the scores 100 (names and parameters equal), 90
    (parameters equal, another name) and 80 (parameters equal, on a datum of
    another name and the same figure)."""
    cs = system if isinstance(system, CoordinateSystem) else CoordinateSystem(system)
    return _ox.identify(cs._h, int(limit))
