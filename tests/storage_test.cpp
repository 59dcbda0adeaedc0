// Allocators, the shared arrays and their sharing and resize rules, ptr_t,
// and the bit helpers.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/scratch.h"
#include "utils/alloc.h"
#include "utils/bits.h"
#include "utils/ptr.h"
#include "utils/refvector.h"
#include "utils/refvector2.h"

using namespace libutils;

namespace {

using bytes_t = ofsvector<unsigned char, alloc_mmap_unix>;

std::string text(bytes_t const& v) { return std::string(v.begin(), v.end()); }

using Files = zvtest::ScratchFiles;
using zvtest::read_file;
struct Allocators : Files {};
struct Ofsvector : Files {};

}  // namespace

TEST_F(Allocators, RefusalsAreNullAndLeaveNoFileOpen)
{
    alloc_mmap_unix a;
    unsigned long size = 0;
    std::string const path = write("f", "abc");
    EXPECT_EQ(a.allocate(size, path.c_str(), e_prot_t(2), 0, nullptr), nullptr);
    EXPECT_EQ(a.allocate(size, write("empty", "").c_str(), PROTECT_READ, 0, nullptr), nullptr);
    size = 2;
    EXPECT_EQ(a.allocate(size, path.c_str(), PROTECT_READ, 1 /*unaligned*/, nullptr), nullptr);
    size = 4;  // more than the file holds: touching it would raise SIGBUS
    EXPECT_EQ(a.allocate(size, path.c_str(), PROTECT_READ, 0, nullptr), nullptr);
    EXPECT_EQ(a.fd, -1);
}

TEST(Refvector2Sharing, CopiesSeeABaseResizeAndKeepTheStorageUntilTheLastGoes)
{
    refvector2<int, alloc_mmap_unix> a;
    ASSERT_TRUE(a.resize(2, 0));
    a[1] = 5;
    refvector2<int, alloc_mmap_unix> b(a), c;
    c = b;
    c = c;
    ASSERT_TRUE(a.resize(4, 0));
    EXPECT_FALSE(a.resize(~0ul / 2, 0)) << "a byte count that wraps must fail";
    a.deallocate();
    b.clear();
    EXPECT_EQ(c.size(), 4u);
    EXPECT_EQ(c[1], 5);
}

// The readers map whole files read-only and never ask to keep old contents.
TEST_F(Ofsvector, CountZeroMapsTheWholeFileAWindowNarrowsItAndLoadResetsIt)
{
    bytes_t v;
    ASSERT_TRUE(v.load(0, write("f", "0123456789").c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_EQ(text(v), "0123456789");
    v.offset = 3;
    EXPECT_EQ(v[0], '3');
    v.count = 2;
    EXPECT_EQ(text(v), "34");
    ASSERT_TRUE(v.load(0, write("g", "abc").c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_EQ(text(v), "abc");
    EXPECT_FALSE(v.load(0, path("missing").c_str(), PROTECT_READ, 0, false, nullptr));
    EXPECT_FALSE(v.is_allocated()) << "a missing file leaves nothing";
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
    EXPECT_EQ(read_file(path), "0123456789");
    // Growing past the end of the old storage copies only what is there.
    view = file;
    view.offset = 8;
    ASSERT_TRUE(view.resize(5, 0));
    EXPECT_EQ(text(view), std::string("89\0\0\0", 5));
}

TEST(Refvector, AssignmentSharesAndResizeMakesPrivateCopy)
{
    refvector<unsigned short, alloc_new> a, b;
    ASSERT_TRUE(a.resize(3));
    EXPECT_EQ(a.end() - a.begin(), 3) << "end() stays behind the elements, not size()";
    a[0] = 1;
    a[2] = 3;
    b = a;
    ASSERT_TRUE(b.resize(5));
    EXPECT_EQ(b[2], 3);
    b[0] = 9;
    EXPECT_EQ(a[0], 1);
}

namespace {

struct counted_t {
    virtual ~counted_t() { ++deaths; }
    static inline int deaths = 0;
};

}  // namespace

TEST(PtrT, DeletesOnReassignAndScopeEndButNotWhenGivenWhatItHolds)
{
    {
        ptr_t<counted_t> p(new counted_t);
        p = static_cast<counted_t*>(p);
        EXPECT_EQ(counted_t::deaths, 0);
        p = new counted_t;
        EXPECT_EQ(counted_t::deaths, 1);
    }
    EXPECT_EQ(counted_t::deaths, 2);
}

// Texture sides are rounded up with these, so an off-by-one shows as a
// wrong tile size.
TEST(Bits, PowersOfTwoTopBitAndAlignment)
{
    EXPECT_FALSE(Is_2nSize(0u));
    EXPECT_FALSE(Is_2nSize(96));
    EXPECT_EQ(Get_TopBitPos(-1), 32);
    EXPECT_EQ(UpAlignBits(300ul, Get_TopBitPos(300ul)), 512ul);
    EXPECT_EQ(UpAlignBits(16, 2), 16);
}
