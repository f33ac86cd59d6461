// The one implementation of the uniform operation set, driven by the type
// descriptions: allocation, deletion, deep clone, equality, names, status,
// lazy authority, the object-string writer and the object-string reader.
#include "object/ox_object.h"

#include <cstdlib>
#include <cstring>

#include "object/ox_memory.h"
#include "object/ox_objstrings.h"
#include "object/ox_strings.h"
#include "projection/ox_parmlist.h"

namespace ox {

namespace {

const TypeDesc *const kAllTypes[] = {
    &kGeogcsDesc, &kProjcsDesc,    &kGeoxyzcsDesc,  &kVertcsDesc,  &kHvcoordsysDesc, &kDatumDesc,
    &kVdatumDesc, &kGeogtranDesc,  &kUnitDesc,      &kPrimemDesc,  &kSpheroidDesc,   &kHtmethodDesc,
    &kMethodDesc, &kProjectionDesc, &kParameterDesc, &kAuthorityDesc, &kAdjhcsDesc,   &kArrayDesc,
};

template <class T>
T &field(ox_object *h, uint16_t offset) {
    return *reinterpret_cast<T *>(reinterpret_cast<char *>(h) + offset);
}
template <class T>
const T &field(const ox_object *h, uint16_t offset) {
    return *reinterpret_cast<const T *>(reinterpret_cast<const char *>(h) + offset);
}

// Deletes every owned part gathered in `p` (after a failed build).
void parts_delete(Parts &p) {
    for (ox_object *&s : p.sub) {
        obj_delete(s);
        s = nullptr;
    }
    params_delete(p.params);
}

// True when the description of `d` accepts keyword `kw` for a Sub field that
// takes the tags `tags`; gives the description to read with.
const TypeDesc *sub_reader_for(uint32_t tags, const char *kw) {
    for (const TypeDesc *t : kAllTypes)
        if ((t->tag & tags) == t->tag && t->keyword != nullptr && name_eq(kw, t->keyword)) return t;
    return nullptr;
}

}  // namespace

// ---------------------------------------------------------------------------
// Types
// ---------------------------------------------------------------------------
const TypeDesc *type_desc(uint32_t tag) {
    switch (tag) {
        case OX_TAG_GEOGCS: return &kGeogcsDesc;
        case OX_TAG_PROJCS: return &kProjcsDesc;
        case OX_TAG_GEOXYZCS: return &kGeoxyzcsDesc;
        case OX_TAG_VERTCS: return &kVertcsDesc;
        case OX_TAG_HVCOORDSYS: return &kHvcoordsysDesc;
        case OX_TAG_DATUM: return &kDatumDesc;
        case OX_TAG_VDATUM: return &kVdatumDesc;
        case OX_TAG_GEOGTRAN: return &kGeogtranDesc;
        case OX_TAG_UNIT: return &kUnitDesc;
        case OX_TAG_PRIMEM: return &kPrimemDesc;
        case OX_TAG_SPHEROID: return &kSpheroidDesc;
        case OX_TAG_HTMETHOD: return &kHtmethodDesc;
        case OX_TAG_METHOD: return &kMethodDesc;
        case OX_TAG_PROJECTION: return &kProjectionDesc;
        case OX_TAG_PARAMETER: return &kParameterDesc;
        case OX_TAG_AUTHORITY: return &kAuthorityDesc;
        case OX_TAG_ADJHCS: return &kAdjhcsDesc;
        case OX_TAG_ARRAY: return &kArrayDesc;
        default: return nullptr;
    }
}

const TypeDesc *type_desc_by_keyword(const char *keyword) {
    for (const TypeDesc *t : kAllTypes)
        if (t->keyword != nullptr && name_eq(keyword, t->keyword)) return t;
    return nullptr;
}

bool is_a(const ox_object *h, uint32_t tags) {
    return h != nullptr && (h->type & tags) == h->type && type_desc(h->type) != nullptr;
}

// ---------------------------------------------------------------------------
// Life cycle
// ---------------------------------------------------------------------------
ox_object *obj_alloc(const TypeDesc &d, const char *name) {
    if (!name_writable(name)) return nullptr;
    auto *h = static_cast<ox_object *>(mem_alloc(d.size));
    if (h == nullptr) return nullptr;
    std::memset(static_cast<void *>(h), 0, d.size);
    h->type = d.tag;
    h->status = OX_STATUS_NEW;
    h->code = -1;
    copy_bounded(h->name, name, sizeof h->name);
    h->authority_name_ref = nullptr;
    h->authority_version_ref = nullptr;
    h->authority = nullptr;
    return h;
}

void params_delete(ox_object *params[OX_PARAMETER_SLOTS]) {
    for (int i = 0; i < OX_PARAMETER_SLOTS; ++i) {
        obj_delete(params[i]);
        params[i] = nullptr;
    }
}

void obj_del(ox_object *h, uint32_t tags) {
    if (!is_a(h, tags)) return;
    const TypeDesc &d = *type_desc(h->type);
    for (int i = 0; i < d.nfields; ++i) {
        const FieldDesc &f = d.fields[i];
        switch (f.kind) {
            case FieldKind::Sub: obj_delete(field<ox_object *>(h, f.offset)); break;
            case FieldKind::Params: params_delete(&field<ox_object *>(h, f.offset)); break;
            case FieldKind::Values: mem_free(field<double *>(h, f.offset2)); break;
            case FieldKind::Constants:
                if (d.free_constants) d.free_constants(field<void *>(h, f.offset));
                break;
            case FieldKind::Double:
            case FieldKind::Fns: break;
        }
    }
    obj_delete(h->authority);
    h->type = 0;  // a dangling handle no longer passes the tag test
    mem_free(h);
}

ox_object *obj_clone(const ox_object *h, uint32_t tags) {
    if (!is_a(h, tags)) return nullptr;
    const TypeDesc &d = *type_desc(h->type);
    Parts p;
    p.name = h->name;
    int nd = 0, ns = 0;
    bool failed = false;
    for (int i = 0; i < d.nfields && !failed; ++i) {
        const FieldDesc &f = d.fields[i];
        switch (f.kind) {
            case FieldKind::Double: p.d[nd++] = field<double>(h, f.offset); break;
            case FieldKind::Sub: {
                const ox_object *s = field<ox_object *>(h, f.offset);
                if (s != nullptr && (p.sub[ns] = obj_clone(s, s->type)) == nullptr) failed = true;
                ++ns;
                break;
            }
            case FieldKind::Params: {
                ox_object *const *src = &field<ox_object *>(h, f.offset);
                for (int k = 0; k < OX_PARAMETER_SLOTS && !failed; ++k)
                    if (src[k] != nullptr && (p.params[k] = obj_clone(src[k], OX_TAG_PARAMETER)) == nullptr)
                        failed = true;
                break;
            }
            case FieldKind::Fns:
                std::memcpy(p.fn, &field<Fn>(h, f.offset), f.count * sizeof(Fn));
                p.have_fns = true;
                break;
            case FieldKind::Values:
                p.count = field<int32_t>(h, f.offset);
                p.values = field<double *>(h, f.offset2);
                break;
            case FieldKind::Constants: break;
        }
    }
    if (d.extra_parts) d.extra_parts(h, p);
    ox_object *authority = nullptr;
    if (!failed && h->authority != nullptr && (authority = obj_clone(h->authority, OX_TAG_AUTHORITY)) == nullptr)
        failed = true;
    ox_object *copy = failed ? nullptr : d.build(p);
    if (copy == nullptr) {
        parts_delete(p);
        obj_delete(authority);
        return nullptr;
    }
    copy->status = h->status;
    copy->code = h->code;
    copy->authority_name_ref = h->authority_name_ref;
    copy->authority_version_ref = h->authority_version_ref;
    copy->authority = authority;
    return copy;
}

// ---------------------------------------------------------------------------
// Equality
// ---------------------------------------------------------------------------
bool obj_eq_parts(const ox_object *a, const ox_object *b, bool compare_name) {
    if (a == nullptr || b == nullptr || a->type != b->type) return false;
    const TypeDesc *d = type_desc(a->type);
    if (d == nullptr) return false;
    if (compare_name && d->has_name && !name_eq(a->name, b->name)) return false;
    if (d->eq_values && !d->eq_values(a, b)) return false;
    for (int i = 0; i < d->nfields; ++i) {
        const FieldDesc &f = d->fields[i];
        switch (f.kind) {
            case FieldKind::Double:
                if (!d->eq_values && !equal_rule(field<double>(a, f.offset), field<double>(b, f.offset))) return false;
                break;
            case FieldKind::Sub: {
                const ox_object *sa = field<ox_object *>(a, f.offset), *sb = field<ox_object *>(b, f.offset);
                if ((sa == nullptr) != (sb == nullptr)) return false;
                if (sa != nullptr && !obj_eq_parts(sa, sb, true)) return false;
                break;
            }
            case FieldKind::Params: {
                ox_object *const *pa = &field<ox_object *>(a, f.offset);
                ox_object *const *pb = &field<ox_object *>(b, f.offset);
                for (int k = 0; k < OX_PARAMETER_SLOTS; ++k) {
                    if ((pa[k] == nullptr) != (pb[k] == nullptr)) return false;
                    if (pa[k] != nullptr && !obj_eq_parts(pa[k], pb[k], true)) return false;
                }
                break;
            }
            case FieldKind::Fns:
                if (std::memcmp(&field<Fn>(a, f.offset), &field<Fn>(b, f.offset), f.compared * sizeof(Fn)) != 0)
                    return false;
                break;
            case FieldKind::Values: {
                const int32_t n = field<int32_t>(a, f.offset);
                if (n != field<int32_t>(b, f.offset)) return false;
                const double *va = field<double *>(a, f.offset2), *vb = field<double *>(b, f.offset2);
                for (int32_t k = 0; k < n; ++k)
                    if (!equal_rule(va[k], vb[k])) return false;
                break;
            }
            case FieldKind::Constants: break;
        }
    }
    return true;
}

int32_t obj_eq(const ox_object *a, const ox_object *b, uint32_t tags) {
    return is_a(a, tags) && is_a(b, tags) && obj_eq_parts(a, b, true) ? 1 : 0;
}

// ---------------------------------------------------------------------------
// Header operations
// ---------------------------------------------------------------------------
void obj_name(const ox_object *h, uint32_t tags, char *buffer) {
    if (buffer == nullptr) return;
    buffer[0] = '\0';
    if (is_a(h, tags)) copy_bounded(buffer, h->name, OX_NAME_SIZE);
}

int32_t obj_status(const ox_object *h, uint32_t tags) { return is_a(h, tags) ? h->status : 0; }

ox_object *obj_authority(ox_object *h, uint32_t tags) {
    if (!is_a(h, tags) || h->type == OX_TAG_AUTHORITY) return nullptr;
    if (h->authority != nullptr) return h->authority;
    if (h->code >= 1) h->authority = ox_authority_new(h->authority_name_ref, h->code, h->authority_version_ref);
    return h->authority;
}

void obj_authority_set(ox_object *h, uint32_t tags, ox_object *authority) {
    if (!is_a(h, tags) || h->type == OX_TAG_AUTHORITY) return;
    if (authority != nullptr && !is_type(authority, OX_TAG_AUTHORITY)) return;
    if (authority == h->authority) return;
    obj_delete(h->authority);
    h->authority = authority;
}

void obj_set_status(ox_object *h, int32_t status) {
    if (h != nullptr && type_desc(h->type) != nullptr) h->status = status;
}

int32_t obj_code(const ox_object *h) { return h != nullptr && type_desc(h->type) != nullptr ? h->code : -1; }

void obj_set_code(ox_object *h, int32_t code, const char *authority_name, const char *authority_version) {
    if (h == nullptr || type_desc(h->type) == nullptr) return;
    h->code = code;
    h->authority_name_ref = authority_name;
    h->authority_version_ref = authority_version;
}

void apply_renames(const RenameRow *table, const char *name, char out[OX_NAME_SIZE]) {
    const char *result = name;
    for (const RenameRow *r = table; r != nullptr && r->from != nullptr; ++r)
        if (name_eq(name, r->from)) {
            result = r->to;
            break;
        }
    copy_bounded(out, result, OX_NAME_SIZE);
}

// ---------------------------------------------------------------------------
// Writer
// ---------------------------------------------------------------------------
namespace {

void write_object(ox_object *h, int32_t option, TextOut &out);

bool blank(const char *s) {
    while (is_space(static_cast<unsigned char>(*s))) ++s;
    return *s == '\0';
}

// The slot that the reader gives a parameter of this name: that of a new
// parameter of the name as the reader sees it (white space at its ends
// dropped, any other turned into blanks).  A parameter renamed with
// ox_parameter_name_set keeps the slot of its old name, which its object
// string does not carry.
int32_t slot_read_as(const ox_object *parameter) {
    // The usual case: the parameter bears the list's name of its code (the
    // grid parameter, whose name is "Dataset_" and a grid's, apart).
    if (const ParmRow *r = parmlist_find_by_code(parameter->code))
        if (r->code != kParDataset && name_eq(r->name, parameter->name)) return r->index;
    Parameter read{};
    read.h.type = OX_TAG_PARAMETER;
    read.h.code = -1;
    const char *p = parameter->name;
    while (is_space(static_cast<unsigned char>(*p))) ++p;
    size_t n = 0;
    for (; *p != '\0'; ++p) read.h.name[n++] = is_space(static_cast<unsigned char>(*p)) ? ' ' : *p;
    while (n > 0 && read.h.name[n - 1] == ' ') --n;
    read.h.name[n] = '\0';
    parmlist_set_code(&read.h);
    return ox_parameter_index(&read.h);
}

// Writes an object that is read by one tokenization (the whole text, or a
// part of a pair of systems) and fails the text when the reader could not
// take it in: longer than the tokenizer's 1023 characters, or more tokens
// than it holds.  Up to 1023 written characters the text is always
// readable (a token takes four characters with its punctuation or more, so
// there are at most 255); a longer one may still be, when names lose blanks
// next to their quotes.
void write_piece(ox_object *h, int32_t option, TextOut &out) {
    const size_t start = out.len;
    write_object(h, option, out);
    if (!out.ok || out.len - start <= static_cast<size_t>(kMaxObjstringText)) return;
    out.buf[out.len] = '\0';
    Tokens w;
    if (tokenize_object_string(&w, out.buf + start, nullptr) != kTokOk) out.ok = false;
}

void write_authority(const ox_object *h, TextOut &out) {
    out.put("AUTHORITY[");
    out.put_quoted(h->name);
    out.put_char(',');
    out.put_int(reinterpret_cast<const Authority *>(h)->authcode);
    out.put_char(']');
}

void write_object(ox_object *h, int32_t option, TextOut &out) {
    const TypeDesc &d = *type_desc(h->type);
    if (h->type == OX_TAG_AUTHORITY) {
        write_authority(h, out);
        return;
    }
    // Option 1 asks for the authority of the outermost object only, 2 for
    // every object; any other value writes none and is passed on unchanged.
    // A type that writes no authority (array, adjusted system) writes none
    // inside either.
    const int32_t sub_option = (option == 1 || !d.writes_authority) ? 0 : option;
    const bool own_authority = (option == 1 || option == 2) && d.writes_authority;
    if (!d.has_name) {
        // A pair of systems without keyword of its own: the parts one after
        // another, each read on its own.
        bool first = true;
        for (int i = 0; i < d.nfields; ++i) {
            ox_object *s = field<ox_object *>(h, d.fields[i].offset);
            if (d.fields[i].kind != FieldKind::Sub || s == nullptr) continue;
            if (!first) out.put_char(',');
            write_piece(s, option, out);
            first = false;
        }
        return;
    }
    if (d.writable != nullptr && !d.writable(h)) out.ok = false;
    out.put(d.keyword);
    out.put_char('[');
    out.put_quoted(h->name);
    const size_t after_name = out.len;
    for (int i = 0; i < d.nfields; ++i) {
        const FieldDesc &f = d.fields[i];
        switch (f.kind) {
            case FieldKind::Double: {
                const double v = field<double>(h, f.offset);
                out.put_char(',');
                out.put_number(f.write_as ? f.write_as(v) : v);
                break;
            }
            case FieldKind::Sub:
                if (ox_object *s = field<ox_object *>(h, f.offset)) {
                    out.put_char(',');
                    write_object(s, sub_option, out);
                }
                break;
            case FieldKind::Params: {
                ox_object **params = &field<ox_object *>(h, f.offset);
                for (int k = 0; k < OX_PARAMETER_SLOTS; ++k)
                    if (params[k] != nullptr) {
                        if (slot_read_as(params[k]) != k) out.ok = false;  // would be read elsewhere or not at all
                        out.put_char(',');
                        write_object(params[k], sub_option, out);
                    }
                break;
            }
            case FieldKind::Values: {
                const int32_t n = field<int32_t>(h, f.offset);
                const double *v = field<double *>(h, f.offset2);
                out.put_char(',');
                out.put_int(n);
                for (int32_t k = 0; k < n; ++k) {
                    out.put_char(',');
                    out.put_number(v[k]);
                }
                break;
            }
            case FieldKind::Fns:
            case FieldKind::Constants: break;
        }
    }
    if (own_authority)
        if (ox_object *a = obj_authority(h, h->type)) {
            out.put_char(',');
            write_authority(a, out);
        }
    // The reader drops an empty value just before a closing bracket, and a
    // name of white space only is read as empty: such a name must be
    // followed by something.
    if (out.len == after_name && blank(h->name)) out.ok = false;
    out.put_char(']');
}

}  // namespace

void obj_to_string(ox_object *h, uint32_t tags, int32_t option, char *buffer) {
    if (buffer == nullptr) return;
    TextOut out(buffer, OX_OBJSTRING_SIZE);
    if (is_a(h, tags)) {
        if (type_desc(h->type)->has_name)
            write_piece(h, option, out);
        else
            write_object(h, option, out);
    }
    out.finish();
}

// ---------------------------------------------------------------------------
// Reader
// ---------------------------------------------------------------------------
namespace {

// True when token i is a plain value of the object at depth L (not a keyword
// with a bracketed body).
bool plain_at(const Tokens &w, int i, int end, int depth) {
    return i < end && w.depth[i] == depth + 1 && (i + 1 >= end || w.depth[i + 1] <= depth + 1);
}

ox_object *read_authority(const Tokens &w, int start, int end, int L) {
    for (int i = start + 1; i < end; ++i)
        if (w.depth[i] > L + 1) return nullptr;  // the clause must be flat
    const int values = end - start - 2;          // after the keyword and the name
    int32_t code;
    const char *version = "";
    if (values == 1) {
        code = std::atoi(w.token[start + 2]);
    } else if (is_all_digits(w.token[start + 2])) {
        code = std::atoi(w.token[start + 2]);
        version = w.token[start + 3];
    } else {
        version = w.token[start + 2];
        code = std::atoi(w.token[start + 3]);
    }
    ox_object *a = ox_authority_new(w.token[start + 1], code, version);
    if (a != nullptr) a->status = OX_STATUS_STRING;
    return a;
}

ox_object *read_object(const TypeDesc &d, const Tokens &w, int start, int *next) {
    if (start >= w.count) return nullptr;
    const int L = w.depth[start];
    int end = start + 1;
    while (end < w.count && w.depth[end] > L) ++end;
    if (next != nullptr) *next = end;
    if (end - start < d.min_tokens) return nullptr;
    if (!name_eq(w.token[start], d.keyword)) return nullptr;
    if (d.tag == OX_TAG_AUTHORITY) return read_authority(w, start, end, L);

    Parts p;
    int i = start + 1;
    if (d.has_name) {
        if (!plain_at(w, i, end, L)) return nullptr;
        p.name = w.token[i++];
    } else {
        p.name = "";
    }
    double values[kMaxTokens];
    int nd = 0;
    for (int k = 0; k < d.nfields; ++k) {
        const FieldDesc &f = d.fields[k];
        if (f.kind == FieldKind::Double) {
            double v;
            if (!plain_at(w, i, end, L) || !read_number(w.token[i++], &v)) return nullptr;
            p.d[nd++] = f.read_as ? f.read_as(v) : v;
        } else if (f.kind == FieldKind::Values) {
            if (!plain_at(w, i, end, L)) return nullptr;
            char *stop;
            const long n = std::strtol(w.token[i++], &stop, 10);
            if (n < 0 || n > kMaxTokens) return nullptr;
            for (long v = 0; v < n; ++v)
                if (!plain_at(w, i, end, L) || !read_number(w.token[i++], &values[v])) return nullptr;
            p.count = static_cast<int32_t>(n);
            p.values = values;
        }
    }

    ox_object *authority = nullptr;
    bool failed = false;
    while (i < end && !failed) {
        const char *kw = w.token[i];
        bool taken = false;
        if (w.depth[i] == L + 1) {
            if (authority == nullptr && d.writes_authority && name_eq(kw, "AUTHORITY")) {
                authority = read_object(kAuthorityDesc, w, i, &i);
                failed = authority == nullptr;
                taken = true;
            }
            int ns = 0;
            for (int k = 0; k < d.nfields && !taken; ++k) {
                const FieldDesc &f = d.fields[k];
                if (f.kind == FieldKind::Sub) {
                    const int slot = ns++;
                    if (p.sub[slot] != nullptr) continue;
                    const TypeDesc *sd = sub_reader_for(f.tags, kw);
                    if (sd == nullptr) continue;
                    p.sub[slot] = read_object(*sd, w, i, &i);
                    failed = p.sub[slot] == nullptr;
                    taken = true;
                } else if (f.kind == FieldKind::Params && name_eq(kw, "PARAMETER")) {
                    ox_object *param = read_object(kParameterDesc, w, i, &i);
                    const int32_t slot = ox_parameter_index(param);
                    if (slot < 0 || p.params[slot] != nullptr) {
                        obj_delete(param);
                        failed = true;
                    } else {
                        p.params[slot] = param;
                    }
                    taken = true;
                }
            }
        }
        if (!taken) {  // skip this token with everything nested in it
            const int depth = w.depth[i++];
            while (i < end && w.depth[i] > depth) ++i;
        }
    }

    char name[OX_NAME_SIZE];
    apply_renames(d.renames, p.name, name);
    p.name = name;
    ox_object *h = failed ? nullptr : d.build(p);
    if (h == nullptr) {
        parts_delete(p);
        obj_delete(authority);
        return nullptr;
    }
    h->status = OX_STATUS_STRING;
    if (authority != nullptr) obj_authority_set(h, h->type, authority);
    return h;
}

}  // namespace

ox_object *obj_read(const TypeDesc &d, const Tokens &w, int start, int *next) {
    return read_object(d, w, start, next);
}

ox_object *obj_from_string(const TypeDesc &d, const char *text) {
    if (text == nullptr) return nullptr;
    Tokens w;
    if (tokenize_object_string(&w, text, d.keyword) != kTokOk) return nullptr;
    return read_object(d, w, 0, nullptr);
}

}  // namespace ox
