// Tests of text handling run under C.UTF-8, as main's setlocale reads text
// on a usual desktop; they skip where that locale is missing.
#ifndef ZANOVIEW_TESTS_SUPPORT_UTF8_LOCALE_H
#define ZANOVIEW_TESTS_SUPPORT_UTF8_LOCALE_H

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace zvtest {

// Puts the test's own locale back afterwards.
class Utf8Locale : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!std::setlocale(LC_ALL, "C.UTF-8")) GTEST_SKIP() << "no C.UTF-8 locale";
    }
    void TearDown() override { std::setlocale(LC_ALL, m_saved.c_str()); }
    std::string const m_saved = std::setlocale(LC_ALL, nullptr);
};

}  // namespace zvtest

#endif
