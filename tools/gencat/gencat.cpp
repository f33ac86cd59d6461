// gencat: compiles the catalogue files of data/ into the constant tables of
// src/factory/ox_catalogue.h.
//
//     gencat DATA_DIR OUTPUT.cpp
//
// Every row is checked while it is read (codes are integers, numbers are
// finite decimal literals, references name rows that exist, names fit the
// 63 characters of an object name, definition strings are unique); any
// error stops the build with the file and line.  The output is sorted as the
// look-ups require: rows by code, definition strings by name in byte order.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

[[noreturn]] void fail(const std::string &where, const std::string &what) {
    std::fprintf(stderr, "gencat: %s: %s\n", where.c_str(), what.c_str());
    std::exit(1);
}

struct Csv {
    std::string path;
    std::vector<std::string> header;
    std::vector<std::vector<std::string>> rows;
    std::vector<int> lines;

    int column(const std::string &name) const {
        for (size_t i = 0; i < header.size(); ++i)
            if (header[i] == name) return static_cast<int>(i);
        fail(path, "no column " + name);
    }
};

// RFC 4180 fields: quoted fields may hold commas and doubled quotes.
std::vector<std::string> split_csv(const std::string &line) {
    std::vector<std::string> out;
    std::string field;
    bool quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quoted) {
            if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                field += '"';
                ++i;
            } else if (c == '"') {
                quoted = false;
            } else {
                field += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            out.push_back(field);
            field.clear();
        } else {
            field += c;
        }
    }
    out.push_back(field);
    return out;
}

Csv read_csv(const std::string &dir, const std::string &file) {
    Csv csv;
    csv.path = dir + "/" + file;
    std::ifstream in(csv.path);
    if (!in) fail(csv.path, "cannot open");
    std::string line;
    int n = 0;
    while (std::getline(in, line)) {
        ++n;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        std::vector<std::string> fields = split_csv(line);
        if (csv.header.empty()) {
            csv.header = fields;
            continue;
        }
        if (fields.size() != csv.header.size())
            fail(csv.path + ":" + std::to_string(n), "expected " + std::to_string(csv.header.size()) + " fields");
        csv.rows.push_back(fields);
        csv.lines.push_back(n);
    }
    return csv;
}

std::string where(const Csv &c, size_t row) { return c.path + ":" + std::to_string(c.lines[row]); }

long to_int(const Csv &c, size_t row, const std::string &col) {
    const std::string &s = c.rows[row][c.column(col)];
    char *end = nullptr;
    const long v = std::strtol(s.c_str(), &end, 10);
    if (s.empty() || *end != '\0' || v < -2147483647L || v > 2147483647L)
        fail(where(c, row), col + " is not an integer: '" + s + "'");
    return v;
}

// A number as a C++ literal: the decimal text itself, which the compiler
// rounds exactly as it was written out (shortest round-trip text).
std::string number_literal(const std::string &s, const std::string &loc) {
    if (s.empty() || s.find_first_not_of("+-0123456789.eE") != std::string::npos)
        fail(loc, "not a decimal number: '" + s + "'");
    char *end = nullptr;
    const double v = std::strtod(s.c_str(), &end);
    if (*end != '\0' || !std::isfinite(v)) fail(loc, "not a finite number: '" + s + "'");
    std::string lit = s;
    if (lit.find_first_of(".eE") == std::string::npos) lit += ".0";
    return lit;
}

std::string to_number(const Csv &c, size_t row, const std::string &col) {
    return number_literal(c.rows[row][c.column(col)], where(c, row) + " " + col);
}

std::string quoted(const std::string &s, const std::string &loc) {
    if (s.empty() || s.size() > 63) fail(loc, "name empty or longer than 63 characters: '" + s + "'");
    std::string out = "\"";
    for (char ch : s) {
        if (ch == '"' || ch == '\\' || static_cast<unsigned char>(ch) < 0x20 || static_cast<unsigned char>(ch) > 0x7e)
            fail(loc, "name with a character that object strings cannot hold: '" + s + "'");
        out += ch;
    }
    return out + "\"";
}

