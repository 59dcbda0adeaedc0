// Text forms of the geometry values: the exact written forms (the view state
// file is made of them), the forgiving readers, the type names and the
// reader of a value whose type the text names. Every read here must end,
// whatever the text: a hang shows as a test timeout.
#include <gtest/gtest.h>

#include <cmath>
#include <ios>
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
    std::string rest;
    for (int c = is.get(); c != std::char_traits<char>::eof(); c = is.get()) {
        rest += static_cast<char>(c);
    }
    return rest;
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

TEST(TextWriters, WriteNameAndFixedNumbersWithoutLineEnd)
{
    EXPECT_EQ(Text(position3(1, 2, 3)), "pos3(1.000000, 2.000000, 3.000000)");
    EXPECT_EQ(Text(direction2l(800, 600)), "dir2l(800, 600)");
    EXPECT_EQ(Text(texcoord1_t{0.5f}), "txc1(0.500000)");
    EXPECT_EQ(Text(dim3_t{640, 480, 1}), "dim3(640, 480, 1)");
    EXPECT_EQ(Text(projection_t{-1, 1, -2, 2, 0.5, 1000}),
              "projection(-1.000000, 1.000000, -2.000000, 2.000000, 0.500000, 1000.000000)");
}

TEST(TextWriters, NestedFieldsCarryTheirOwnNames)
{
    EXPECT_EQ(Text(rotation3(0.5f, IdirY)), "rot3(0.500000, dir3(0.000000, 1.000000, 0.000000))");
    EXPECT_EQ(Text(posture3w_t{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}),
              "pst3w(rev3(1.000000, 2.000000, 3.000000), rev3(4.000000, 5.000000, 6.000000), "
              "pos3(7.000000, 8.000000, 9.000000))");
    EXPECT_EQ(Text(inertial3_t{{0, 0, 1}, {2, IdirX}}),
              "irt3(rev3(0.000000, 0.000000, 1.000000), "
              "srt3(2.000000, dir3(1.000000, 0.000000, 0.000000)))");
}

