// Replays saved inputs through a harness's LLVMFuzzerTestOneInput without
// libFuzzer, so that the normal test suite, under the sanitizers, proves
// that every fault found once stays fixed:
//   replay_<target> <file or directory>...
// Directories are read in name order, not recursively; one that doesn't
// exist is passed over (a target may have no regressions yet). Exits
// non-zero when no input was found at all, so a misplaced corpus shows.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"

namespace {

namespace fs = std::filesystem;

void replay(fs::path const& file)
{
    std::ifstream in(file, std::ios::binary);
    std::vector<char> const bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    // Named before it runs, so that a crash's report says which input it was.
    std::cout << "replay: " << file.string() << std::endl;
    LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv)
{
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        fs::path const place(argv[i]);
        std::error_code error;
        std::vector<fs::path> files;
        if (fs::is_regular_file(place, error)) files.push_back(place);
        if (fs::is_directory(place, error))
            for (fs::directory_entry const& entry : fs::directory_iterator(place))
                if (entry.is_regular_file()) files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        for (fs::path const& file : files) replay(file);
        count += files.size();
    }
    std::cout << "replay: " << count << " inputs" << std::endl;
    return count == 0 ? 1 : 0;
}
