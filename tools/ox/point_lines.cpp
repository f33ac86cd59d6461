// The line-based point reader shared by the converting subcommands.
#include "point_lines.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace oxtool {
namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// What became of one input line in a batch.
struct Line {
    enum Kind { kPoint, kCopy } kind;
    size_t text;    // offset of the line's text in the batch's text
    size_t length;  // without the line break
    size_t rest;    // point: offset in the line of what follows the values
    int32_t point;    // point: its index in the batch
    const char *why;  // copied: why a line that is neither blank nor a comment is no point
    size_t field;     // copied: offset in the line of the field at fault
    int64_t number;
};

// A line of input as read: its bytes (at most kMaxLine of them) and how it
// ended.
struct RawLine {
    std::string text;
    bool overlong = false;  // more than kMaxLine bytes: the rest is still to be copied
    bool eof = false;       // no line at all
};

class Input {
public:
    explicit Input(std::FILE *f) : f_(f) {}

    // Reads the next line, at most kMaxLine bytes of it (the rest of an
    // overlong line is left for copy_rest).
    void next(RawLine *line) {
        line->text.clear();
        line->overlong = false;
        line->eof = false;
        bool any = false;
        for (;;) {
            if (pos_ == len_ && !fill()) {
                line->eof = !any;
                return;
            }
            any = true;
            const char *start = buffer_ + pos_;
            const void *nl = std::memchr(start, '\n', len_ - pos_);
            const size_t take = nl ? static_cast<size_t>(static_cast<const char *>(nl) - start) : len_ - pos_;
            const size_t room = kMaxLine - line->text.size();
            if (take > room) {
                line->text.append(start, room);
                pos_ += room;
                line->overlong = true;
                return;
            }
            line->text.append(start, take);
            pos_ += take;
            if (nl != nullptr) {
                ++pos_;  // the line break
                return;
            }
        }
    }

    // Copies the rest of an overlong line to `out` (without its line break).
    void copy_rest(std::FILE *out) {
        for (;;) {
            if (pos_ == len_ && !fill()) return;
            const char *start = buffer_ + pos_;
            const void *nl = std::memchr(start, '\n', len_ - pos_);
            const size_t take = nl ? static_cast<size_t>(static_cast<const char *>(nl) - start) : len_ - pos_;
            std::fwrite(start, 1, take, out);
            pos_ += take;
            if (nl != nullptr) {
                ++pos_;
                return;
            }
        }
    }

    bool failed() const { return std::ferror(f_) != 0; }

private:
    bool fill() {
        pos_ = 0;
        len_ = std::fread(buffer_, 1, sizeof buffer_, f_);
        return len_ > 0;
    }

    std::FILE *f_;
    char buffer_[1 << 16];
    size_t pos_ = 0, len_ = 0;
};

void report_line(const char *command, int64_t number, const char *why) {
    std::fprintf(stderr, "ox %s: line %lld: %s\n", command, static_cast<long long>(number), why);
}

// Reports an overlong line and copies it whole, with its line break.
void copy_overlong(const char *command, int64_t number, Input &in, const RawLine &raw, std::FILE *out) {
    report_line(command, number, "longer than 65536 characters");
    std::fwrite(raw.text.data(), 1, raw.text.size(), out);
    in.copy_rest(out);
    std::fputc('\n', out);
}

bool blank_or_comment(const std::string &line) {
    size_t i = 0;
    while (i < line.size() && is_blank(line[i])) ++i;
    return i == line.size() || line[i] == '#';
}

// The exit status at the end of the input.
int end_status(const char *command, const Input &in, int64_t not_converted) {
    if (in.failed()) {
        std::fprintf(stderr, "ox %s: cannot read the input: %s\n", command, std::strerror(errno));
        return 2;
    }
    return not_converted > 0 ? 1 : 0;
}

class Run {
public:
    Run(const PointJob &job, Input &in, std::FILE *out) : job_(job), in_(in), out_(out) {}

