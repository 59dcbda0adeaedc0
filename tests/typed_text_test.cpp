// Text forms of the geometry values: the exact written forms (the view state
// file is made of them), the forgiving readers, the type names and the
// reader of a value whose type the text names. Every read here must end,
// whatever the text: a hang shows as a test timeout.
#include <gtest/gtest.h>

#include <ios>
#include <iterator>
#include <sstream>
#include <string>

#include "geometry/mtype.h"
#include "geometry/text.h"

using namespace libgr;

namespace {

template <class T>
std::string Text(T const& v)
{
    std::ostringstream os;
    os << v;
    return os.str();
}

// Whatever the read left in the stream.
std::string Rest(std::istream& is)
{
    is.clear();
    return std::string(std::istreambuf_iterator<char>(is), {});
}

// Writes `v`, reads it into a zeroed value, and writes that again: the two
// texts must agree and the read must use up the text, closing ")" included.
template <class T>
void ExpectRoundTrip(T const& v)
{
    std::string const written = Text(v);
    SCOPED_TRACE(written);
    std::istringstream is(written);
    T back{};
    is >> back;
    EXPECT_FALSE(is.fail());
    EXPECT_EQ(is.peek(), std::char_traits<char>::eof());
    EXPECT_EQ(Text(back), written);
}

matrix3w_t const sample_matrix{{{1.5f, -2.25f, 0.125f, 0.0f},
                                {0.333333f, 4.0f, -0.000001f, 0.0f},
                                {7.0f, 8.5f, 9.75f, 0.0f},
                                {10.0f, -11.0f, 12.5f, 1.0f}}};

}  // namespace

TEST(TextWriters, WriteNameAndFixedNumbersAndNestedNamesWithoutLineEnd)
{
    EXPECT_EQ(Text(position3(1, 2, 3)), "pos3(1.000000, 2.000000, 3.000000)");
    EXPECT_EQ(Text(direction2l(800, 600)), "dir2l(800, 600)");
    EXPECT_EQ(Text(rotation3(0.5f, IdirY)), "rot3(0.500000, dir3(0.000000, 1.000000, 0.000000))");
    EXPECT_EQ(Text(posture3w_t{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}),
              "pst3w(rev3(1.000000, 2.000000, 3.000000), rev3(4.000000, 5.000000, 6.000000), "
              "pos3(7.000000, 8.000000, 9.000000))");
}

TEST(TextWriters, UseStreamPrecisionAndLeaveFlagsAsFound)
{
    std::ostringstream os;
    os << std::scientific << std::showpos;
    os.precision(2);
    std::ios_base::fmtflags const before = os.flags();
    os << color3a(0.25f, 0.5f, 1, 1) << ' ' << sample_matrix;
    EXPECT_EQ(os.flags(), before);
    os.str("");
    os << position2(1.5f, 0) << ' ' << 1.5;
    EXPECT_EQ(os.str(), "pos2(+1.50, +0.00) +1.50e+00");
}

TEST(ByteColours, WriteEachByteAsItselfPaddedWithZero)
{
    EXPECT_EQ(Text(color3ub('A', 'B', 'C')), "col3ub(0A0B0C)");
    std::ostringstream os;
    os << std::showbase << color3aub('a', 'b', 'c', 'd');
    EXPECT_EQ(os.str(), "0xcol3aub(0a0b0c0d)");
}

TEST(TextRoundTrip, ReadersTakeTheFieldsInTheOrderWritten)
{
    ExpectRoundTrip(position2l(-4, 2147483647));
    ExpectRoundTrip(rotation3(-37.5f, direction3(0.6f, 0, 0.8f)));
    ExpectRoundTrip(inertial3_t{{1, 2, 3}, {4, {5, 6, 7}}});
    ExpectRoundTrip(sample_matrix);
    ExpectRoundTrip(projection_t{-400, 400, -300, 300, -1000, 1000});
}