// Parameter names of the catalogue files and their codes in the parameter
// list; a "Dataset_<grid>" name is the grid parameter of a transformation.
const std::map<std::string, int> kParameterCodes = {
    {"False_Easting", 100001}, {"False_Northing", 100002}, {"Scale_Factor", 100003}, {"Azimuth", 100004},
    {"Height", 100005}, {"Vertical_Shift", 100006}, {"Direction", 100007}, {"Central_Meridian", 100010},
    {"Longitude_Of_Origin", 100011}, {"Longitude_Of_Center", 100012}, {"Longitude_Of_1st_Point", 100013},
    {"Longitude_Of_2nd_Point", 100014}, {"Central_Parallel", 100020}, {"Latitude_Of_Origin", 100021},
    {"Latitude_Of_Center", 100022}, {"Latitude_Of_1st_Point", 100023}, {"Latitude_Of_2nd_Point", 100024},
    {"Standard_Parallel_1", 100025}, {"Standard_Parallel_2", 100026}, {"Pseudo_Standard_Parallel_1", 100027},
    {"Option", 100036}, {"X_Scale", 100037}, {"Y_Scale", 100038}, {"XY_Plane_Rotation", 100039},
    {"X_Axis_Translation", 100040}, {"Y_Axis_Translation", 100041}, {"Z_Axis_Translation", 100042},
    {"X_Axis_Rotation", 100043}, {"Y_Axis_Rotation", 100044}, {"Z_Axis_Rotation", 100045},
    {"Scale_Difference", 100046}, {"X_Coordinate_of_Rotation_Origin", 100048},
    {"Y_Coordinate_of_Rotation_Origin", 100049}, {"Z_Coordinate_of_Rotation_Origin", 100050},
};
constexpr int kDatasetCode = 100047;

struct Output {
    std::ostringstream params;  // the shared parameter pool
    int nparams = 0;
    std::ostringstream body;

    // Appends "a=1;b=2" to the pool; returns "first, count".
    std::string add_params(const std::string &text, const std::string &loc) {
        const int first = nparams;
        int count = 0;
        std::stringstream ss(text);
        std::string item;
        while (std::getline(ss, item, ';')) {
            if (item.empty()) continue;
            const size_t eq = item.find('=');
            if (eq == std::string::npos) fail(loc, "parameter without a value: '" + item + "'");
            const std::string name = item.substr(0, eq);
            const std::string value = number_literal(item.substr(eq + 1), loc);
            if (name.rfind("Dataset_", 0) == 0 && name.size() > 8) {
                params << "    {" << kDatasetCode << ", " << value << ", " << quoted(name, loc) << "},\n";
            } else {
                const auto it = kParameterCodes.find(name);
                if (it == kParameterCodes.end()) fail(loc, "unknown parameter '" + name + "'");
                params << "    {" << it->second << ", " << value << ", nullptr},\n";
            }
            ++nparams;
            ++count;
        }
        if (nparams > 65535 || count > 16) fail(loc, "too many parameters");
        return std::to_string(first) + ", " + std::to_string(count);
    }
};

// Rows of one table as (code, C++ initialiser), emitted sorted by code.
using Rows = std::map<long, std::string>;

void emit_table(Output &out, const std::string &type, const std::string &name, const Rows &rows) {
    const std::string array = name + "Rows";
    out.body << "const " << type << " " << array << "[] = {\n";
    for (const auto &r : rows) out.body << "    " << r.second << ",\n";
    if (rows.empty()) out.body << "    {},\n";
    out.body << "};\n";
    out.body << "}  // namespace\nconst Table<" << type << "> " << name << " = {" << array << ", "
             << rows.size() << "};\nnamespace {\n\n";
}

