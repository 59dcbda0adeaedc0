// Pictures that tests write for themselves, in a temporary directory that
// goes away with the test.
#ifndef ZANOVIEW_TESTS_SUPPORT_PICTURE_FILES_H
#define ZANOVIEW_TESTS_SUPPORT_PICTURE_FILES_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zvtest {

// 0x00RRGGBB of pixel (x, y), with y = 0 the TOP row, as a viewer shows it.
using pixel_fn = std::function<std::uint32_t(int x, int y)>;

// A colour for every pixel that differs from its neighbours' in all three
// channels, so that a picture shifted by one pixel, turned or mirrored
// shows; never the viewer's background gray.
std::uint32_t distinct_colour(int x, int y);

// A fresh directory under $TMPDIR (see temp_dir.h), removed with everything
// in it at destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(TempDir const&) = delete;
    TempDir& operator=(TempDir const&) = delete;
    std::string const& path() const { return m_path; }
    std::string file(std::string const& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

// Uncompressed bottom-up BMP writers, written here from the file format and
// independent of the viewer's own BMP code.
bool write_bmp24(std::string const& path, int width, int height, pixel_fn const& colour);
// 8 bits with a palette of up to 256 colours; `index` gives each pixel's entry.
bool write_bmp8(std::string const& path, int width, int height, std::vector<std::uint32_t> const& palette,
                std::function<int(int x, int y)> const& index);

}  // namespace zvtest

#endif