    int go() {
        RawLine raw;
        for (;;) {
            in_.next(&raw);
            if (raw.eof) break;
            ++number_;
            if (raw.overlong) {
                flush();  // keep the order: what came before first
                copy_overlong(job_.command, number_, in_, raw, out_);
                ++not_converted_;
                continue;
            }
            add(raw.text);
            if (lines_.size() >= kBatchLines || text_.size() >= kBatchBytes) flush();
        }
        flush();
        return end_status(job_.command, in_, not_converted_);
    }

private:
    // Reports a line that is no point, quoting the field at fault (at most
    // 40 bytes of it, bytes that are not printable shown as '?').
    void report_field(const Line &l, const char *text) {
        char field[48];
        size_t n = 0;
        for (size_t i = l.field; i < l.length && n < 40 && !is_blank(text[i]); ++i)
            field[n++] = (text[i] >= 0x20 && text[i] < 0x7f) ? text[i] : '?';
        field[n] = '\0';
        if (n == 0) {
            report(l.number, l.why);
            return;
        }
        std::fprintf(stderr, "ox %s: line %lld: %s: '%s'\n", job_.command, static_cast<long long>(l.number), l.why,
                     field);
        ++not_converted_;
    }

    void report(int64_t number, const char *why) {
        report_line(job_.command, number, why);
        ++not_converted_;
    }

    // Classifies a line and keeps it for the batch.
    void add(const std::string &line) {
        Line l{Line::kCopy, text_.size(), line.size(), 0, -1, nullptr, 0, number_};
        text_.append(line);
        const char *begin = line.data(), *end = begin + line.size();
        if (blank_or_comment(line)) {  // copied
            lines_.push_back(l);
            return;
        }
        const char *p = begin;
        const char *why = nullptr;
        if (std::memchr(begin, '\0', line.size()) != nullptr) why = "contains a NUL byte";
        double values[8];
        for (int k = 0; k < job_.values_per_point && why == nullptr; ++k) {
            while (p < end && is_blank(*p)) ++p;
            if (p == end) {
                why = job_.values_per_point == 2 ? "not two numbers" : "too few numbers";
                break;
            }
            l.field = static_cast<size_t>(p - begin);
            why = parse_number(p, end, &values[k], &p);
        }
        if (why != nullptr) {
            l.why = why;
            lines_.push_back(l);
            return;
        }
        // The optional numbers: each read when the next field is one, else
        // NaN, the field left to the rest of the line.
        for (int k = job_.values_per_point; k < stride(); ++k) {
            const char *q = p;
            while (q < end && is_blank(*q)) ++q;
            const char *stop = nullptr;
            if (q < end && parse_number(q, end, &values[k], &stop) == nullptr) {
                p = stop;
            } else {
                for (; k < stride(); ++k) values[k] = std::numeric_limits<double>::quiet_NaN();
            }
        }
        l.kind = Line::kPoint;
        l.rest = static_cast<size_t>(p - begin);
        l.point = static_cast<int32_t>(points_.size() / stride());
        points_.insert(points_.end(), values, values + stride());
        lines_.push_back(l);
    }

    // Converts the batch's points with one call and writes its lines.
    void flush() {
        const int32_t n = static_cast<int32_t>(points_.size() / stride());
        std::vector<const char *> failure(n, nullptr);
        if (n > 0) {
            PointBatch batch{points_.data(), n, failure.data()};
            job_.convert(batch);
        }
        for (const Line &l : lines_) {
            const char *text = text_.data() + l.text;
            if (l.kind == Line::kCopy) {
                if (l.why != nullptr) report_field(l, text);
                std::fwrite(text, 1, l.length, out_);
            } else if (failure[l.point] != nullptr) {
                report(l.number, failure[l.point]);
                if (job_.copy_failed) {
                    std::fwrite(text, 1, l.length, out_);
                } else {
                    write_failed();
                    std::fwrite(text + l.rest, 1, l.length - l.rest, out_);
                }
            } else {
                job_.write(out_, points_.data() + static_cast<size_t>(l.point) * stride());
                std::fwrite(text + l.rest, 1, l.length - l.rest, out_);
            }
            std::fputc('\n', out_);
        }
        lines_.clear();
        text_.clear();
        points_.clear();
    }

    // Values per point in the batch.
    int stride() const { return job_.values_per_point + job_.optional_values; }

    void write_failed() {
        if (job_.failed_text != nullptr) {
            std::fputs(job_.failed_text, out_);
            return;
        }
        for (int k = 0; k < job_.values_per_point; ++k) std::fputs(k == 0 ? "nan" : " nan", out_);
    }

