// The view state file and the typed text forms it is made of: the file read
// as the viewer reads it beside a picture, then the same text read as a run
// of typed values whose names pick their readers.
#include <sstream>
#include <string>

#include "app/zvwfile.h"
#include "geometry/mtype.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    zvfuzz::write_input(data, size, "picture.zvw");
    std::string const picture = zvfuzz::input_path("picture.jpg");
    zanoview2::zvwfile_t state;
    state.load(picture.c_str());

    std::istringstream text(std::string(reinterpret_cast<char const*>(data), size));
    std::ostringstream written;
    // Each value read leaves the stream further on or failed; the bound
    // keeps one that did neither from looping here for ever.
    for (std::size_t i = 0; i <= size && text; ++i) {
        libgr::mtype_reader value;
        text >> value;
        written << value;
    }
    return 0;
}
