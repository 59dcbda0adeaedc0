// Fresh scratch directories for the tests: under $TMPDIR, where a user or a
// CI runner keeps scratch files, or under /tmp when that is unset or empty.
#ifndef ZANOVIEW_TESTS_SUPPORT_TEMP_DIR_H
#define ZANOVIEW_TESTS_SUPPORT_TEMP_DIR_H

#include <stdlib.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace zvtest {

// A new directory of the caller's own, its name `prefix` and six random
// characters: make_temp_dir("zv_test_") gives "/tmp/zv_test_a1B2c3" with
// TMPDIR unset. "" when none could be made. The caller removes it.
inline std::string make_temp_dir(char const* prefix)
{
    char const* const tmpdir = std::getenv("TMPDIR");
    std::string const pattern =
        std::string(tmpdir && *tmpdir ? tmpdir : "/tmp") + "/" + prefix + "XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    return mkdtemp(name.data()) ? std::string(name.data()) : std::string();
}

}  // namespace zvtest

#endif
