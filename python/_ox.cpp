// The compiled part of the Python module `ox`: handles to the library's
// objects (deleted with the Python object), their names, texts and
// authorities, the catalogue, and the conversion of numpy arrays with the
// global interpreter lock released.  The Python side (ox/__init__.py) holds
// the classes users see.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ox.h"

namespace py = pybind11;

namespace {

// The kinds of objects the module hands out.
enum class Kind { kProjcs, kGeogcs, kVertcs, kGeogtran };

const char *kind_name(Kind k) {
    switch (k) {
        case Kind::kProjcs: return "projcs";
        case Kind::kGeogcs: return "geogcs";
        case Kind::kVertcs: return "vertcs";
        case Kind::kGeogtran: return "geogtran";
    }
    return "";
}

std::optional<Kind> kind_of(const ox_object *h) {
    if (ox_projcs_p(h)) return Kind::kProjcs;
    if (ox_geogcs_p(h)) return Kind::kGeogcs;
    if (ox_vertcs_p(h)) return Kind::kVertcs;
    if (ox_geogtran_p(h)) return Kind::kGeogtran;
    return std::nullopt;
}

// One object of the library, owned.
class Handle {
  public:
    explicit Handle(ox_object *h, Kind kind) : h_(h), kind_(kind) {}
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    ~Handle() {
        switch (kind_) {
            case Kind::kProjcs: ox_projcs_del(h_); break;
            case Kind::kGeogcs: ox_geogcs_del(h_); break;
            case Kind::kVertcs: ox_vertcs_del(h_); break;
            case Kind::kGeogtran: ox_geogtran_del(h_); break;
        }
    }
    ox_object *get() const { return h_; }
    Kind kind() const { return kind_; }

    std::string name() const {
        char buffer[OX_NAME_SIZE] = {};
        switch (kind_) {
            case Kind::kProjcs: ox_projcs_name(h_, buffer); break;
            case Kind::kGeogcs: ox_geogcs_name(h_, buffer); break;
            case Kind::kVertcs: ox_vertcs_name(h_, buffer); break;
            case Kind::kGeogtran: ox_geogtran_name(h_, buffer); break;
        }
        return buffer;
    }

    // The object string with AUTHORITY clauses by option (0 none, 1 on the
    // outermost object, 2 everywhere); "" when the text does not fit.
    std::string text(int option) const {
        std::vector<char> buffer(OX_OBJSTRING_SIZE, '\0');
        switch (kind_) {
            case Kind::kProjcs: ox_projcs_to_string_ext(h_, option, buffer.data()); break;
            case Kind::kGeogcs: ox_geogcs_to_string_ext(h_, option, buffer.data()); break;
            case Kind::kVertcs: ox_vertcs_to_string_ext(h_, option, buffer.data()); break;
            case Kind::kGeogtran: ox_geogtran_to_string_ext(h_, option, buffer.data()); break;
        }
        return buffer.data();
    }

    // How the object was made (the library's status: 4 from the catalogue for
    // the code asked, 2 read from an object string, ...).
    int32_t status() const {
        switch (kind_) {
            case Kind::kProjcs: return ox_projcs_status(h_);
            case Kind::kGeogcs: return ox_geogcs_status(h_);
            case Kind::kVertcs: return ox_vertcs_status(h_);
            case Kind::kGeogtran: return ox_geogtran_status(h_);
        }
        return 0;
    }

    bool equals(const Handle &other) const {
        if (other.kind_ != kind_) return false;
        switch (kind_) {
            case Kind::kProjcs: return ox_projcs_eq(h_, other.h_) != 0;
            case Kind::kGeogcs: return ox_geogcs_eq(h_, other.h_) != 0;
            case Kind::kVertcs: return ox_vertcs_eq(h_, other.h_) != 0;
            case Kind::kGeogtran: return ox_geogtran_eq(h_, other.h_) != 0;
        }
        return false;
    }

