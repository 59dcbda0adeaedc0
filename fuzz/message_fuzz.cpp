// The message file: found by name, loaded, cut into lines, and every line
// the table has read back whole.
#include <cstdlib>
#include <cstring>
#include <string>

#include "options/message.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    // Without LANG the plain name is the one looked for, at the path given.
    static bool const unset = ::unsetenv("LANG") == 0;
    (void)unset;
    zvfuzz::write_input(data, size, "fuzz.msg");
    std::string const prog = zvfuzz::input_path("fuzz");
    if (zanolib::init_message("", prog.c_str()).empty()) std::abort();
    std::size_t total = 0;
    for (zanolib::e_message_t id = 0; id <= size + 1; ++id) {
        char const* text = zanolib::getmsg(id);
        if (std::strcmp(text, "message not loaded.") == 0) break;
        total += std::strlen(text);
    }
    // The lines are parts of the file: together never longer than it.
    if (total > size) std::abort();
    return 0;
}