TEST(PlainReaders, CheckNeitherNameNorSeparatorNorParenthesisAndStopAtEndOfText)
{
    std::istringstream is("xyz (1;2;3 pos3(4, 5, 6 )! size (640 , 480)");
    position3_t p{};
    is >> p;
    EXPECT_EQ(Text(p), Text(position3(1, 2, 3)));
    is >> p;
    EXPECT_EQ(Text(p), Text(position3(4, 5, 6)));
    EXPECT_EQ(is.peek(), ' ') << "\")\" counts only straight after the last number";
    direction2l_t size{};
    is >> size;
    EXPECT_EQ(size, direction2l(640, 480));

    for (char const* text : {"", "   \n", "pos3 1 2 3"}) {
        std::istringstream empty(text);
        position3_t kept = position3(7, 8, 9);
        empty >> kept;
        EXPECT_TRUE(empty.fail()) << text;
        EXPECT_EQ(Text(kept), Text(position3(7, 8, 9))) << "untouched before the \"(\"";
    }
    // A file cut inside the matrix: what was there is read, the rest kept.
    std::istringstream truncated("mtx3w(\t2.0, 3.0");
    matrix3w_t m = Imtx;
    truncated >> m;
    EXPECT_EQ(m[0][1], 3.0f);
    EXPECT_EQ(m[3][3], 1.0f);
}

TEST(NestedReaders, StopAtTheFirstUnexpectedName)
{
    std::istringstream rot("rot3(0.5, pos3(1, 2, 3))");
    rotation3_t r = Irot;
    rot >> r;
    EXPECT_EQ(r.angle, 0.5f);  // written as read
    EXPECT_EQ(Text(r.axis), Text(Irot.axis));
    EXPECT_EQ(Rest(rot), "(1, 2, 3))");
    // All or nothing: the rev3 was good, but the target keeps its value.
    std::istringstream irt("irt3(rev3(1, 2, 3), dir3(4, 5, 6))");
    inertial3_t const before{{9, 9, 9}, {9, {9, 9, 9}}};
    inertial3_t i = before;
    irt >> i;
    EXPECT_EQ(Text(i), Text(before));
}

TEST(NestedReaders, PostureReadsRot3NamesAndNotItsOwnForm)
{
    posture3w_t const written{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    posture3w_t const before{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    std::istringstream own(Text(written));
    posture3w_t p = before;
    own >> p;
    EXPECT_EQ(Text(p), Text(before));
    std::istringstream rot("pst3w(rot3(1, 2, 3), rot3(4, 5, 6), pos3(7, 8, 9))");
    rot >> p;
    EXPECT_EQ(Text(p), Text(written));
}

// Nothing in the viewer reads typed values; what matters is that names are
// whole and that no text makes the reader loop.
TEST(MtypeReader, ReadsTheTypeTheTextNamesAndEndsAtEndOfText)
{
    EXPECT_EQ(get_mtype("col3a"), MTYPE_COL3A);
    EXPECT_EQ(get_mtype("col"), MTYPE_NONE);
    std::istringstream is("float(2.5) po s3(1, 2, 3) unknown(1, 2) dir2l(4, 5)");
    mtype_reader r;
    is >> r;
    EXPECT_EQ(r.type, MTYPE_FLOAT);
    EXPECT_EQ(r.value.flt, 2.5f);
    is >> r;
    EXPECT_EQ(r.type, MTYPE_POS3);
    EXPECT_EQ(Text(r.value.pos3), Text(position3(1, 2, 3)));
    is >> r;
    EXPECT_EQ(r.type, MTYPE_NONE);
    EXPECT_EQ(Rest(is), " dir2l(4, 5)");

    for (char const* text : {"dir2(1, 2) txc2(3, 4) unknown(5", "rot3(1, dir3(", "projectionprojectionx("}) {
        std::istringstream loop(text);
        int reads = 0;
        while (loop >> r && reads < 10) ++reads;
        EXPECT_LT(reads, 3) << text;
    }
}