TEST(TextWriters, MatrixTakesFourLinesInStorageOrder)
{
    EXPECT_EQ(Text(getTranslateMatrix(position3(1, 2, 3))),
              "mtx3w(\t1.000000, 0.000000, 0.000000, 0.000000,\n"
              "\t0.000000, 1.000000, 0.000000, 0.000000,\n"
              "\t0.000000, 0.000000, 1.000000, 0.000000,\n"
              "\t1.000000, 2.000000, 3.000000, 1.000000)");
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

TEST(ByteColourWriters, WriteEachByteAsItselfPaddedWithZero)
{
    EXPECT_EQ(Text(color3ub('A', 'B', 'C')), "col3ub(0A0B0C)");
    EXPECT_EQ(Text(color1aub_t{'x', 'y'}), "col1aub(0x0y)");
    std::ostringstream os;
    os << std::showbase << color3aub('a', 'b', 'c', 'd');
    EXPECT_EQ(os.str(), "0xcol3aub(0a0b0c0d)");
    EXPECT_TRUE(os.flags() & std::ios_base::showbase);
}

TEST(ViewStateForm, IsFiveLinesAndReadsBack)
{
    matrix3w_t const m = getScaleMatrix(2, 2, 2) * getTranslateMatrix(position3(-3, 4, 0));
    std::ostringstream os;
    os << direction2l(800, 600) << '\n' << m << '\n';
    EXPECT_EQ(os.str(),
              "dir2l(800, 600)\n"
              "mtx3w(\t2.000000, 0.000000, 0.000000, 0.000000,\n"
              "\t0.000000, 2.000000, 0.000000, 0.000000,\n"
              "\t0.000000, 0.000000, 2.000000, 0.000000,\n"
              "\t-3.000000, 4.000000, 0.000000, 1.000000)\n");

    std::istringstream is(os.str());
    direction2l_t size = dir2l(datum2l);
    matrix3w_t back = Imtx;
    is >> size >> back;
    EXPECT_FALSE(is.fail());
    EXPECT_EQ(size, direction2l(800, 600));
    EXPECT_EQ(Text(back), Text(m));
}

TEST(ViewStateForm, OtherWordsAroundTheNumbersAreIgnored)
{
    std::istringstream is("size (640 , 480)\n"
                          "matrix [ignored] (1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16)");
    direction2l_t size{};
    matrix3w_t m = Imtx;
    is >> size;
    EXPECT_EQ(size, direction2l(640, 480));
    // Blanks are no separators: the one character between two numbers here
    // is the leading digit of the next, so the numbers drift.
    is >> m;
    EXPECT_EQ(m[0][0], 1.0f);
    EXPECT_EQ(m[0][1], 3.0f);
}

TEST(TextRoundTrip, EveryReadableTypeReadsBackWhatItWrote)
{
    ExpectRoundTrip(position3(1.5f, -2, 3.25f));
    ExpectRoundTrip(direction3(-0.5f, 0, 7));
    ExpectRoundTrip(position2(8, -9.125f));
    ExpectRoundTrip(direction2(0.75f, 1e6f));
    ExpectRoundTrip(position2l(-4, 2147483647));
    ExpectRoundTrip(direction2l(1920, -1080));
    ExpectRoundTrip(quaternion_t{1, 2, 3, 4});
    ExpectRoundTrip(rotation3(-37.5f, direction3(0.6f, 0, 0.8f)));
    ExpectRoundTrip(polarpos3_t{5, 0.25f, -0.5f});
    ExpectRoundTrip(angles3_t{10, 20, 30});
    ExpectRoundTrip(revolution3_t{-1, -2, -3});
    ExpectRoundTrip(straight3_t{4.5f, IdirMZ});
    ExpectRoundTrip(inertial3_t{{1, 2, 3}, {4, {5, 6, 7}}});
    ExpectRoundTrip(vector3w(1, 2, 3, 0.5f));
    ExpectRoundTrip(color3(0.1f, 0.2f, 0.3f));
    ExpectRoundTrip(gray18);
    ExpectRoundTrip(texcoord1_t{0.5f});
    ExpectRoundTrip(texcoord2_t{0.5f, 1});
    ExpectRoundTrip(texcoord2q_t{0.5f, 1, 2});
    ExpectRoundTrip(texcoord3_t{0.5f, 1, 3});
    ExpectRoundTrip(texcoord3q_t{0.5f, 1, 3, 4});
    ExpectRoundTrip(sample_matrix);
    ExpectRoundTrip(box2_t{{1, 2}, {3, 4}});
    ExpectRoundTrip(box3_t{{1, 2, 3}, {4, 5, 6}});
    ExpectRoundTrip(dim2_t{4096, 2160});
    ExpectRoundTrip(dim3_t{256, 256, 6});
    ExpectRoundTrip(surface_t{0, 0, 1, -5});
    ExpectRoundTrip(line2d_t{1, -1, 0.5f});
    ExpectRoundTrip(line3d_t{IdirY, sample_matrix, Imtx});
    ExpectRoundTrip(projection_t{-400, 400, -300, 300, -1000, 1000});
}

TEST(TextRoundTrip, MatrixKeepsSixDecimals)
{
    matrix3w_t const m = getRotateMatrix(rotation3(33.3f, direction3(1, 2, 3))) *
                         getTranslateMatrix(position3(0.1234567f, -765.4321f, 3));
    std::istringstream is(Text(m));
    matrix3w_t back = Imtx;
    is >> back;
    for (int i = 0; i < 16; ++i) {
        float const v = m.data()[i];
        EXPECT_NEAR(back.data()[i], v, 5e-7f + 1e-7f * std::fabs(v));
    }
}

TEST(PlainReaders, CheckNeitherNameNorSeparatorNorClosingParenthesis)
{
    std::istringstream is("xyz (1;2;3 pos3(4, 5, 6 )!");
    position3_t p{};
    is >> p;
    EXPECT_EQ(Text(p), Text(position3(1, 2, 3)));
    is >> p;
    EXPECT_EQ(Text(p), Text(position3(4, 5, 6)));
    // ")" counts only straight after the last number.
    EXPECT_EQ(Rest(is), " )!");
}

TEST(PlainReaders, EndOfTextBeforeParenthesisLeavesValueAndFails)
{
    for (char const* text : {"", "   \n", "pos3 1 2 3", "no parenthesis at all"}) {
        SCOPED_TRACE(text);
        std::istringstream is(text);
        position3_t p = position3(7, 8, 9);
        is >> p;
        EXPECT_TRUE(is.fail());
        EXPECT_EQ(Text(p), Text(position3(7, 8, 9)));
    }
}

TEST(PlainReaders, TruncatedOrBadNumbersStopTheRead)
{
    std::istringstream truncated("mtx3w(\t2.0, 3.0");
    matrix3w_t m = Imtx;
    truncated >> m;
    EXPECT_EQ(m[0][0], 2.0f);
    EXPECT_EQ(m[0][1], 3.0f);
    EXPECT_EQ(m[0][2], 0.0f);
    EXPECT_EQ(m[3][3], 1.0f);

    // The standard way: the bad number's field gets 0, the rest are left.
    std::istringstream bad("pos3(1, x, 3)");
    position3_t p = position3(7, 8, 9);
    bad >> p;
    EXPECT_TRUE(bad.fail());
    EXPECT_EQ(p.x, 1.0f);
    EXPECT_EQ(p.y, 0.0f);
    EXPECT_EQ(p.z, 9.0f);
}

TEST(NestedReaders, StopAtTheFirstUnexpectedName)
{
    std::istringstream rot("rot3(0.5, pos3(1, 2, 3))");
    rotation3_t r = Irot;
    rot >> r;
    EXPECT_EQ(r.angle, 0.5f);  // written as read
    EXPECT_EQ(Text(r.axis), Text(Irot.axis));
    EXPECT_EQ(Rest(rot), "(1, 2, 3))");

    std::istringstream box("box2(pos2(1, 2), pos3(3, 4, 5))");
    box2_t b{{9, 9}, {9, 9}};
    box >> b;
    EXPECT_EQ(Text(b), "box2(pos2(1.000000, 2.000000), pos2(9.000000, 9.000000))");

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

TEST(NestedReaders, TruncatedTextEnds)
{
    for (char const* text :
         {"rot3(1", "rot3(1, dir3(", "irt3(rev3(1, 2, 3), srt3(", "box3(", "line3d(dir3(1, 2"}) {
        SCOPED_TRACE(text);
        std::istringstream is(text);
        mtype_reader r;
        is >> r;
        EXPECT_TRUE(is.fail() || is.eof());
    }
}

TEST(ByteColourReaders, TakeOneCharacterPerChannel)
{
    std::istringstream is("col3aub(a,b,c,d)");
    color3aub_t c{};
    is >> c;
    EXPECT_EQ(c.r, 'a');
    EXPECT_EQ(c.g, 'b');
    EXPECT_EQ(c.b, 'c');
    EXPECT_EQ(c.a, 'd');
    EXPECT_EQ(is.peek(), std::char_traits<char>::eof());
}

TEST(MtypeNames, AreWholeNamesInTableOrder)
{
    for (int i = 0; i < MTYPE_NONE; ++i) {
        EXPECT_EQ(mtype_table[i].value, i);
        EXPECT_EQ(get_mtype(mtype_table[i].name), i) << mtype_table[i].name;
    }
    EXPECT_EQ(get_mtype("col3"), MTYPE_COL3);
    EXPECT_EQ(get_mtype("col3a"), MTYPE_COL3A);
    EXPECT_EQ(get_mtype("col"), MTYPE_NONE);
    EXPECT_EQ(get_mtype("mtx3w"), 23);
    EXPECT_EQ(get_mtype("projection"), 35);
}

TEST(MtypeNameScanner, SkipsBlanksAndStopsBeforeDelimiters)
{
    std::istringstream is(" po s3(1");
    is >> std::noskipws;
    e_mtype_t t = MTYPE_NONE;
    is >> t;
    EXPECT_EQ(t, MTYPE_POS3);
    EXPECT_TRUE(is.flags() & std::ios_base::skipws);
    EXPECT_EQ(Rest(is), "(1");

    std::istringstream line_first("\npos3(");
    line_first >> t;
    EXPECT_EQ(t, MTYPE_NONE);

    // Cut at 16 characters, so never a name of the table.
    std::istringstream long_name("projectionprojectionx(");
    long_name >> t;
    EXPECT_EQ(t, MTYPE_NONE);
    EXPECT_EQ(Rest(long_name), "tionx(");

    std::istringstream empty("");
    empty >> t;
    EXPECT_EQ(t, MTYPE_NONE);
}

TEST(MtypeWriter, WritesNameOrALineForValuesWithoutOne)
{
    EXPECT_EQ(Text(MTYPE_ROT3), "rot3");
    EXPECT_EQ(Text(MTYPE_NONE), "no type\n");
    EXPECT_EQ(Text(static_cast<e_mtype_t>(99)), "range over\n");
    EXPECT_EQ(Text(static_cast<e_mtype_t>(-1)), "range over\n");
}

TEST(MtypeReader, ReadsTheTypeTheTextNames)
{
    std::istringstream is("float(2.5) pos3(1, 2, 3) unknown(1, 2) dir2l(4, 5)");
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
}

TEST(MtypeReader, LoopEndsAtEndOfText)
{
    std::istringstream is("dir2(1, 2) txc2(3, 4) unknown(5");
    mtype_reader r;
    int reads = 0;
    while (is >> r && reads < 10) ++reads;
    EXPECT_EQ(reads, 2);
}

TEST(MtypeReader, WritesSomeTypesAndNotOthers)
{
    mtype_reader r;
    r.type = MTYPE_FLOAT;
    r.value.flt = 2.5f;
    EXPECT_EQ(Text(r), "float(2.500000)");
    r.type = MTYPE_DIR2L;
    r.value.dir2l = direction2l(3, 4);
    EXPECT_EQ(Text(r), "dir2l(3, 4)");
    for (e_mtype_t const silent : {MTYPE_BOX2, MTYPE_DIM3, MTYPE_LINE3D, MTYPE_NONE}) {
        r.type = silent;
        EXPECT_EQ(Text(r), "") << Text(silent);
    }
}
