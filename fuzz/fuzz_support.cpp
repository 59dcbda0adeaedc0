#include "fuzz/fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <unistd.h>

#include "codecs/image_object.h"
#include "image/convert.h"

namespace zvfuzz {

namespace {

// Pictures of up to 4 MB, where the viewer allows half the machine's
// memory: a larger picture takes no other path through the code, and the
// time a fuzzer spends clearing and faulting in its pages (most of a
// second for a progressive 1920 x 1080 that a few bytes claim) is time it
// doesn't spend finding paths.
constexpr std::uint64_t kMaxImageBytes = 4 << 20;
bool const s_limited = (libgr::set_max_image_bytes(kMaxImageBytes), true);

// Made on first use and removed at exit, files and all. The path lives on
// the heap for good, so that the exit handler never sees it destroyed.
std::string const& scratch_dir()
{
    static std::string const* const dir = [] {
        char const* tmp = std::getenv("TMPDIR");
        auto* path = new std::string(std::string(tmp && *tmp ? tmp : "/tmp") + "/zv_fuzz_" +
                                     std::to_string(getpid()));
        std::filesystem::create_directories(*path);
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove_all(scratch_dir(), ignored);
        });
        return path;
    }();
    return *dir;
}

// Where a faulty record is caught: the message says which promise broke.
[[noreturn]] void fault(char const* what)
{
    std::fprintf(stderr, "zv_fuzz: %s\n", what);
    std::fflush(stderr);
    std::abort();
}

}  // namespace

// Where the sums of read_record go, so that its reads can't be left out.
volatile unsigned g_read_sum;

std::string input_path(char const* name)
{
    return scratch_dir() + "/" + name;
}

std::string write_input(std::uint8_t const* data, std::size_t size, char const* name)
{
    std::string const path = input_path(name);
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) fault("can't write the input file");
    if (size != 0 && std::fwrite(data, 1, size, file) != size) fault("can't write the input file");
    if (std::fclose(file) != 0) fault("can't write the input file");
    return path;
}

libgr::image_bytes_t make_view(std::uint8_t const* data, std::size_t size)
{
    libgr::image_bytes_t view;
    if (size == 0) return view;
    if (!view.resize(size, 0)) fault("can't allocate the input view");
    std::memcpy(view.begin(), data, size);
    return view;
}

// The stores are mappings, not the sanitizer's heap: what a read outside
// one meets is a page that isn't there, and a mapping has no holes. So the
// record's claim is checked against its store's size, and its first and
// last bytes are read; reading the pages between would only cost the page
// faults of the rows a broken file never filled.
void read_record(libgr::image2d_t const& image)
{
    unsigned sum = 0;
    // The last row's padding is no pixel: a file may end before it.
    std::uint64_t const need =
        image.compressed ? image.size() : image.layout().end(image.m_width, image.m_height);
    if (need > image.size()) fault("an image record addresses bytes behind its store");
    unsigned char const* p = image.begin();
    if (need != 0) sum += p[0] + p[need - 1];
    libgr::palette_t const& palette = image.palette;
    if (palette.size != 0) {
        unsigned short const* planes[] = {palette.red.begin(), palette.green.begin(), palette.blue.begin()};
        for (unsigned short const* plane : planes) {
            if (!plane) fault("a palette counts entries it has no plane for");
            // The planes are on the sanitizer's heap: their last entry tells.
            sum += plane[0] + plane[palette.size - 1];
        }
    }
    g_read_sum = sum;
}

bool load_as_viewer(libgr::image_object_t& codec, std::uint8_t const* data, std::size_t size)
{
    std::string const path = write_input(data, size, "picture");
    libgr::image2d_t image;
    if (!codec.load(image, path.c_str())) return false;
    read_record(image);
    if (codec.rightrotatecount() > 3) fault("a turn of more than three quarters");
    if (image.desc.format == libgr::IMAGE_FORMAT_INDEX) {
        libgr::image2d_t rgb;
        if (libgr::index2rgb(rgb, image)) read_record(rgb);
    }
    return true;
}

}  // namespace zvfuzz