    // (authority name, code, version), or None.
    std::optional<std::tuple<std::string, int32_t, std::string>> authority() const {
        ox_object *a = nullptr;
        switch (kind_) {
            case Kind::kProjcs: a = ox_projcs_authority(h_); break;
            case Kind::kGeogcs: a = ox_geogcs_authority(h_); break;
            case Kind::kVertcs: a = ox_vertcs_authority(h_); break;
            case Kind::kGeogtran: a = ox_geogtran_authority(h_); break;
        }
        if (a == nullptr) return std::nullopt;
        char name[OX_NAME_SIZE] = {}, version[OX_NAME_SIZE] = {};
        ox_authority_name(a, name);
        ox_authority_version(a, version);
        return std::make_tuple(std::string(name), ox_authority_authcode(a), std::string(version));
    }

  private:
    ox_object *h_;
    Kind kind_;
};

std::shared_ptr<Handle> wrap(ox_object *h) {
    if (h == nullptr) return nullptr;
    const std::optional<Kind> kind = kind_of(h);
    if (!kind) {
        ox_coordsys_del(h);
        return nullptr;
    }
    auto handle = std::make_shared<Handle>(h, *kind);
    // Constants are loaded before any conversion can release the lock, so
    // that conversions in several threads only read the system.
    if (*kind == Kind::kProjcs) ox_projcs_load_constants(h);
    return handle;
}

std::shared_ptr<Handle> from_code(const std::string &kind, int64_t code) {
    if (code <= 0 || code > std::numeric_limits<int32_t>::max()) return nullptr;
    const auto c = static_cast<int32_t>(code);
    if (kind == "projcs") return wrap(ox_factory_projcs(c));
    if (kind == "geogcs") return wrap(ox_factory_geogcs(c));
    if (kind == "vertcs") return wrap(ox_factory_vertcs(c));
    if (kind == "geogtran") return wrap(ox_factory_geogtran(c));
    throw py::value_error("unknown kind '" + kind + "'");
}

// An object string of any of the module's kinds, or None.
// The reader is chosen by the leading keyword.
std::shared_ptr<Handle> from_string(const std::string &text) {
    if (text.find('\0') != std::string::npos) return nullptr;
    const size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string::npos) return nullptr;
    auto starts = [&](const char *keyword) {
        const size_t n = std::strlen(keyword);
        if (text.size() - start < n) return false;
        for (size_t i = 0; i < n; ++i)
            if (std::toupper(static_cast<unsigned char>(text[start + i])) != keyword[i]) return false;
        return true;
    };
    if (starts("GEOGTRAN")) return wrap(ox_geogtran_from_string(text.c_str()));
    if (starts("VERTCS")) return wrap(ox_vertcs_from_string(text.c_str()));
    return wrap(ox_coordsys_from_string(text.c_str()));
}

// A legacy projection file's text: (the system or None, the error code).
std::pair<std::shared_ptr<Handle>, int32_t> from_prjstring(const std::string &text) {
    if (text.find('\0') != std::string::npos) return {nullptr, -102};
    int32_t error = 0;
    ox_object *h = ox_coordsys_from_prjstring(text.c_str(), &error);
    return {wrap(h), error};
}

// The legacy projection file of a system: (the text, the error code).
std::pair<std::string, int32_t> to_prjstring(const Handle &handle) {
    std::vector<char> buffer(OX_PRJSTRING_SIZE, '\0');
    int32_t error = 0;
    if (handle.kind() != Kind::kProjcs && handle.kind() != Kind::kGeogcs) return {"", -200};
    ox_coordsys_to_prjstring(handle.get(), 0, buffer.data(), &error);
    return {buffer.data(), error};
}

std::shared_ptr<Handle> geographic_of(const Handle &projcs) {
    if (projcs.kind() != Kind::kProjcs) return nullptr;
    return wrap(ox_geogcs_clone(ox_projcs_geogcs(projcs.get())));
}

// ---------------------------------------------------------------------------
// Conversions.
// ---------------------------------------------------------------------------

using Array = py::array_t<double, py::array::c_style | py::array::forcecast>;

