// Allocators, the shared arrays and their sharing and resize rules, ptr_t,
// and the bit helpers.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <unistd.h>

#include "utils/alloc.h"
#include "utils/bits.h"
#include "utils/ptr.h"
#include "utils/refvector.h"
#include "utils/refvector2.h"

using namespace libutils;

namespace {

using bytes_t = ofsvector<unsigned char, alloc_mmap_unix>;

std::string text(bytes_t const& v) { return std::string(v.begin(), v.end()); }

// A scratch directory whose files go away with the test.
class Files : public ::testing::Test {
protected:
    void SetUp() override
    {
        char tmpl[] = "/tmp/zv_storage_XXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        m_dir = tmpl;
    }
    void TearDown() override
    {
        for (std::string const& f : m_files) std::remove(f.c_str());
        rmdir(m_dir.c_str());
    }
    std::string write(char const* name, std::string const& content)
    {
        m_files.push_back(m_dir + "/" + name);
        std::ofstream(m_files.back(), std::ios::binary) << content;
        return m_files.back();
    }
    std::string read(std::string const& path)
    {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    std::string missing() const { return m_dir + "/missing"; }

    std::string m_dir;
    std::vector<std::string> m_files;
};

struct Allocators : Files {};
struct FileLoad : Files {};
struct Ofsvector : Files {};

}  // namespace

TEST_F(Allocators, RefusalsAreNullAndLeaveNoFileOpen)
{
    alloc_mmap_unix a;
    unsigned long size = 0;
    std::string const path = write("f", "abc");
    EXPECT_EQ(a.allocate(size, path.c_str(), e_prot_t(2), 0, nullptr), nullptr);
    EXPECT_EQ(a.allocate(size, nullptr, PROTECT_READWRITE, 0, nullptr), nullptr);
    EXPECT_EQ(a.allocate(size, write("empty", "").c_str(), PROTECT_READ, 0, nullptr), nullptr);
    size = 2;
    EXPECT_EQ(a.allocate(size, path.c_str(), PROTECT_READ, 1 /*unaligned*/, nullptr), nullptr);
    size = 4;  // more than the file holds: touching it would raise SIGBUS
    EXPECT_EQ(a.allocate(size, path.c_str(), PROTECT_READ, 0, nullptr), nullptr);
    EXPECT_EQ(a.fd, -1);
}

TEST_F(Allocators, FreeStoreReadsFileZeroFillsAndRefusesMissingOne)
{
    std::string const path = write("f", "hello");
    refvector2<char, alloc_new> v;
    ASSERT_TRUE(v.load(8, path.c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_EQ(std::string(v.begin(), v.end()), std::string("hello\0\0\0", 8));
    EXPECT_FALSE(v.load(8, missing().c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_FALSE(v.is_allocated());
}

TEST_F(FileLoad, CountZeroMapsWholeFileAndReadWriteWritesThrough)
{
    std::string const path = write("f", "0123456789");
    bytes_t v;
    ASSERT_TRUE(v.load(0, path.c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_EQ(v.size(), 10u);
    EXPECT_EQ(text(v), "0123456789");
    ASSERT_TRUE(v.load(0, path.c_str(), PROTECT_READWRITE, 0, false, nullptr));
    v[1] = 'X';
    v.clear();
    EXPECT_EQ(read(path), "0X23456789");
}

TEST_F(FileLoad, MissingOrEmptyFileFailsAndLeavesHandleEmpty)
{
    bytes_t v;
    EXPECT_FALSE(v.load(0, missing().c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_FALSE(v.load(0, write("empty", "").c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_FALSE(v.is_allocated());
    EXPECT_EQ(v.begin(), v.end());
}

TEST_F(FileLoad, KeepHoldsOldContentsOnFailureAndCarriesThemOver)
{
    bytes_t v;
    ASSERT_TRUE(v.resize(4, 0));
    std::copy_n("abcd", 4, v.begin());
    EXPECT_FALSE(v.load(0, missing().c_str(), PROTECT_READ, 0, true, nullptr));
    EXPECT_EQ(text(v), "abcd");
    ASSERT_TRUE(v.load(6, nullptr, PROTECT_READWRITE, 0, true, nullptr));
    EXPECT_EQ(text(v), std::string("abcd\0\0", 6));
}

TEST(Refvector2Sharing, CopiesShareStorageUntilTheLastGoes)
{
    refvector2<int, alloc_mmap_unix> a;
    ASSERT_TRUE(a.resize(3, 0));
    a[0] = 7;
    refvector2<int, alloc_mmap_unix> b(a), c;
    c = b;
    c = c;
    a.deallocate();
    EXPECT_EQ(b[0], 7);
    b.clear();
    EXPECT_EQ(c[0], 7);
}

TEST(Refvector2Sharing, BaseResizeIsSeenThroughEverySharer)
{
    refvector2<int, alloc_new> a, b;
    ASSERT_TRUE(a.resize(2, 0));
    a[1] = 5;
    b = a;
    ASSERT_TRUE(a.resize(4, 0));
    EXPECT_EQ(b.size(), 4u);
    EXPECT_EQ(b[1], 5);
    EXPECT_FALSE(a.resize(~0ul / 2, 0)) << "a byte count that wraps must fail";
    EXPECT_EQ(b.size(), 4u);
}

TEST_F(Ofsvector, WindowSetsBeginAndLimitsSize)
{
    bytes_t v;
    ASSERT_TRUE(v.load(0, write("f", "0123456789").c_str(), PROTECT_READ, 0, false, nullptr));
    v.offset = 3;
    EXPECT_EQ(v.size(), 7u);
    EXPECT_EQ(v[0], '3');
    v.count = 2;
    EXPECT_EQ(text(v), "34");
    v.count = bytes_t::npos;
    v.offset = 11;
    EXPECT_EQ(v.size(), 0u);
}

TEST_F(Ofsvector, WindowsOfOtherTypesShareOneFile)
{
    bytes_t file;
    std::string const words_le("\x01\0\0\0\x02\0\0\0\x03\0\0\0", 12);
    ASSERT_TRUE(file.load(0, write("f", words_le).c_str(), PROTECT_READ, 0, false, nullptr));
    ofsvector<unsigned int, alloc_mmap_unix> words;
    words = file;
    words.offset = 4;
    EXPECT_EQ(words.size(), 2u);
    file.clear();
    EXPECT_EQ(words[1], 3u) << "the mapping must outlive the handle it came from";
}

TEST_F(Ofsvector, ResizeOnEmptyGivesAnonymousArea)
{
    bytes_t v;
    ASSERT_TRUE(v.resize(100, 0));
    EXPECT_EQ(v.size(), 100u);
    v[99] = 1;
    // Nothing can be mapped for 0 bytes: refused, and the old area stays.
    EXPECT_FALSE(v.resize(0, 0));
    EXPECT_EQ(v.size(), 100u);
}

TEST_F(Ofsvector, ResizeMovesWindowToElementZeroOfPrivateCopy)
{
    std::string const path = write("f", "0123456789");
    bytes_t file;
    ASSERT_TRUE(file.load(0, path.c_str(), PROTECT_READ, 0, false, nullptr));
    bytes_t view = file;
    view.offset = 6;
    ASSERT_TRUE(view.resize(3, 0));
    EXPECT_EQ(text(view), "678");
    view[0] = 'x';  // writable, though the file was mapped read-only
    EXPECT_EQ(text(file), "0123456789");
    EXPECT_EQ(read(path), "0123456789");

    // Growing past the end of the old storage copies only what is there.
    view = file;
    view.offset = 8;
    ASSERT_TRUE(view.resize(5, 0));
    EXPECT_EQ(text(view), std::string("89\0\0\0", 5));
}

TEST_F(Ofsvector, ResizeLimitsCopyByCountTakenAsBytes)
{
    ofsvector<unsigned short, alloc_mmap_unix> v;
    ASSERT_TRUE(v.resize(4, 0));
    for (unsigned short i = 0; i < 4; ++i) v[i] = static_cast<unsigned short>(0x0101 * (i + 1));
    v.count = 3;  // three elements, but the copy takes three bytes
    ASSERT_TRUE(v.resize(4, 0));
    EXPECT_EQ(v[0], 0x0101);
    EXPECT_EQ(v[1], 0x0002);
}

TEST_F(Ofsvector, LoadResetsWindow)
{
    bytes_t v;
    ASSERT_TRUE(v.resize(8, 0));
    v.offset = 2;
    v.count = 1;
    ASSERT_TRUE(v.load(0, write("f", "abc").c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_EQ(text(v), "abc");
}

TEST(Refvector, SizeIsBlockBytesAndResizeToZeroEmpties)
{
    refvector<unsigned short, alloc_new> v;
    ASSERT_TRUE(v.resize(10));
    EXPECT_GE(v.size(), 10 * sizeof(unsigned short) + 2 * sizeof(unsigned long));
    EXPECT_EQ(v.end() - v.begin(), 10) << "end() stays behind the elements";
    ASSERT_TRUE(v.resize(0));
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(v.size(), 0u);
}

TEST(Refvector, AssignmentSharesAndResizeMakesPrivateCopy)
{
    refvector<unsigned short, alloc_new> a, b;
    ASSERT_TRUE(a.resize(3));
    a[0] = 1;
    a[2] = 3;
    b = a;
    EXPECT_EQ(b.begin(), a.begin());
    ASSERT_TRUE(b.resize(5));
    EXPECT_EQ(b[2], 3);
    EXPECT_EQ(b[4], 0);
    b[0] = 9;
    EXPECT_EQ(a[0], 1);
}

namespace {

struct counted {
    explicit counted(int& deaths) : deaths(deaths) {}
    virtual ~counted() { ++deaths; }
    int& deaths;
};
struct derived : counted {
    using counted::counted;
    ~derived() override { ++deaths; }
};

}  // namespace

TEST(PtrT, DeletesThroughVirtualDestructorOnReassignAndScopeEnd)
{
    int deaths = 0;
    {
        ptr_t<counted> p(new derived(deaths));
        p = static_cast<counted*>(p);  // holding it already: no delete
        EXPECT_EQ(deaths, 0);
        p = new counted(deaths);
        EXPECT_EQ(deaths, 2);
        p = nullptr;
        EXPECT_TRUE(!p);
        p = new counted(deaths);
    }
    EXPECT_EQ(deaths, 4);
}

TEST(Bits, PowersOfTwoTopBitAndAlignment)
{
    EXPECT_TRUE(Is_2nSize(256u));
    EXPECT_FALSE(Is_2nSize(0u));
    EXPECT_FALSE(Is_2nSize(96));
    EXPECT_EQ(Get_TopBitPos(0), 0);
    EXPECT_EQ(Get_TopBitPos(-1), 32);
    EXPECT_EQ(UpAlignBits(13, 2), 16);
    EXPECT_NEAR(uc2f(255), 1.0f, 1e-6);
}
