#include "tests/support/picture_files.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "tests/support/temp_dir.h"

namespace zvtest {

namespace {

void put16(std::vector<unsigned char>& out, unsigned v)
{
    out.push_back(v & 0xff);
    out.push_back((v >> 8) & 0xff);
}

void put32(std::vector<unsigned char>& out, std::uint32_t v)
{
    put16(out, v & 0xffff);
    put16(out, v >> 16);
}

// File header and BITMAPINFOHEADER for a bottom-up picture.
std::vector<unsigned char> bmp_headers(int width, int height, int bits, int colours, std::uint32_t data_size)
{
    std::uint32_t const offset = 14 + 40 + 4 * colours;
    std::vector<unsigned char> out{'B', 'M'};
    put32(out, offset + data_size);
    put32(out, 0);  // reserved
    put32(out, offset);
    put32(out, 40);
    put32(out, std::uint32_t(width));
    put32(out, std::uint32_t(height));
    put16(out, 1);  // planes
    put16(out, unsigned(bits));
    put32(out, 0);  // no compression
    put32(out, data_size);
    put32(out, 2835);  // 72 dpi
    put32(out, 2835);
    put32(out, std::uint32_t(colours));
    put32(out, 0);
    return out;
}

bool write_file(std::string const& path, std::vector<unsigned char> const& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<char const*>(bytes.data()), std::streamsize(bytes.size()));
    return bool(file);
}

}  // namespace

std::uint32_t distinct_colour(int x, int y)
{
    std::uint32_t const r = std::uint32_t(x * 37 + y * 11) & 0xff;
    std::uint32_t const g = std::uint32_t(x * 5 + y * 53 + 17) & 0xff;
    std::uint32_t const b = std::uint32_t(x * 97 + y * 29 + 101) & 0xff;
    std::uint32_t const c = (r << 16) | (g << 8) | b;
    return c == 0x2e2e2e ? 0x2e2e2f : c;
}

TempDir::TempDir()
{
    m_path = make_temp_dir("zvtest-pictures.");
}

TempDir::~TempDir()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

bool write_bmp24(std::string const& path, int width, int height, pixel_fn const& colour)
{
    std::uint32_t const stride = (std::uint32_t(width) * 3 + 3) & ~3u;
    std::vector<unsigned char> out = bmp_headers(width, height, 24, 0, stride * std::uint32_t(height));
    for (int row = height - 1; row >= 0; --row) {
        std::size_t const start = out.size();
        for (int x = 0; x < width; ++x) {
            std::uint32_t const c = colour(x, row);
            out.push_back(c & 0xff);
            out.push_back((c >> 8) & 0xff);
            out.push_back((c >> 16) & 0xff);
        }
        out.resize(start + stride, 0);
    }
    return write_file(path, out);
}

bool write_bmp8(std::string const& path, int width, int height, std::vector<std::uint32_t> const& palette,
                std::function<int(int x, int y)> const& index)
{
    std::uint32_t const stride = (std::uint32_t(width) + 3) & ~3u;
    std::vector<unsigned char> out =
        bmp_headers(width, height, 8, int(palette.size()), stride * std::uint32_t(height));
    for (std::uint32_t c : palette) put32(out, c & 0xffffff);  // B, G, R, 0
    for (int row = height - 1; row >= 0; --row) {
        std::size_t const start = out.size();
        for (int x = 0; x < width; ++x) out.push_back((unsigned char)index(x, row));
        out.resize(start + stride, 0);
    }
    return write_file(path, out);
}

}  // namespace zvtest