// The conversion of one handle in one direction over interleaved pairs.
struct Converter {
    const Handle *handle;
    bool inverse;
    double center;
    bool centred;

    int64_t operator()(int64_t n, double *pairs, double *heights) const {
        int64_t converted = 0;
        constexpr int64_t kMaxCall = std::numeric_limits<int32_t>::max() / 2;
        for (int64_t start = 0; start < n; start += kMaxCall) {
            const auto m = static_cast<int32_t>(std::min(kMaxCall, n - start));
            double *p = pairs + 2 * start;
            double *h = heights ? heights + start : nullptr;
            converted += call(m, p, h);
        }
        return converted;
    }

  private:
    int32_t call(int32_t n, double *pairs, double *heights) const {
        ox_object *h = handle->get();
        switch (handle->kind()) {
            case Kind::kProjcs:
                if (!inverse) return ox_geog_to_proj(h, n, pairs);
                return centred ? ox_proj_to_geog_center(h, n, pairs, center) : ox_proj_to_geog(h, n, pairs);
            case Kind::kGeogtran:
#ifdef OX_HAVE_GEOG1_TO_GEOG2
                return inverse ? ox_geog2_to_geog1(h, n, pairs, heights) : ox_geog1_to_geog2(h, n, pairs, heights);
#else
                (void)heights;
                return 0;
#endif
            default: return 0;
        }
    }
};

// Points converted per pass through the interleaving buffer: small enough
// to stay in the cache, large enough for the library's vectorised loops.
constexpr int64_t kChunk = 4096;

// Converts the separate coordinate arrays x, y (and heights) into new arrays
// of the same shape, through a buffer of interleaved pairs; the count.
int64_t convert_separate(const Converter &convert, const double *x, const double *y, const double *h, double *xo,
                         double *yo, double *ho, int64_t n) {
    std::vector<double> pairs(2 * static_cast<size_t>(std::min(n, kChunk)));
    int64_t converted = 0;
    for (int64_t start = 0; start < n; start += kChunk) {
        const int64_t m = std::min(kChunk, n - start);
        for (int64_t i = 0; i < m; ++i) {
            pairs[2 * i] = x[start + i];
            pairs[2 * i + 1] = y[start + i];
        }
        if (h != nullptr) std::copy(h + start, h + start + m, ho + start);
        converted += convert(m, pairs.data(), ho ? ho + start : nullptr);
        for (int64_t i = 0; i < m; ++i) {
            xo[start + i] = pairs[2 * i];
            yo[start + i] = pairs[2 * i + 1];
        }
    }
    return converted;
}

// A new array of the shape of `a`.
Array like(const py::array &a) { return Array(std::vector<py::ssize_t>(a.shape(), a.shape() + a.ndim())); }

bool is_writable(const py::array &a) {
    return a.dtype().is(py::dtype::of<double>()) && (a.flags() & py::array::c_style) && a.writeable();
}
bool is_writable_pairs(const py::array &a) { return is_writable(a) && a.ndim() == 2 && a.shape(1) == 2; }

