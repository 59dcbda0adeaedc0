// The user default file: read line by line through the command line's
// option parser into the option record, which is put back afterwards.
#include <string>

#include "options/option.h"
#include "options/userdefault.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    zanolib::option_t const builtin = zanolib::g_option;
    std::string const path = zvfuzz::write_input(data, size, "userdefault");
    zanolib::option_load(path.c_str());
    zanolib::g_option = builtin;
    return 0;
}
