// The message catalogue: which file is found for the language, and how its
// lines are cut.
#include "options/message.h"

#include <stdlib.h>

#include <climits>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scratch.h"

namespace {

namespace fs = std::filesystem;
using zvtest::Capture;

char const kNotLoaded[] = "message not loaded.";

std::optional<std::string> getenv_copy(char const* name)
{
    char const* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

void setenv_or_unset(char const* name, std::optional<std::string> const& value)
{
    if (value) setenv(name, value->c_str(), 1);
    else unsetenv(name);
}

// Each test works below a directory of its own; the working directory, LANG,
// PATH and the locale are put back afterwards.
class Catalogue : public zvtest::ScratchFiles {
protected:
    void TearDown() override
    {
        fs::current_path(cwd);
        setenv_or_unset("LANG", lang);
        setenv_or_unset("PATH", search_path);
        std::setlocale(LC_ALL, locale.c_str());
        ScratchFiles::TearDown();
    }

    // Makes <scratch>/<place>/cwd and <scratch>/<place>/dir with the given
    // files ("cwd/p.msg"; a closing "/" makes a directory instead), each
    // holding its own name as line 0, and goes into its cwd. Returns its
    // dir, with the closing "/".
    std::string make_place(char const* place, std::vector<std::string> const& files,
                           char const* content = nullptr)
    {
        std::string const base = path(place) + "/";
        fs::create_directories(base + "cwd");
        fs::create_directories(base + "dir");
        for (std::string const& file : files) {
            if (file.back() == '/') fs::create_directories(base + file);
            else std::ofstream(base + file, std::ios::binary) << (content ? content : file + "\n");
        }
        fs::current_path(base + "cwd");
        return base + "dir/";
    }

    fs::path const cwd = fs::current_path();
    std::optional<std::string> const lang = getenv_copy("LANG");
    std::optional<std::string> const search_path = getenv_copy("PATH");
    std::string const locale = std::setlocale(LC_ALL, nullptr);
};

using MessageSearch = Catalogue;
using MessageLines = Catalogue;

TEST_F(MessageSearch, SuffixedBeforePlainThenWorkingDirectoryProgramDirectory)
{
    struct Case {
        char const* lang;  // null: unset
        std::vector<std::string> files;
        std::string winner;
        bool through_path;  // the program directory is not known, PATH is
    };
    Case const cases[] = {
        {"C", {"cwd/p.msg", "dir/p.msg"}, "cwd/p.msg", false},
        {"C", {"cwd/p.msg", "dir/p.C.msg"}, "dir/p.C.msg", false},
        {"ja_JP.UTF-8", {"cwd/p.msg", "cwd/p.ja_JP.UTF-8.msg", "dir/p.ja_JP.UTF-8.msg"},
         "cwd/p.ja_JP.UTF-8.msg", false},
        {nullptr, {"cwd/p.C.msg", "dir/p.msg"}, "dir/p.msg", false},
        {"C", {"cwd/p.C.msg/", "dir/p.C.msg"}, "dir/p.C.msg", false},
        {"C", {"dir/p.msg"}, "dir/p.msg", true},
    };
    int n = 0;
    for (Case const& c : cases) {
        SCOPED_TRACE(n);
        setenv_or_unset("LANG", c.lang ? std::optional<std::string>(c.lang) : std::nullopt);
        std::string const dir = make_place(std::to_string(n++).c_str(), c.files);
        if (c.through_path) setenv("PATH", dir.substr(0, dir.size() - 1).c_str(), 1);
        std::string const found = zanolib::init_message(c.through_path ? "" : dir.c_str(), "p");
        EXPECT_EQ(zanolib::getmsg(0), c.winner);
        std::string const name = c.winner.substr(4);
        EXPECT_EQ(found, c.winner.compare(0, 4, "cwd/") == 0 ? name : dir + name);
    }
}

TEST_F(MessageSearch, NothingFoundSaysSoOnceAndForgetsTheOldFile)
{
    setenv("LANG", "C", 1);
    zanolib::init_message(make_place("old", {"cwd/zv_msg_test.msg"}).c_str(), "zv_msg_test");
    std::string const dir = make_place("none", {});
    Capture out(std::cout);
    Capture err(std::cerr);
    EXPECT_EQ(zanolib::init_message(dir.c_str(), "zv_msg_test"), "");
    EXPECT_EQ(err.text(), "/usr/site/share/zanolib/zv_msg_test.msg: can't load message file.\n");
    EXPECT_EQ(out.text(), "");
    EXPECT_STREQ(zanolib::getmsg(0), kNotLoaded);
}

TEST_F(MessageLines, LineEndsBecomeEndsOfTextAndOnlyClosedLinesCount)
{
    struct Case {
        char const* content;
        char const* lines[3];
    };
    Case const cases[] = {
        {"a\nb\n", {"a", "b", kNotLoaded}},
        {"a\r\nb\r\n", {"a", "b", kNotLoaded}},
        {"a\rb\nc\n", {"a", "b", kNotLoaded}},
        {"", {kNotLoaded, kNotLoaded, kNotLoaded}},
    };
    unsetenv("LANG");
    int n = 0;
    for (Case const& c : cases) {
        SCOPED_TRACE(n);
        std::string const dir = make_place(std::to_string(n++).c_str(), {"cwd/p.msg"}, c.content);
        EXPECT_EQ(zanolib::init_message(dir.c_str(), "p"), "p.msg");
        for (unsigned long id = 0; id < 3; ++id) EXPECT_STREQ(zanolib::getmsg(id), c.lines[id]);
        EXPECT_STREQ(zanolib::getmsg(ULONG_MAX), kNotLoaded);
    }
}

}  // namespace