// convert(handle, inverse, a, b, h, out, inplace, center) -> (results, count)
//
// With b None, `a` holds interleaved pairs (..., 2): converted in place when
// `inplace` (it must then be a writable C-contiguous float64 array), into
// `out` when given (the same requirements and shape), else into a new
// array.  With b given, `a` and `b` are the two coordinates, any shape (the
// same), and new arrays come back (or `out`, a pair of arrays).  `h`: the
// heights of a transformation, same shape, converted alongside.
py::tuple convert(const Handle &handle, bool inverse, py::object a, py::object b, py::object h, py::object out,
                  bool inplace, py::object center) {
    if (handle.kind() == Kind::kVertcs) throw py::type_error("a vertical system converts no points");
    if (handle.kind() == Kind::kGeogcs) throw py::type_error("a geographic system has nothing to project");
    Converter converter{&handle, inverse, 0.0, false};
    if (!center.is_none()) {
        converter.center = center.cast<double>();
        converter.centred = true;
    }
    if (b.is_none()) {
        // Interleaved pairs.
        py::array target;
        if (inplace || !out.is_none()) {
            target = py::reinterpret_borrow<py::array>(inplace ? a : out);
            if (!py::isinstance<py::array>(inplace ? a : out))
                throw py::type_error("in-place conversion needs a numpy array");
            if (!is_writable_pairs(target))
                throw py::value_error(
                    "in-place conversion needs a writable C-contiguous float64 array of shape (N, 2)");
            if (!inplace) {
                const Array source = Array::ensure(a);
                if (!source) throw py::type_error("the coordinates must be numbers");
                if (source.size() != target.size()) throw py::value_error("out has another shape than the input");
                std::memcpy(target.mutable_data(), source.data(), sizeof(double) * static_cast<size_t>(source.size()));
            }
        } else {
            const Array source = Array::ensure(a);
            if (!source) throw py::type_error("the coordinates must be numbers");
            if (source.ndim() < 1 || source.shape(source.ndim() - 1) != 2)
                throw py::value_error("interleaved coordinates need a last dimension of 2");
            target = like(source);
            std::memcpy(target.mutable_data(), source.data(), sizeof(double) * static_cast<size_t>(source.size()));
        }
        double *pairs = static_cast<double *>(target.mutable_data());
        const int64_t n = static_cast<int64_t>(target.size() / 2);
        // Heights: converted where they are with `inplace`, else into a copy.
        double *heights = nullptr;
        py::array heights_out;
        if (!h.is_none()) {
            const Array source = Array::ensure(h);
            if (!source || source.size() != n) throw py::value_error("heights need one value per point");
            if (inplace) {
                if (!py::isinstance<py::array>(h) || !is_writable(py::reinterpret_borrow<py::array>(h)))
                    throw py::value_error("in-place heights need a writable C-contiguous float64 array");
                heights_out = py::reinterpret_borrow<py::array>(h);
            } else {
                heights_out = like(source);
                std::memcpy(heights_out.mutable_data(), source.data(), sizeof(double) * static_cast<size_t>(n));
            }
            heights = static_cast<double *>(heights_out.mutable_data());
        }
        int64_t count;
        {
            py::gil_scoped_release release;
            count = converter(n, pairs, heights);
        }
        if (heights != nullptr) return py::make_tuple(target, heights_out, count);
        return py::make_tuple(target, count);
    }
    const Array x = Array::ensure(a), y = Array::ensure(b);
    if (!x || !y) throw py::type_error("the coordinates must be numbers");
    if (x.ndim() != y.ndim() || !std::equal(x.shape(), x.shape() + x.ndim(), y.shape()))
        throw py::value_error("x and y must have the same shape");
    const bool with_heights = !h.is_none();
    Array hs;
    if (with_heights) {
        hs = Array::ensure(h);
        if (!hs || hs.ndim() != x.ndim() || !std::equal(x.shape(), x.shape() + x.ndim(), hs.shape()))
            throw py::value_error("heights must have the shape of the coordinates");
    }
    py::array xo, yo, ho;
    if (!out.is_none()) {
        const py::tuple pair = out.cast<py::tuple>();
        if (pair.size() < 2) throw py::value_error("out must be a pair of arrays");
        for (py::handle o : pair)
            if (!py::isinstance<py::array>(o)) throw py::type_error("out must hold numpy arrays");
        xo = py::reinterpret_borrow<py::array>(pair[0]);
        yo = py::reinterpret_borrow<py::array>(pair[1]);
        for (const py::array &o : {xo, yo})
            if (!is_writable(o) || o.size() != x.size())
                throw py::value_error("out must be writable C-contiguous float64 arrays of the input's size");
    } else {
        xo = like(x);
        yo = like(y);
    }
    if (with_heights) ho = like(hs);
    const int64_t n = static_cast<int64_t>(x.size());
    int64_t count;
    {
        py::gil_scoped_release release;
        count = convert_separate(converter, x.data(), y.data(), with_heights ? hs.data() : nullptr,
                                 static_cast<double *>(xo.mutable_data()), static_cast<double *>(yo.mutable_data()),
                                 with_heights ? static_cast<double *>(ho.mutable_data()) : nullptr, n);
    }
    if (with_heights) return py::make_tuple(xo, yo, ho, count);
    return py::make_tuple(xo, yo, count);
}

