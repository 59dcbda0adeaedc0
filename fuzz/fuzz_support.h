// What the fuzzing harnesses share: turning the fuzzer's bytes into the
// file or the view a reader takes, and reading back every byte an image
// record promises, so that a record that claims more than it holds faults
// here and not later in the texture upload.
//
// Every harness defines LLVMFuzzerTestOneInput and nothing else. Built with
// -fsanitize=fuzzer it is a libFuzzer target (tools/fuzz.sh); linked with
// replay_main.cpp it replays its seeds and fuzz/regressions/<target>/ as a
// plain CTest program.
#ifndef ZANOVIEW_FUZZ_FUZZ_SUPPORT_H
#define ZANOVIEW_FUZZ_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "image/image.h"

namespace libgr {
class image_object_t;
}

// Declared once for the harnesses that define it and the replay program
// that calls it, so that a harness with another signature doesn't build.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace zvfuzz {

// Writes `data` to the file `name` in a directory of this process's own
// (under TMPDIR, removed at exit) and returns its path. The same name is
// overwritten by the next input.
std::string write_input(std::uint8_t const* data, std::size_t size, char const* name);

// The path a file of that name would have in the same directory.
std::string input_path(char const* name);

// The bytes as an anonymous view of exactly that size, as a parser gets a
// segment's payload; empty input gives an empty view.
libgr::image_bytes_t make_view(std::uint8_t const* data, std::size_t size);

// Checks that `image` addresses no byte behind its store and reads the
// ends of what it addresses and of its palette; a record promising more
// than it holds stops the process with a report, which the fuzzer counts
// as a fault.
void read_record(libgr::image2d_t const& image);

// What the viewer does with a picture file: the codec's load, then the
// palette turned into RGB as the scene does before tiling, each result read
// whole. Returns what load returned.
bool load_as_viewer(libgr::image_object_t& codec, std::uint8_t const* data, std::size_t size);

}  // namespace zvfuzz

#endif