void add_row(Rows &rows, long code, const std::string &init, const std::string &loc) {
    if (!rows.emplace(code, init).second) fail(loc, "code " + std::to_string(code) + " given twice");
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: gencat DATA_DIR OUTPUT.cpp\n");
        return 2;
    }
    const std::string dir = argv[1];
    Output out;

    // Leaf kinds.
    std::set<long> units, primems, spheroids, datums, geogcs, vdatums, projections, methods;
    for (long c = 43001; c <= 43059; ++c) projections.insert(c);
    for (long c : {9601, 9603, 9604, 9605, 9606, 9607, 9613, 9615, 9636, 109607, 109613}) methods.insert(c);
    Rows rows;
    // Tables of "code, name, numbers...": units, prime meridians, spheroids.
    const auto leaf = [&](const char *file, const char *type, const char *table,
                          std::initializer_list<const char *> numbers, std::set<long> &codes) {
        rows.clear();
        const Csv c = read_csv(dir, file);
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const long code = to_int(c, i, "code");
            std::string init = "{" + std::to_string(code) + ", " + quoted(c.rows[i][c.column("name")], where(c, i));
            for (const char *n : numbers) init += ", " + to_number(c, i, n);
            add_row(rows, code, init + "}", where(c, i));
            codes.insert(code);
        }
        emit_table(out, type, table, rows);
    };
    leaf("units.csv", "UnitRow", "kUnits", {"factor"}, units);
    leaf("primems.csv", "PrimemRow", "kPrimems", {"longitude"}, primems);
    leaf("spheroids.csv", "SpheroidRow", "kSpheroids", {"semi_major_axis", "inverse_flattening"}, spheroids);
    const auto need = [](const std::set<long> &set, long code, const std::string &loc, const char *what) {
        if (!set.count(code)) fail(loc, std::string(what) + " " + std::to_string(code) + " is not in the catalogue");
    };
    {
        rows.clear();
        const Csv c = read_csv(dir, "datums.csv");
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const long code = to_int(c, i, "code"), sph = to_int(c, i, "spheroid");
            need(spheroids, sph, where(c, i), "spheroid");
            add_row(rows, code, "{" + std::to_string(code) + ", " + quoted(c.rows[i][1], where(c, i)) + ", " +
                                    std::to_string(sph) + "}", where(c, i));
            datums.insert(code);
        }
        emit_table(out, "DatumRow", "kDatums", rows);
    }
    {
        rows.clear();
        const Csv c = read_csv(dir, "geogcs.csv");
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const long code = to_int(c, i, "code"), d = to_int(c, i, "datum"), pm = to_int(c, i, "primem"),
                       u = to_int(c, i, "unit");
            need(datums, d, where(c, i), "datum");
            need(primems, pm, where(c, i), "prime meridian");
            need(units, u, where(c, i), "unit");
            add_row(rows, code, "{" + std::to_string(code) + ", " + quoted(c.rows[i][1], where(c, i)) + ", " +
                                    std::to_string(d) + ", " + std::to_string(pm) + ", " + std::to_string(u) + "}",
                    where(c, i));
            geogcs.insert(code);
        }
        emit_table(out, "GeogcsRow", "kGeogcs", rows);
    }

    // Projected systems, one table per group.
    {
        const Csv c = read_csv(dir, "projcs.csv");
        const char *groups[][2] = {{"misc", "kProjcsMisc"},         {"zone", "kProjcsZone"},
                                   {"sp27", "kProjcsStatePlane27"}, {"sp83m", "kProjcsStatePlane83"},
                                   {"sp83ft1", "kProjcsStatePlane83Feet1"}, {"sp83ft2", "kProjcsStatePlane83Feet2"},
                                   {"harn", "kProjcsHarn"}, {"wiscrs", "kProjcsWiscrs"},
                                   {"epsg", "kProjcsEpsg"}, {"special", "kProjcsSpecial"}};
        std::map<std::string, Rows> by_group;
        std::set<long> seen;
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const std::string loc = where(c, i);
            const long code = to_int(c, i, "code"), g = to_int(c, i, "geogcs"), p = to_int(c, i, "projection"),
                       u = to_int(c, i, "unit");
            const std::string group = c.rows[i][c.column("group")];
            // A superseded definition may stand on a superseded system that
            // the factory builds by itself.
            if (group != "special") need(geogcs, g, loc, "geographic system");
            need(projections, p, loc, "projection");
            need(units, u, loc, "unit");
            if (!seen.insert(code).second) fail(loc, "code given twice");
            bool known = false;
            for (auto &gr : groups) known |= group == gr[0];
            if (!known) fail(loc, "unknown group '" + group + "'");
            const std::string pr = out.add_params(c.rows[i][c.column("parameters")], loc);
            add_row(by_group[group], code,
                    "{" + std::to_string(code) + ", " + quoted(c.rows[i][c.column("name")], loc) + ", " +
                        std::to_string(g) + ", " + std::to_string(p) + ", " + std::to_string(u) + ", " + pr + "}",
                    loc);
        }
        for (auto &gr : groups) emit_table(out, "ProjcsRow", gr[1], by_group[gr[0]]);
    }
    {
        rows.clear();
        const Csv c = read_csv(dir, "projcs_families.csv");
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const std::string loc = where(c, i);
            const long fam = to_int(c, i, "family");
            if (fam != static_cast<long>(i)) fail(loc, "families must be numbered 0, 1, 2, ... in order");
            const std::string t = c.rows[i][c.column("template")];
            int nd = 0, ns = 0;
            for (size_t k = 0; k < t.size(); ++k)
                if (t[k] == '%') {
                    const char f = k + 1 < t.size() ? t[k + 1] : '\0';
                    if (f == 'd') ++nd; else if (f == 's') ++ns; else fail(loc, "bad template '" + t + "'");
                }
            if (!((ns == 0 && (nd == 1 || nd == 2)) || (ns == 1 && nd == 0)))
                fail(loc, "template needs one or two %d, or one %s: '" + t + "'");
            need(geogcs, to_int(c, i, "geogcs"), loc, "geographic system");
            need(projections, to_int(c, i, "projection"), loc, "projection");
            need(units, to_int(c, i, "unit"), loc, "unit");
            add_row(rows, fam,
                    "{" + quoted(t, loc) + ", " + std::to_string(to_int(c, i, "geogcs")) + ", " +
                        std::to_string(to_int(c, i, "projection")) + ", " + std::to_string(to_int(c, i, "unit")) +
                        ", " + to_number(c, i, "false_easting") + ", " + to_number(c, i, "fe_per_zone") + ", " +
                        to_number(c, i, "false_northing") + ", " + to_number(c, i, "cm_origin") + ", " +
                        to_number(c, i, "cm_per_zone") + ", " + to_number(c, i, "scale_factor") + ", " +
                        to_number(c, i, "latitude_of_origin") + "}",
                    loc);
        }
        emit_table(out, "ZoneFamily", "kZoneFamilies", rows);
        const long nfam = static_cast<long>(c.rows.size());
        rows.clear();
        const Csv b = read_csv(dir, "projcs_bands.csv");
        long last_high = -1;
        for (size_t i = 0; i < b.rows.size(); ++i) {
            const long fam = to_int(b, i, "family"), low = to_int(b, i, "low"), high = to_int(b, i, "high");
            if (fam < 0 || fam >= nfam || low > high) fail(where(b, i), "bad band");
            add_row(rows, low,
                    "{" + std::to_string(low) + ", " + std::to_string(high) + ", " +
                        std::to_string(to_int(b, i, "first_zone")) + ", " + std::to_string(fam) + "}",
                    where(b, i));
        }
        for (const auto &r : rows) {
            long lo = r.first, hi = std::strtol(r.second.c_str() + r.second.find(',') + 1, nullptr, 10);
            if (lo <= last_high) fail(b.path, "bands overlap at " + std::to_string(lo));
            last_high = hi;
        }
        emit_table(out, "ZoneBand", "kZoneBands", rows);
        rows.clear();
        const Csv m = read_csv(dir, "projcs_members.csv");
        for (size_t i = 0; i < m.rows.size(); ++i) {
            const long fam = to_int(m, i, "family"), code = to_int(m, i, "code");
            if (fam < 0 || fam >= nfam) fail(where(m, i), "bad family");
            add_row(rows, code,
                    "{" + std::to_string(code) + ", " + std::to_string(fam) + ", " +
                        std::to_string(to_int(m, i, "zone")) + ", " + std::to_string(to_int(m, i, "zone2")) + ", " +
                        to_number(m, i, "false_easting") + ", " + to_number(m, i, "false_northing") + ", " +
                        to_number(m, i, "central_meridian") + ", " + to_number(m, i, "scale_factor") + ", " +
                        to_number(m, i, "latitude_of_origin") + "}",
                    where(m, i));
        }
        emit_table(out, "ZoneMember", "kZoneMembers", rows);
    }

    // Vertical datums and systems.
    {
        leaf("vdatums.csv", "VdatumRow", "kVdatums", {}, vdatums);
        Rows on_vdatum, on_datum;
        const Csv v = read_csv(dir, "vertcs.csv");
        for (size_t i = 0; i < v.rows.size(); ++i) {
            const std::string loc = where(v, i);
            const long code = to_int(v, i, "code"), d = to_int(v, i, "datum"), u = to_int(v, i, "unit");
            const std::string kind = v.rows[i][v.column("datum_kind")];
            if (kind == "vdatum")
                need(vdatums, d, loc, "vertical datum");
            else if (kind == "datum")
                need(datums, d, loc, "datum");
            else
                fail(loc, "datum_kind must be vdatum or datum");
            need(units, u, loc, "unit");
            const std::string init = "{" + std::to_string(code) + ", " + quoted(v.rows[i][1], loc) + ", " +
                                     std::to_string(d) + ", " + std::to_string(u) + ", " +
                                     out.add_params(v.rows[i][v.column("parameters")], loc) + "}";
            add_row(kind == "vdatum" ? on_vdatum : on_datum, code, init, loc);
        }
        emit_table(out, "VertcsRow", "kVertcs", on_vdatum);
        emit_table(out, "VertcsRow", "kVertcsHdatum", on_datum);
    }
    {
        rows.clear();
        const Csv c = read_csv(dir, "geogtran.csv");
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const std::string loc = where(c, i);
            const long code = to_int(c, i, "code"), m = to_int(c, i, "method"), g1 = to_int(c, i, "geogcs1"),
                       g2 = to_int(c, i, "geogcs2");
            need(methods, m, loc, "method");
            need(geogcs, g1, loc, "geographic system");
            need(geogcs, g2, loc, "geographic system");
            add_row(rows, code,
                    "{" + std::to_string(code) + ", " + quoted(c.rows[i][1], loc) + ", " + std::to_string(m) + ", " +
                        std::to_string(g1) + ", " + std::to_string(g2) + ", " +
                        out.add_params(c.rows[i][c.column("parameters")], loc) + "}",
                    loc);
        }
        emit_table(out, "GeogtranRow", "kGeogtrans", rows);
    }

    // Replaced and superseded codes.
    {
        const Csv c = read_csv(dir, "replaced.csv");
        std::map<std::string, Rows> by_kind;
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const long o = to_int(c, i, "old_code"), n = to_int(c, i, "new_code");
            add_row(by_kind[c.rows[i][0]], o, "{" + std::to_string(o) + ", " + std::to_string(n) + "}", where(c, i));
        }
        const char *kinds[][2] = {{"spheroid", "kReplacedSpheroid"}, {"datum", "kReplacedDatum"},
                                  {"geogcs", "kReplacedGeogcs"},     {"projcs", "kReplacedProjcs"},
                                  {"vdatum", "kReplacedVdatum"},     {"vertcs", "kReplacedVertcs"},
                                  {"geogtran", "kReplacedGeogtran"}};
        for (auto &k : kinds) emit_table(out, "Replaced", k[1], by_kind[k[0]]);
        const Csv s = read_csv(dir, "superseded_codes.csv");
        std::map<std::string, Rows> sup;
        for (size_t i = 0; i < s.rows.size(); ++i) {
            const long code = to_int(s, i, "code");
            add_row(sup[s.rows[i][0]], code, std::to_string(code), where(s, i));
        }
        const char *skinds[][2] = {{"datum", "kSupersededDatum"}, {"geogcs", "kSupersededGeogcs"},
                                   {"projcs", "kSupersededProjcs"}, {"geogtran", "kSupersededGeogtran"}};
        for (auto &k : skinds) emit_table(out, "int32_t", k[1], sup[k[0]]);
    }

    // Definition strings: the thirteen tables in prefix order, each sorted by
    // name in byte order with its code index, then the superseded names.
    {
        const char *kinds[][2] = {{"GCS", "OX_GCS_"},   {"PCS", "OX_PCS_"},     {"VCS", "OX_VCS_"},
                                  {"D", "OX_D_"},       {"VERTD", "OX_VERTD_"}, {"GT", "OX_GT_"},
                                  {"U", "OX_U_"},       {"PM", "OX_PM_"},       {"S", "OX_S_"},
                                  {"MTH", "OX_MTH_"},   {"HTMTH", "OX_HTMTH_"}, {"PRJ", "OX_PRJ_"},
                                  {"PAR", "OX_PAR_"}};
        const Csv c = read_csv(dir, "defstrings.csv");
        std::map<std::string, std::map<std::string, long>> tables;
        for (size_t i = 0; i < c.rows.size(); ++i) {
            const std::string kind = c.rows[i][0], name = c.rows[i][1];
            const long code = to_int(c, i, "code");
            bool known = false;
            for (auto &k : kinds)
                if (kind == k[0]) {
                    known = true;
                    if (name.rfind(k[1], 0) != 0) fail(where(c, i), "name without the prefix " + std::string(k[1]));
                }
            if (!known) fail(where(c, i), "unknown kind " + kind);
            if (code <= 0) fail(where(c, i), "code must be positive");
            if (!tables[kind].emplace(name, code).second) fail(where(c, i), "name given twice");
        }
        std::string defs;
        for (auto &k : kinds) {
            const auto &t = tables[k[0]];  // std::map<std::string> sorts in byte order
            const std::string base = std::string("kDef") + k[0];
            out.body << "const DefRow " << base << "Names[] = {\n";
            std::map<long, int> first_row;
            int n = 0;
            for (const auto &r : t) {
                out.body << "    {" << quoted(r.first, c.path) << ", " << r.second << "},\n";
                first_row.emplace(r.second, n++);
            }
            if (t.empty()) fail(c.path, std::string("no rows for ") + k[0]);
            out.body << "};\nconst DefCode " << base << "Codes[] = {\n";
            for (const auto &r : first_row) out.body << "    {" << r.first << ", " << r.second << "},\n";
            out.body << "};\n\n";
            defs += "    {\"" + std::string(k[1]) + "\", {" + base + "Names, " + std::to_string(t.size()) + "}, {" +
                    base + "Codes, " + std::to_string(first_row.size()) + "}},\n";
        }
        out.body << "}  // namespace\nconst DefTable kDefTables[kDefKinds] = {\n" << defs << "};\nnamespace {\n\n";
        const Csv s = read_csv(dir, "superseded_names.csv");
        std::map<std::string, long> names;
        for (size_t i = 0; i < s.rows.size(); ++i)
            if (!names.emplace(s.rows[i][0], to_int(s, i, "code")).second) fail(where(s, i), "name given twice");
        out.body << "const DefRow kSupersededNameRows[] = {\n";
        std::map<long, int> first_row;
        int n = 0;
        for (const auto &r : names) {
            out.body << "    {" << quoted(r.first, s.path) << ", " << r.second << "},\n";
            first_row.emplace(r.second, n++);
        }
        out.body << "};\nconst DefCode kSupersededCodeRows[] = {\n";
        for (const auto &r : first_row) out.body << "    {" << r.first << ", " << r.second << "},\n";
        out.body << "};\n}  // namespace\nconst Table<DefRow> kSupersededNames = {kSupersededNameRows, "
                 << names.size() << "};\nconst Table<DefCode> kSupersededCodes = {kSupersededCodeRows, "
                 << first_row.size() << "};\nnamespace {\n";
    }

    const std::string target = argv[2];
    const std::string tmp = target + ".tmp";
    {
        std::ofstream f(tmp);
        f << "// Generated by tools/gencat from data/; do not edit.\n"
             "#include \"factory/ox_catalogue.h\"\n\nnamespace ox::cat {\n\n"
             "const ParamValue kParams[] = {\n"
          << out.params.str() << (out.nparams == 0 ? "    {},\n" : "") << "};\n\nnamespace {\n\n"
          << out.body.str() << "}  // namespace\n}  // namespace ox::cat\n";
        if (!f) fail(tmp, "cannot write");
    }
    // Replace the output only when it changed, so that an unchanged catalogue
    // does not recompile the library.
    std::ifstream a(tmp), b(target);
    std::stringstream sa, sb;
    sa << a.rdbuf();
    sb << b.rdbuf();
    if (!b || sa.str() != sb.str()) {
        if (std::rename(tmp.c_str(), target.c_str()) != 0) fail(target, "cannot replace");
    } else {
        std::remove(tmp.c_str());
    }
    return 0;
}