// ---------------------------------------------------------------------------
// The catalogue.
// ---------------------------------------------------------------------------

std::vector<std::pair<int32_t, std::string>> predefined(const std::string &kind) {
    using List = ox_predefined_entry *(*)(int32_t *);
    static const std::pair<const char *, List> kLists[] = {
        {"projcs", ox_predefined_projcs},     {"geogcs", ox_predefined_geogcs},
        {"vertcs", ox_predefined_vertcs},     {"geogtran", ox_predefined_geogtran},
        {"datum", ox_predefined_datum},       {"vdatum", ox_predefined_vdatum},
        {"spheroid", ox_predefined_spheroid}, {"primem", ox_predefined_primem},
        {"projection", ox_predefined_projection}, {"parameter", ox_predefined_parameter},
        {"method", ox_predefined_method},     {"htmethod", ox_predefined_htmethod},
        {"angular_unit", ox_predefined_angular_unit}, {"linear_unit", ox_predefined_linear_unit},
    };
    for (const auto &[name, list] : kLists) {
        if (kind != name) continue;
        int32_t count = 0;
        ox_predefined_entry *table;
        {
            py::gil_scoped_release release;
            table = list(&count);
        }
        std::vector<std::pair<int32_t, std::string>> out;
        out.reserve(static_cast<size_t>(count));
        for (int32_t i = 0; table != nullptr && i < count; ++i) out.emplace_back(table[i].code, table[i].name);
        ox_table_del(table);
        return out;
    }
    throw py::value_error("unknown kind '" + kind + "'");
}

std::vector<std::pair<int32_t, int32_t>> identify(const Handle &handle, int32_t capacity) {
    if (capacity < 1) return {};
    std::vector<ox_identify_candidate> candidates(static_cast<size_t>(capacity));
    int32_t found;
    {
        py::gil_scoped_release release;
        found = ox_factory_identify(handle.get(), candidates.data(), capacity);
    }
    std::vector<std::pair<int32_t, int32_t>> out;
    for (int32_t i = 0; i < std::min(found, capacity); ++i) out.emplace_back(candidates[i].code, candidates[i].score);
    return out;
}

std::string version() { return ox_version(); }

}  // namespace

PYBIND11_MODULE(_ox, m) {
    m.doc() = "The compiled part of the ox module (use the classes of `ox`).";
    py::class_<Handle, std::shared_ptr<Handle>>(m, "Handle")
        .def_property_readonly("kind", [](const Handle &h) { return kind_name(h.kind()); })
        .def_property_readonly("name", &Handle::name)
        .def("text", &Handle::text, py::arg("option") = 0)
        .def_property_readonly("status", &Handle::status)
        .def("equals", &Handle::equals)
        .def("authority", &Handle::authority);
    m.def("from_code", &from_code, py::arg("kind"), py::arg("code"));
    m.def("from_string", &from_string, py::arg("text"));
    m.def("from_prjstring", &from_prjstring, py::arg("text"));
    m.def("to_prjstring", &to_prjstring, py::arg("handle"));
    m.def("defstring_to_int", [](const std::string &text) { return ox_factory_defstring_to_int(text.c_str()); });
    m.def("geographic_of", &geographic_of);
    m.def("convert", &convert, py::arg("handle"), py::arg("inverse"), py::arg("a"), py::arg("b") = py::none(),
          py::arg("h") = py::none(), py::arg("out") = py::none(), py::arg("inplace") = false,
          py::arg("center") = py::none());
    m.def("predefined", &predefined, py::arg("kind"));
    m.def("identify", &identify, py::arg("handle"), py::arg("capacity") = 16);
    m.def("version", &version);
    m.attr("has_transformations") =
#ifdef OX_HAVE_GEOG1_TO_GEOG2
        true;
#else
        false;
#endif
}
