// Every line the viewer writes to its standard streams must reach a pipe or
// a log file at once, so each line end written there is std::endl, never a
// bare '\n' that sits in the buffer until exit. This test reads the
// program's sources and names every statement that breaks the rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct offence_t {
    int line;  // from 1
    std::string statement;
};

// `source` with comments blanked and the inside of every string and character
// literal replaced by '_', except that a line end written in a literal (the
// escape \n, or a real line break in a raw string) becomes '\x01'. Line breaks
// of the code are kept, so offsets still count lines.
std::string code_only(std::string const& source)
{
    std::string out = source;
    std::size_t i = 0;
    std::size_t const n = source.size();
    auto blank = [&](std::size_t at) {
        if (out[at] != '\n') out[at] = ' ';
    };
    while (i < n) {
        char const c = source[i];
        if (c == '/' && i + 1 < n && source[i + 1] == '/') {
            while (i < n && source[i] != '\n') blank(i++);
        } else if (c == '/' && i + 1 < n && source[i + 1] == '*') {
            std::size_t const end = source.find("*/", i + 2);
            std::size_t const stop = end == std::string::npos ? n : end + 2;
            while (i < stop) blank(i++);
        } else if (c == 'R' && i + 1 < n && source[i + 1] == '"' &&
                   (i == 0 || !(std::isalnum(static_cast<unsigned char>(source[i - 1])) || source[i - 1] == '_'))) {
            std::size_t const open = source.find('(', i + 2);
            if (open == std::string::npos) break;
            std::string const close = ")" + source.substr(i + 2, open - i - 2) + "\"";
            std::size_t const end = source.find(close, open);
            std::size_t const stop = end == std::string::npos ? n : end;
            for (i = open + 1; i < stop; ++i) out[i] = source[i] == '\n' ? '\x01' : '_';
            i = stop + close.size();
        } else if (c == '"' || c == '\'') {
            // A quote between digits is a digit separator: 1'000'000.
            if (c == '\'' && i > 0 && std::isxdigit(static_cast<unsigned char>(source[i - 1]))) {
                ++i;
                continue;
            }
            ++i;
            while (i < n && source[i] != c && source[i] != '\n') {
                if (source[i] == '\\' && i + 1 < n) {
                    out[i] = source[i + 1] == 'n' ? '\x01' : '_';
                    out[i + 1] = '_';
                    i += 2;
                } else {
                    out[i++] = '_';
                }
            }
            ++i;
        } else {
            ++i;
        }
    }
    return out;
}

// Statements on std::cout, std::cerr or std::clog that write a line end
// other than std::endl. A statement runs from the stream's name to the next
// semicolon, so `(debug ? std::cerr : std::cout) << ...` counts too.
std::vector<offence_t> unflushed_lines(std::string const& source)
{
    std::string const code = code_only(source);
    static std::regex const stream(R"(\bstd::(cout|cerr|clog)\b)");
    std::vector<offence_t> found;
    std::size_t last_end = 0;
    for (std::sregex_iterator it(code.begin(), code.end(), stream), end; it != end; ++it) {
        std::size_t const start = std::size_t(it->position());
        if (start < last_end) continue;  // a second stream in the same statement
        std::size_t const stop = std::min(code.find(';', start), code.size());
        last_end = stop;
        std::string const statement = code.substr(start, stop - start);
        if (statement.find('\x01') == std::string::npos) continue;
        int const line = 1 + int(std::count(code.begin(), code.begin() + std::ptrdiff_t(start), '\n'));
        std::string const text = source.substr(start, stop - start);
        found.push_back({line, text.substr(0, text.find('\n'))});
    }
    return found;
}

// Folders of the repository that are not the program: tests, benchmarks,
// fuzzing harnesses, tools run by hand, and build trees.
bool outside_program(fs::path const& dir)
{
    std::string const name = dir.filename().string();
    return name == "tests" || name == "bench" || name == "fuzz" || name == "tools" || name == "samples" ||
           name.rfind("build", 0) == 0 || name.rfind(".", 0) == 0;
}

}  // namespace

TEST(StreamLineScan, FindsBareLineEndsAndNothingElse)
{
    std::string const source = R"src(
void f(int x)
{
    std::cout << "fine" << std::endl;
    std::cerr << "bare" << '\n';
    std::cout << "partial, ended below ";  // a comment with '\n' in it
    std::cout << x << std::endl;
    /* std::cout << "\n"; */
    if (x) std::cerr << "two lines\nin one"
                     << std::endl;
    std::ofstream file("f");
    file << "a file's own lines" << '\n';
    char const* s = "std::cout << \n";
    (x ? std::cerr : std::cout) << "chosen" << "\n";
    std::cout << 1'000 << "x" << std::endl;
    std::clog << R"(raw
line)" << std::flush;
}
)src";
    std::vector<offence_t> const found = unflushed_lines(source);
    ASSERT_EQ(found.size(), 4u);
    EXPECT_EQ(found[0].line, 5);
    EXPECT_EQ(found[1].line, 9);
    EXPECT_EQ(found[2].line, 14);
    EXPECT_EQ(found[3].line, 16);
}

TEST(StreamLineScan, EveryLineOfTheProgramEndsWithAFlush)
{
    fs::path const root = ZV_SOURCE_DIR;
    int files = 0;
    int streams = 0;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator(); ++it) {
        if (it->is_directory()) {
            if (it.depth() == 0 && outside_program(it->path())) it.disable_recursion_pending();
            continue;
        }
        std::string const ext = it->path().extension().string();
        if (ext != ".cpp" && ext != ".h") continue;
        std::ifstream in(it->path(), std::ios::binary);
        std::string const source{std::istreambuf_iterator<char>(in), {}};
        ++files;
        static std::regex const stream(R"(\bstd::(cout|cerr|clog)\b)");
        streams += int(std::distance(std::sregex_iterator(source.begin(), source.end(), stream),
                                     std::sregex_iterator()));
        for (offence_t const& o : unflushed_lines(source))
            ADD_FAILURE() << fs::relative(it->path(), root).string() << ":" << o.line
                          << ": a line end without std::endl: " << o.statement;
    }
    // Guards against a scan that silently found nothing to look at.
    EXPECT_GT(files, 50);
    EXPECT_GT(streams, 100);
}