    const PointJob &job_;
    Input &in_;
    std::FILE *out_;
    std::vector<Line> lines_;
    std::string text_;
    std::vector<double> points_;
    int64_t number_ = 0;
    int64_t not_converted_ = 0;
};

bool is_stdio(const char *path) { return path == nullptr || std::strcmp(path, "-") == 0; }

}  // namespace

const char *parse_number(const char *text, const char *end, double *value, const char **stop) {
    const char *p = text;
    if (p < end && (*p == '+' || *p == '-')) ++p;
    const char *digits = p;
    while (p < end && is_digit(*p)) ++p;
    bool any = p > digits;
    if (p < end && *p == '.') {
        ++p;
        const char *fraction = p;
        while (p < end && is_digit(*p)) ++p;
        any = any || p > fraction;
    }
    if (!any) return "not a number";
    if (p < end && (*p == 'e' || *p == 'E')) {
        ++p;
        if (p < end && (*p == '+' || *p == '-')) ++p;
        const char *exponent = p;
        while (p < end && is_digit(*p)) ++p;
        if (p == exponent) return "not a number (an exponent without digits)";
    }
    if (p < end && !is_blank(*p)) return "not a number";
    const char *first = *text == '+' ? text + 1 : text;  // from_chars takes no '+'
    const auto r = std::from_chars(first, p, *value);
    if (r.ec == std::errc::result_out_of_range || !std::isfinite(*value)) return "a number out of range";
    if (r.ec != std::errc() || r.ptr != p) return "not a number";
    *stop = p;
    return nullptr;
}

namespace {

// Opens the input and the output, runs `body` over them and closes them;
// the exit status of the body, or 2 when a file cannot be opened or the
// output not written.
template <class Body>
int with_files(const char *command, const char *input, const char *output, Body body) {
    std::FILE *in = is_stdio(input) ? stdin : std::fopen(input, "rb");
    if (in == nullptr) {
        std::fprintf(stderr, "ox %s: cannot open '%s': %s\n", command, input, std::strerror(errno));
        return 2;
    }
    std::FILE *out = is_stdio(output) ? stdout : std::fopen(output, "wb");
    if (out == nullptr) {
        std::fprintf(stderr, "ox %s: cannot write '%s': %s\n", command, output, std::strerror(errno));
        if (in != stdin) std::fclose(in);
        return 2;
    }
    Input reader(in);
    int status = body(reader, out);
    if (in != stdin) std::fclose(in);
    const bool written = std::fflush(out) == 0 && !std::ferror(out);
    if (out != stdout && std::fclose(out) != 0) status = 2;
    if (!written) {
        std::fprintf(stderr, "ox %s: cannot write the output: %s\n", command, std::strerror(errno));
        status = 2;
    }
    return status;
}

}  // namespace

int run_point_lines(const PointJob &job, const char *input, const char *output) {
    return with_files(job.command, input, output, [&job](Input &in, std::FILE *out) { return Run(job, in, out).go(); });
}

int run_lines(const LineJob &job, const char *input, const char *output) {
    return with_files(job.command, input, output, [&job](Input &in, std::FILE *out) {
        RawLine raw;
        std::string message;
        int64_t number = 0, not_converted = 0;
        for (;;) {
            in.next(&raw);
            if (raw.eof) break;
            ++number;
            if (raw.overlong) {
                copy_overlong(job.command, number, in, raw, out);
                ++not_converted;
                continue;
            }
            if (!blank_or_comment(raw.text)) {
                const bool cr = !raw.text.empty() && raw.text.back() == '\r';
                message.clear();
                if (std::memchr(raw.text.data(), '\0', raw.text.size()) != nullptr) {
                    message = "contains a NUL byte";
                } else if (job.convert(out, raw.text.substr(0, raw.text.size() - (cr ? 1 : 0)), &message)) {
                    std::fputs(cr ? "\r\n" : "\n", out);
                    continue;
                }
                report_line(job.command, number, message.c_str());
                ++not_converted;
            }
            std::fwrite(raw.text.data(), 1, raw.text.size(), out);
            std::fputc('\n', out);
        }
        return end_status(job.command, in, not_converted);
    });
}

}  // namespace oxtool
