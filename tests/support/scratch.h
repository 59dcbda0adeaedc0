// Scratch files and captured standard streams, for the tests that read and
// write files or check the lines a call prints.
#ifndef ZANOVIEW_TESTS_SUPPORT_SCRATCH_H
#define ZANOVIEW_TESTS_SUPPORT_SCRATCH_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

#include "tests/support/temp_dir.h"

namespace zvtest {

inline std::string read_file(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// A directory of the test process's own, removed with its files after each test.
class ScratchFiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_dir = make_temp_dir("zv_test_");
        ASSERT_FALSE(m_dir.empty());
    }
    void TearDown() override { std::filesystem::remove_all(m_dir); }
    std::string path(std::string const& name) const { return m_dir + "/" + name; }
    std::string write(std::string const& name, std::string const& data) const
    {
        std::ofstream(path(name), std::ios::binary) << data;
        return path(name);
    }
    std::string m_dir;
};

// Sends what a stream receives to a string while it lives. Only the buffer
// is swapped: a sanitizer's report still reaches the test's log.
class Capture {
public:
    explicit Capture(std::ostream& stream) : m_stream(stream), m_old(stream.rdbuf(m_text.rdbuf())) {}
    ~Capture() { m_stream.rdbuf(m_old); }
    std::string text() const { return m_text.str(); }

private:
    std::ostream& m_stream;
    std::ostringstream m_text;
    std::streambuf* m_old;
};

}  // namespace zvtest

#endif
