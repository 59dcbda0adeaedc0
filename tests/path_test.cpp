// Picking paths apart: stems, directories, extensions, the four-part split,
// and the search for a file along PATH.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

#include "utils/path.h"

#include "tests/support/scratch.h"
#include "tests/support/utf8_locale.h"

namespace lu = libutils;

using BasenameBuffer = zvtest::Utf8Locale;

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

// A scratch directory; PATH is put back afterwards.
class Searchpath : public zvtest::ScratchFiles {
protected:
    void TearDown() override
    {
        setenv("PATH", m_path.c_str(), 1);
        ScratchFiles::TearDown();
    }
    std::string const m_path = std::getenv("PATH") ? std::getenv("PATH") : "";
};

}  // namespace

TEST_F(Searchpath, NameItselfThenPathThenProgramDirectoryElseName)
{
    std::string const full = write("zv_target.msg", "x");
    EXPECT_EQ(lu::searchpath(full, nullptr), full);
    setenv("PATH", ("/nonexistent::" + m_dir).c_str(), 1);
    EXPECT_EQ(lu::searchpath("zv_target.msg", nullptr), full);
    unsetenv("PATH");
    std::string const program = m_dir + "/zanoview";
    EXPECT_EQ(lu::searchpath("zv_target.msg", program.c_str()), m_dir + "//zv_target.msg");
    EXPECT_EQ(lu::searchpath("zv_no_such_file.msg", "/nowhere/prog"), "zv_no_such_file.msg");
}
