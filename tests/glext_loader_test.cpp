// The loader's answers without a context: version arithmetic, the core
// version list, and both ways a driver reports its extensions, through fake
// glGetString, glGetIntegerv and glGetStringi put in the global pointers.
#include "glext/glext.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

// What the fake driver reports, and how often its extension string is read.
struct FakeDriver {
    std::string version;
    std::string extensions;                 // GL_EXTENSIONS, as before 3.0
    std::vector<std::string> indexed = {};  // glGetStringi, as from 3.0 on
    int string_reads = 0;
};

FakeDriver g_driver;

GLubyte const* as_gl(std::string const& s)
{
    return reinterpret_cast<GLubyte const*>(s.c_str());
}

GLubyte const* fake_get_string(GLenum name)
{
    if (name == GL_VERSION)
        return as_gl(g_driver.version);
    if (name == GL_EXTENSIONS) {
        ++g_driver.string_reads;
        return as_gl(g_driver.extensions);
    }
    return nullptr;
}

void fake_get_integerv(GLenum name, GLint* value)
{
    if (name == GL_NUM_EXTENSIONS)
        *value = static_cast<GLint>(g_driver.indexed.size());
}

GLubyte const* fake_get_stringi(GLenum name, GLuint index)
{
    if (name != GL_EXTENSIONS || index >= g_driver.indexed.size())
        return nullptr;
    return as_gl(g_driver.indexed[index]);
}

void free_version_list()
{
    while (gl_extnode_t* node = extension_linkedlist) {
        extension_linkedlist = node->next;
        std::free(node);
    }
}

std::vector<std::string> version_list()
{
    std::vector<std::string> names;
    for (gl_extnode_t const* node = extension_linkedlist; node; node = node->next)
        names.push_back(node->name);
    return names;
}

// The version list is built once per process; each test starts from an
// empty one so that the tests also pass when run together.
class LoaderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        free_version_list();
        g_driver = FakeDriver{};
        glGetString = fake_get_string;
        glGetIntegerv = fake_get_integerv;
        glGetStringi = fake_get_stringi;
    }
    void TearDown() override { free_version_list(); }
};

using NumDotStrCmp = LoaderTest;
using CoreVersionList = LoaderTest;
using ExtensionString = LoaderTest;
using IndexedExtensions = LoaderTest;

TEST_F(NumDotStrCmp, ComparesFieldsAsNumbers)
{
    EXPECT_EQ(numdotstrcmp("4.1.0", "4.1.0"), 0);
    EXPECT_EQ(numdotstrcmp("4.1.1", "4.1.0"), 1);
    EXPECT_EQ(numdotstrcmp("3.3.0", "4.0.0"), -1);
    EXPECT_EQ(numdotstrcmp("2.10.0", "2.9.0"), 1);
    EXPECT_EQ(numdotstrcmp("10.0", "3.0.0"), 1);
}

TEST_F(NumDotStrCmp, TextTailIsZeroButEndingFirstIsLess)
{
    EXPECT_EQ(numdotstrcmp("2.1 Mesa 22.3.6", "2.1.0"), 1);
    EXPECT_EQ(numdotstrcmp("4.5 (Compatibility Profile) Mesa", "4.6.0"), -1);
    EXPECT_EQ(numdotstrcmp("2.1", "2.1.0"), -1);
    EXPECT_EQ(numdotstrcmp("2.1.0", "2.1"), 1);
}

TEST_F(CoreVersionList, HoldsEveryVersionReachedNewestFirst)
{
    extension_string_init("1.4 Mesa 22.3.6");
    EXPECT_EQ(version_list(),
              (std::vector<std::string>{"GL_VERSION_1_4", "GL_VERSION_1_3", "GL_VERSION_1_2"}));
}

TEST_F(CoreVersionList, BareVersionFallsShortOfItsOwnRow)
{
    extension_string_init("2.1");
    ASSERT_FALSE(version_list().empty());
    EXPECT_EQ(version_list().front(), "GL_VERSION_2_0");
}

