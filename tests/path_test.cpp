// Picking paths apart: stems, directories, extensions, the four-part split,
// and the search for a file along PATH.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "utils/path.h"

#include "tests/support/temp_dir.h"

namespace lu = libutils;

namespace {

// Reads text as UTF-8, as main's setlocale does on a usual desktop.
class Utf8 : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!std::setlocale(LC_ALL, "C.UTF-8")) GTEST_SKIP() << "no C.UTF-8 locale";
    }
    void TearDown() override { std::setlocale(LC_ALL, m_saved.c_str()); }
    std::string const m_saved = std::setlocale(LC_ALL, nullptr);
};

struct BasenameBuffer : Utf8 {};

}  // namespace

TEST(Basename, DropsDirectoryAndExtension)
{
    EXPECT_EQ(lu::basename("/a/b/c.tar.gz"), "c.tar");
    EXPECT_EQ(lu::basename("a.d/b"), "b") << "a dot in a directory does not count";
    EXPECT_EQ(lu::basename(".hidden"), "");
    // Both separators count, and the later one wins.
    EXPECT_EQ(lu::basename("c:\\x/y.z"), "y");
}

TEST(Dirname, KeepsClosingSeparator)
{
    EXPECT_EQ(lu::dirname("/a/b/c.jpg"), "/a/b/");
    EXPECT_EQ(lu::dirname("c.jpg"), "");
    EXPECT_EQ(lu::dirname("c:/x\\y.z"), "c:/x\\");
}

TEST_F(BasenameBuffer, TerminatesOnlyWhenThereIsRoom)
{
    char dst[8];
    EXPECT_EQ(lu::basename(dst, "/x/stem.jpg", sizeof dst), 4u);
    EXPECT_STREQ(dst, "stem");
    std::memset(dst, '#', sizeof dst);
    EXPECT_EQ(lu::basename(dst, "abc.jpg", 3), 3u);
    EXPECT_EQ(std::string(dst, 4), "abc#");
    EXPECT_EQ(lu::dirname(dst, "/ab/cd", 4), 4u);
    EXPECT_EQ(std::string(dst, 5), "/ab/#");
}

TEST_F(BasenameBuffer, ReadsSizeCharactersNeverCutsOneAndTakesInvalidBytesAsThemselves)
{
    char dst[8];
    // Only "/é/b" is read: the later separator is never seen.
    EXPECT_EQ(lu::basename(dst, "/\xc3\xa9/bc/d", 4), 1u);
    EXPECT_STREQ(dst, "b");
    std::memset(dst, '#', sizeof dst);
    EXPECT_EQ(lu::basename(dst, "a\xc3\xa9\xc3\xa9.jpg", 4), 3u);
    EXPECT_EQ(std::string(dst, 4), std::string("a\xc3\xa9", 4));
    EXPECT_EQ(lu::basename(dst, "/d\xff/n\xfe\xc3.x", sizeof dst), 3u);
    EXPECT_EQ(lu::dirname("/d\xff/n\xfe\xc3.x"), "/d\xff/");
}

TEST(Extcasecmp, ComparesTheEndingOnlyAndIgnoresCase)
{
    EXPECT_EQ(lu::extcasecmp("a.JPG", 5, ".jpg"), 0);
    EXPECT_NE(lu::extcasecmp(std::string("picture.jpeg"), ".jpg"), 0);
    EXPECT_EQ(lu::extcasecmp("a.jpg.txt", 5, ".jpg"), 0) << "only `len` bytes count";
}

TEST(Splitpath, GivesFourPartsThatJoinBackAndCutsLongOnes)
{
    lu::splitpath_t parts;
    lu::split(parts, "c:\\x/y.tar.z");
    EXPECT_STREQ(parts.drive, "c:");
    EXPECT_STREQ(parts.dir, "\\x/");
    EXPECT_STREQ(parts.name, "y.tar");
    EXPECT_STREQ(parts.ext, ".z");
    char joined[4096];
    EXPECT_STREQ(lu::concat(joined, parts), "c:\\x/y.tar.z");
    lu::split(parts, ("/d/" + std::string(3000, 'n')).c_str());
    EXPECT_EQ(std::strlen(parts.name), 1023u);
}

namespace {

// A directory with one file in it; PATH is put back afterwards.
class Searchpath : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_dir = zvtest::make_temp_dir("zv_search_");
        ASSERT_FALSE(m_dir.empty());
        std::ofstream(m_dir + "/zv_target.msg") << "x";
    }
    void TearDown() override
    {
        setenv("PATH", m_path.c_str(), 1);
        std::filesystem::remove_all(m_dir);
    }
    std::string m_dir;
    std::string const m_path = std::getenv("PATH") ? std::getenv("PATH") : "";
};

}  // namespace

TEST_F(Searchpath, NameItselfThenPathThenProgramDirectoryElseName)
{
    std::string const full = m_dir + "/zv_target.msg";
    EXPECT_EQ(lu::searchpath(full, nullptr), full);
    setenv("PATH", ("/nonexistent::" + m_dir).c_str(), 1);
    EXPECT_EQ(lu::searchpath("zv_target.msg", nullptr), full);
    unsetenv("PATH");
    std::string const program = m_dir + "/zanoview";
    EXPECT_EQ(lu::searchpath("zv_target.msg", program.c_str()), m_dir + "//zv_target.msg");
    EXPECT_EQ(lu::searchpath("zv_no_such_file.msg", "/nowhere/prog"), "zv_no_such_file.msg");
}
