// Time from a picture file to its first frame, stage by stage, for a large
// photo-sized BMP: decode, tiling, texture upload with mipmaps, display
// list, first draw. Needs an X display (Xvfb will do).
//
//   build/bench/first_frame_bench [width height [runs]]
//
// Prints the median of the runs for each stage, in milliseconds.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "codecs/bmp2.h"
#include "gl/dsplist.h"
#include "scene/tiling.h"
#include "scene/viewscene.h"

namespace {

using clock_type = std::chrono::steady_clock;

double ms_since(clock_type::time_point start)
{
    return std::chrono::duration<double, std::milli>(clock_type::now() - start).count();
}

// A 24-bit bottom-up BMP with a smooth gradient, written once.
bool write_picture(std::string const& path, int width, int height)
{
    std::uint32_t const stride = (std::uint32_t(width) * 3 + 3) & ~3u;
    std::uint32_t const data = stride * std::uint32_t(height);
    std::vector<unsigned char> header(54, 0);
    auto put = [&](std::size_t at, std::uint32_t v, int n) {
        for (int i = 0; i < n; ++i) header[at + i] = (v >> (8 * i)) & 0xff;
    };
    header[0] = 'B';
    header[1] = 'M';
    put(2, 54 + data, 4);
    put(10, 54, 4);
    put(14, 40, 4);
    put(18, std::uint32_t(width), 4);
    put(22, std::uint32_t(height), 4);
    put(26, 1, 2);
    put(28, 24, 2);
    put(34, data, 4);
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<char const*>(header.data()), 54);
    std::vector<unsigned char> row(stride, 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            row[3 * x] = (unsigned char)(x * 255 / width);
            row[3 * x + 1] = (unsigned char)(y * 255 / height);
            row[3 * x + 2] = (unsigned char)((x + y) & 0xff);
        }
        out.write(reinterpret_cast<char const*>(row.data()), stride);
    }
    return bool(out);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

}  // namespace

int main(int argc, char** argv)
{
    int const width = argc > 2 ? std::atoi(argv[1]) : 6000;
    int const height = argc > 2 ? std::atoi(argv[2]) : 4000;
    int const runs = argc > 3 ? std::max(1, std::atoi(argv[3])) : 5;

    if (!glfwInit()) {
        std::fprintf(stderr, "first_frame_bench: no display\n");
        return 1;
    }
    GLFWwindow* window = glfwCreateWindow(800, 600, "first frame bench", nullptr, nullptr);
    if (!window) return 1;
    glfwMakeContextCurrent(window);
    gl_extloader_init();
    std::printf("GL_RENDERER %s\n", reinterpret_cast<char const*>(glGetString(GL_RENDERER)));

    std::string const path = "/tmp/zanoview-bench-" + std::to_string(width) + "x" + std::to_string(height) + ".bmp";
    struct stat st;
    if (stat(path.c_str(), &st) != 0 && !write_picture(path, width, height)) return 1;

    std::vector<double> decode, tiling, upload, list, draw, total;
    for (int run = 0; run < runs; ++run) {
        // The stages one by one, as the scene runs them.
        {
            zanolib::ViewScene scene;  // for its GL state and projection
            scene.Init("");
            scene.Reshape(800, 600);

            auto t = clock_type::now();
            libgr::image2d_t image;
            libgr::image_bmp2_t codec;
            if (!codec.load(image, path.c_str())) return 1;
            decode.push_back(ms_since(t));

            t = clock_type::now();
            zanolib::multi_square_image_t squares;
            zanolib::multi_texture_object_t textures;
            zanolib::rectangle_to_squares(squares, image, 256, true);
            zanolib::squares_to_texobjs(textures, squares);
            libgr::texparameter2d_t const parameters{GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE,
                                                     GL_CLAMP_TO_EDGE, 1.0f};
            textures.setTexParm(&parameters);
            tiling.push_back(ms_since(t));

            t = clock_type::now();
            textures.Preload();
            glFinish();
            upload.push_back(ms_since(t));

            struct picture_t : libgr::grObject3D {
                zanolib::multi_texture_object_t const* textures;
                float w, h;
                void Draw() const override { textures->draw_image({-w / 2, -h / 2}, {w / 2, h / 2}); }
                using libgr::grObject3D::Draw;
            } picture;
            picture.textures = &textures;
            picture.w = float(width);
            picture.h = float(height);
            t = clock_type::now();
            libgr::grDspList dsplist;
            dsplist.Preload(&picture);
            glFinish();
            list.push_back(ms_since(t));

            t = clock_type::now();
            glClear(GL_COLOR_BUFFER_BIT);
            glMatrixMode(GL_MODELVIEW);
            glLoadIdentity();
            glTranslatef(0, 0, -1000);
            dsplist.Draw();
            glFinish();
            draw.push_back(ms_since(t));
            textures.Unload();
        }
        // And the whole way through the scene, as the viewer goes.
        {
            zanolib::ViewScene scene;
            scene.Init("");
            scene.Reshape(800, 600);
            auto const t = clock_type::now();
            scene.addImage(path.c_str(), "");
            scene.make_graph("");
            scene.Display();
            glFinish();
            total.push_back(ms_since(t));
        }
    }
    std::printf("picture %dx%d, %d runs, median milliseconds\n", width, height, runs);
    std::printf("  decode (file mapping)     %8.1f\n", median(decode));
    std::printf("  tiling                    %8.1f\n", median(tiling));
    std::printf("  upload with mipmaps       %8.1f\n", median(upload));
    std::printf("  display list              %8.1f\n", median(list));
    std::printf("  first draw                %8.1f\n", median(draw));
    std::printf("  file to frame, scene      %8.1f\n", median(total));
    std::remove(path.c_str());
    return 0;
}
