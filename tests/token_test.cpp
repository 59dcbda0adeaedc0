// Cutting text into tokens and joining it, trimming line ends, and the
// multibyte/wide conversions.
#include <gtest/gtest.h>

#include <list>
#include <string>

#include "utils/token.h"

#include "tests/support/utf8_locale.h"

namespace {

using L = std::list<std::string>;

L tokens(std::string const& text, char const* delimiters, L out = {})
{
    libutils::separate_token(out, text, delimiters);
    return out;
}

}  // namespace

TEST(SeparateToken, EmptyPiecesCountButNotAtTheEnd)
{
    EXPECT_EQ(tokens("a  b", " \t"), (L{"a", "", "b"}));
    EXPECT_EQ(tokens(",a,", ","), (L{"", "a"}));
    EXPECT_EQ(tokens("", ","), L{});
    EXPECT_EQ(tokens("y:z", ":", {"x"}), (L{"x", "y", "z"})) << "appends";
    EXPECT_EQ(tokens(std::string("a\0b", 3), ","), (L{"a", "b"})) << "NUL splits too";
}

TEST(SeparateFirstToken, CutsAtFirstDelimiterOrLeavesOutputAlone)
{
    std::pair<std::string, std::string> kv;
    ASSERT_TRUE(libutils::separate_first_token(kv, "k=v=w", '='));
    EXPECT_EQ(kv, std::make_pair(std::string("k"), std::string("v=w")));
    EXPECT_FALSE(libutils::separate_first_token(kv, "novalue", '='));
    EXPECT_EQ(kv.first, "k");
}

TEST(Chop, ChopTakesLineEndsChop2AlsoBlanksAndNul)
{
    std::string line = "value \t\r\n\r\n";
    libutils::chop(line);
    EXPECT_EQ(line, "value \t");
    line.assign("value \t\n\r\0 ", 11);
    libutils::chop2(line);
    EXPECT_EQ(line, "value");
}

using WideText = zvtest::Utf8Locale;

TEST_F(WideText, RoundTripsMultibyteTextAndDegradesWhatItCantConvert)
{
    std::string const text = "ph\xc3\xb6to \xe5\x86\x99\xf0\x9f\x93\xb7";
    std::wstring const w = libutils::str2wstr(text);
    EXPECT_EQ(w, L"ph\u00f6to \u5199\U0001f4f7");
    EXPECT_EQ(libutils::wstr2str(w), text);
    EXPECT_EQ(libutils::str2wstr("a\xff" "b"), L"a\u00ffb");
    // A surrogate half has no UTF-8 form.
    EXPECT_EQ(libutils::wstr2str(std::wstring(L"a") + wchar_t(0xd800) + L"b"), "a?b");
}
