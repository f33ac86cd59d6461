// Streaming, line-based reading of points for the subcommands that convert
// coordinates line by line (project and unproject through run_point_lines,
// a batch of points per library call; georef, mgrs and geodesic through
// run_lines, a line at a time), so that all of them read input, report
// errors and exit alike.
//
// Input and output
//   The input is a file or standard input ("-" or none), read in bounded
//   memory whatever its size; the output is a file or standard output.
//   Every input line gives exactly one output line, in order.
//
// Lines
//   - A point line starts with `values_per_point` numbers (2: x y; 3 for
//     x y h, 4 for two points, ...), separated by blanks or tabs.  Whatever
//     follows them (the separator and any further columns: a height, an
//     identifier) is copied unchanged after the converted values, so that
//     "x y z" files keep their third column.
//   - Numbers are strict: an optional sign, digits with an optional decimal
//     point, an optional exponent ("-12.5", "1e-3", ".5"), and nothing else:
//     no hexadecimal, no "nan" or "inf", no junk glued to the number.
//   - A blank line, or one whose first non-blank character is '#', is copied
//     unchanged.
//   - Any other line (too few numbers, a word, a NUL byte, a number out of
//     range, a line longer than kMaxLine) is reported on standard error with
//     its line number and copied unchanged; it counts as not converted.
//   - A point that the conversion rejects is written as `failed_text` (by
//     default "nan" for each value) followed by the rest of its line, and
//     reported with its line number and reason.
//
// Conversion
//   Lines are collected in batches (up to kBatchLines lines and about
//   kBatchBytes of text) and their points handed to `convert` once per
//   batch, which converts the whole array with one library call.
//
// Exit status (run_point_lines's result, the tool's convention)
//   0  every point line converted;
//   1  some line or point not converted (each reported on standard error);
//   2  the input could not be opened or read, or the output not written.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

namespace oxtool {

inline constexpr size_t kMaxLine = 1 << 16;       // longer lines are reported and copied through
inline constexpr size_t kBatchLines = 4096;       // lines (so at most as many points) per conversion call
inline constexpr size_t kBatchBytes = 1 << 20;    // text held per batch

// One batch of points handed to the conversion.
struct PointBatch {
    double *values;        // `n` points of `values_per_point` numbers each, converted in place
    int32_t n;
    const char **failure;  // failure[i]: why point i was not converted (a constant text), or null; null on entry
};

struct PointJob {
    const char *command;       // the subcommand, for messages ("ox project: line 3: ...")
    int values_per_point = 2;  // 1 to 8
    // Converts a batch in place and sets the failure of every point it
    // could not convert.
    std::function<void(PointBatch &)> convert;
    // Writes one converted point (its values, without the rest of the line).
    std::function<void(std::FILE *, const double *)> write;
    // Written in place of the values of a point that was not converted; null
    // gives "nan" for each value.
    const char *failed_text = nullptr;
    // Numbers read after the first `values_per_point` when the line has them
    // (0 to 8 - values_per_point; a height after "lon lat"): a point's values
    // in the batch are then values_per_point + optional_values long, those
    // the line lacks NaN.
    int optional_values = 0;
    // A point that is not converted is copied unchanged (after its report)
    // instead of being written as `failed_text`.
    bool copy_failed = false;
};

// Reads `input` (a path, or null or "-" for standard input), converts its
// points and writes `output` (a path, or null or "-" for standard output).
// Returns the exit status above.
int run_point_lines(const PointJob &job, const char *input, const char *output);

// A subcommand whose lines are converted one at a time as text (grid
// references, whose fields are not all numbers, and conversions of a single
// point per call).  The input, output, blank lines, comments, NUL bytes,
// overlong lines, messages and exit status are those of run_point_lines.
struct LineJob {
    const char *command;
    // Converts one line (without its line break or a final carriage return;
    // neither blank nor a comment; no NUL byte): writes the converted text to
    // `out`, without a line break, and returns true; or returns false, having
    // written nothing, with the reason in `message` (the line is then
    // reported and copied unchanged).
    std::function<bool(std::FILE *out, const std::string &line, std::string *message)> convert;
};

// Reads `input` (a path, or null or "-" for standard input), converts it
// line by line and writes `output` (a path, or null or "-" for standard
// output).  Returns the exit status above.
int run_lines(const LineJob &job, const char *input, const char *output);

// Reads a strict number (the grammar above) at the start of `text`, which
// ends at `end`.  On success stores the value and the end of the number
// (which is followed by a blank, a tab, a carriage return or the end).  On
// failure returns a constant text saying why.
const char *parse_number(const char *text, const char *end, double *value, const char **stop);

}  // namespace oxtool