TEST_F(CoreVersionList, IsBuiltByTheFirstQueryThatFindsAVersion)
{
    g_driver = {"1.1 Mesa", "GL_EXT_bgra"};
    EXPECT_EQ(isExtensionSupported("GL_VERSION_1_2"), 0);
    EXPECT_EQ(extension_linkedlist, nullptr);

    // A 1.1 list stays empty, so the next query tries again.
    g_driver.version = "1.3 Mesa";
    EXPECT_EQ(isExtensionSupported("GL_VERSION_1_3"), 1);

    // Once built, it is never rebuilt: it describes the first context.
    g_driver.version = "4.5 Mesa";
    EXPECT_EQ(isExtensionSupported("GL_VERSION_1_4"), 0);
    EXPECT_EQ(isExtensionSupported("GL_VERSION_1_3"), 1);
}

TEST_F(ExtensionString, MatchesWholeEntriesOnly)
{
    g_driver = {"2.1 Mesa", "GL_ARB_multitexture GL_EXT_texture3D GL_EXT_bgra"};
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture3D"), 1);
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture"), 0);  // prefix of an entry
    EXPECT_EQ(isExtensionSupported("EXT_bgra"), 0);        // tail of an entry
    EXPECT_EQ(isExtensionSupported("GL_ARB_multi"), 0);
}

TEST_F(ExtensionString, SearchGoesOnPastRejectedHit)
{
    g_driver = {"2.1 Mesa", "GL_EXT_texture3D GL_EXT_texture_object GL_EXT_texture"};
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture"), 1);
}

TEST_F(ExtensionString, FindsFirstAndLastEntries)
{
    g_driver = {"1.5 Mesa", "GL_EXT_abgr GL_EXT_bgra GL_SGIS_generate_mipmap"};
    EXPECT_EQ(isExtensionSupported("GL_EXT_abgr"), 1);
    EXPECT_EQ(isExtensionSupported("GL_SGIS_generate_mipmap"), 1);

    g_driver = {"1.5 Mesa", "GL_EXT_abgr GL_SGIS_generate_mipmap "};
    EXPECT_EQ(isExtensionSupported("GL_SGIS_generate_mipmap"), 1);
}

TEST_F(ExtensionString, RejectsEmptyAndBlankNamesUnread)
{
    g_driver = {"2.1 Mesa", "GL_EXT_bgra GL_EXT_abgr"};
    EXPECT_EQ(isExtensionSupported(""), 0);
    EXPECT_EQ(isExtensionSupported("GL_EXT_bgra x"), 0);
    EXPECT_EQ(isExtensionSupported("GL_EXT_bgra GL_EXT_abgr"), 0);
    EXPECT_EQ(g_driver.string_reads, 0);
}

TEST_F(ExtensionString, VersionTenTakesTheStringRoute)
{
    g_driver = {"10.0 Future", "GL_EXT_bgra"};
    EXPECT_EQ(isExtensionSupported("GL_EXT_bgra"), 1);
    EXPECT_GT(g_driver.string_reads, 0);
    EXPECT_EQ(isExtensionSupported("GL_VERSION_4_6"), 1);
}

TEST_F(IndexedExtensions, AskGlGetStringiFromVersionThreeOn)
{
    g_driver = {"3.0 Mesa", "GL_EXT_only_in_string", {"GL_ARB_multitexture", "GL_EXT_texture3D"}};
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture3D"), 1);
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture"), 0);
    EXPECT_EQ(isExtensionSupported("GL_EXT_only_in_string"), 0);
    EXPECT_EQ(g_driver.string_reads, 0);
}

TEST_F(IndexedExtensions, LeaveCoreVersionsToTheList)
{
    g_driver = {"4.5 (Core Profile) Mesa", "", {"GL_EXT_bgra"}};
    EXPECT_EQ(isExtensionSupported("GL_VERSION_4_5"), 1);
    EXPECT_EQ(isExtensionSupported("GL_VERSION_3_0"), 1);
    EXPECT_EQ(isExtensionSupported("GL_VERSION_4_6"), 0);
}

}  // namespace
