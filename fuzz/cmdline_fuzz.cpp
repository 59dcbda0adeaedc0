// The command line: arguments cut from the input at NUL bytes, parsed as
// the program's start parses them, with the option record put back
// afterwards.
#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

#include "options/option.h"

#include "fuzz/fuzz_support.h"

namespace {

// "-h" in any case, alone or with "+": the help, which prints the table and
// exits the process. It is turned into "-h-", which leaves the flag off
// and uses the same one element, so the parse around it is unchanged.
bool asks_for_help(std::string const& arg)
{
    return arg.size() >= 2 && arg[0] == '-' && std::tolower(static_cast<unsigned char>(arg[1])) == 'h' &&
           (arg.size() == 2 || (arg.size() == 3 && arg[2] == '+'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::vector<std::string> words{"zanoview"};
    std::string word;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            words.push_back(word);
            word.clear();
        } else {
            word += static_cast<char>(data[i]);
        }
    }
    if (!word.empty()) words.push_back(word);
    for (std::string& w : words)
        if (asks_for_help(w)) w = "-h-";

    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    int argc = static_cast<int>(words.size());
    char** args = argv.data();

    zanolib::option_t const builtin = zanolib::g_option;
    zanolib::option_enter_argument(&argc, &args);
    zanolib::g_option = builtin;
    // The arguments left are the picture list: all within the array.
    if (argc < 1 || argc > static_cast<int>(words.size())) std::abort();
    return 0;
}
