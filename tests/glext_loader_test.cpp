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

GLubyte const* as_gl(std::string const& s) { return reinterpret_cast<GLubyte const*>(s.c_str()); }

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
        glGetString = [](GLenum name) -> GLubyte const* {
            if (name == GL_VERSION) return as_gl(g_driver.version);
            if (name != GL_EXTENSIONS) return nullptr;
            ++g_driver.string_reads;
            return as_gl(g_driver.extensions);
        };
        glGetIntegerv = [](GLenum name, GLint* value) {
            if (name == GL_NUM_EXTENSIONS) *value = static_cast<GLint>(g_driver.indexed.size());
        };
        glGetStringi = [](GLenum name, GLuint i) -> GLubyte const* {
            bool const there = name == GL_EXTENSIONS && i < g_driver.indexed.size();
            return there ? as_gl(g_driver.indexed[i]) : nullptr;
        };
    }
    void TearDown() override { free_version_list(); }
};

using CoreVersionList = LoaderTest;
using ExtensionString = LoaderTest;
using IndexedExtensions = LoaderTest;

TEST(NumDotStrCmp, ComparesFieldsAsNumbersAndEndingFirstIsLess)
{
    EXPECT_EQ(numdotstrcmp("2.10.0", "2.9.0"), 1);
    EXPECT_EQ(numdotstrcmp("10.0", "3.0.0"), 1);
    // Text behind a number reads as a field of 0.
    EXPECT_EQ(numdotstrcmp("2.1 Mesa 22.3.6", "2.1.0"), 1);
    EXPECT_EQ(numdotstrcmp("2.1", "2.1.0"), -1);
}

TEST_F(CoreVersionList, HoldsEveryVersionReachedNewestFirst)
{
    extension_string_init("1.4 Mesa 22.3.6");
    EXPECT_EQ(version_list(),
              (std::vector<std::string>{"GL_VERSION_1_4", "GL_VERSION_1_3", "GL_VERSION_1_2"}));
    free_version_list();
    // "2.1" ends before "2.1.0", so falls short of its own row.
    extension_string_init("2.1");
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
}

TEST_F(ExtensionString, MatchesWholeEntriesOnlyFromFirstToLast)
{
    g_driver = {"2.1 Mesa", "GL_EXT_texture3D GL_ARB_multitexture GL_EXT_texture_object "
                            "GL_EXT_texture GL_EXT_abgr"};
    // Empty and blank names are refused before the list is read.
    EXPECT_EQ(isExtensionSupported(""), 0);
    EXPECT_EQ(isExtensionSupported("GL_ARB_multitexture GL_EXT_texture_object"), 0);
    EXPECT_EQ(g_driver.string_reads, 0);
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture3D"), 1);
    // Found only past two entries it begins.
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture"), 1);
    EXPECT_EQ(isExtensionSupported("GL_ARB_multi"), 0);   // prefix of an entry
    EXPECT_EQ(isExtensionSupported("EXT_texture3D"), 0);  // tail of an entry
}

TEST_F(IndexedExtensions, AskGlGetStringiFromVersionThreeOnAndLeaveCoreVersionsToTheList)
{
    g_driver = {"3.0 Mesa", "GL_EXT_only_in_string", {"GL_ARB_multitexture", "GL_EXT_texture3D"}};
    EXPECT_EQ(isExtensionSupported("GL_EXT_texture3D"), 1);
    EXPECT_EQ(isExtensionSupported("GL_EXT_only_in_string"), 0);
    EXPECT_EQ(g_driver.string_reads, 0);
    EXPECT_EQ(isExtensionSupported("GL_VERSION_3_0"), 1);
    EXPECT_EQ(isExtensionSupported("GL_VERSION_3_1"), 0);
}

}  // namespace
