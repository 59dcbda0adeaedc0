// Time from a JPEG file to its first frame, stage by stage, and the page
// step from one such picture to the next, the way the viewer goes: decode
// (as RGBA, as the viewer asks), tiling, texture upload with the levels,
// display list, first draw, swap; then the whole way through the scene.
// Needs an X display (Xvfb will do).
//
//   build/bench/first_frame_bench [runs [picture.jpg]]
//
// Without a picture it writes two camera-like 6000 x 4000 JPEGs of its own
// (smooth shapes under noise) to /tmp once. Prints the median of the runs
// for each stage in milliseconds, with the CPU time of the page step.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "glext/glext.h"
#include <GLFW/glfw3.h>

#include "codecs/jpeg.h"
#include "gl/dsplist.h"
#include "scene/tiling.h"
#include "scene/viewscene.h"

namespace {

using clock_type = std::chrono::steady_clock;

double ms_since(clock_type::time_point start)
{
    return std::chrono::duration<double, std::milli>(clock_type::now() - start).count();
}

double cpu_ms()
{
    rusage use{};
    getrusage(RUSAGE_SELF, &use);
    return (use.ru_utime.tv_sec + use.ru_stime.tv_sec) * 1e3 + (use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e3;
}

// Smooth colour under per-pixel noise, so that the file compresses about
// as a photo does; `seed` makes the pages differ.
bool write_picture(std::string const& path, int width, int height, unsigned seed)
{
    libgr::image2d_t image;
    image.desc = {libgr::IMAGE_FORMAT_RGB, libgr::IMAGE_TYPE_UINT, libgr::IMAGE_BITS_8};
    image.m_width = std::uint32_t(width);
    image.m_height = std::uint32_t(height);
    if (!image.allocate()) return false;
    unsigned noise = seed * 2654435761u + 1;
    for (int y = 0; y < height; ++y) {
        unsigned char* row = image.begin() + image.rowsize() * std::size_t(y);
        for (int x = 0; x < width; ++x) {
            noise = noise * 1103515245u + 12345u;
            int const n = int(noise >> 27) - 16;
            float const u = float(x) / float(width), v = float(y) / float(height);
            int const base[3] = {int(128 + 100 * std::sin(6 * u + seed)), int(128 + 100 * std::cos(5 * v)),
                                 int(128 + 90 * std::sin(4 * (u + v)))};
            for (int c = 0; c < 3; ++c) row[3 * x + c] = (unsigned char)std::clamp(base[c] + n, 0, 255);
        }
    }
    return libgr::image_jpeg1_t().save(image, path.c_str());
}

// Resident megabytes of this process now, from /proc.
long rss_mb()
{
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return resident * sysconf(_SC_PAGESIZE) / (1 << 20);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0.0 : v[v.size() / 2];
}

struct picture_node : libgr::grObject3D {
    zanolib::multi_texture_object_t const* textures = nullptr;
    float w = 0, h = 0;
    void Draw() const override { textures->draw_image({-w / 2, -h / 2}, {w / 2, h / 2}); }
    using libgr::grObject3D::Draw;
};

}  // namespace

int main(int argc, char** argv)
{
    int const runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    std::vector<std::string> pages;
    if (argc > 2) {
        pages = {argv[2], argv[2]};
    } else {
        for (unsigned i = 0; i < 2; ++i) {
            std::string const path = "/tmp/zanoview-bench-6000x4000-" + std::to_string(i) + ".jpg";
            struct stat st;
            if (stat(path.c_str(), &st) != 0 && !write_picture(path, 6000, 4000, i)) return 1;
            pages.push_back(path);
        }
    }

    if (!glfwInit()) {
        std::fprintf(stderr, "first_frame_bench: no display\n");
        return 1;
    }
    GLFWwindow* window = glfwCreateWindow(800, 600, "first frame bench", nullptr, nullptr);
    if (!window) return 1;
    glfwMakeContextCurrent(window);
    gl_extloader_init();
    std::printf("GL_RENDERER %s\n", reinterpret_cast<char const*>(glGetString(GL_RENDERER)));

    std::vector<double> decode, tiling, upload, list, draw, swap, total, step, step_cpu;
    long rss[4] = {rss_mb(), 0, 0, 0};  // MB: at start, decoded, uploaded, drawn
    std::uint32_t width = 0, height = 0;
    libgr::texparameter2d_t const parameters{GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR, GL_CLAMP_TO_EDGE,
                                             GL_CLAMP_TO_EDGE, 1.0f};
    for (int run = 0; run < runs; ++run) {
        // The stages one by one, as the scene runs them.
        {
            zanolib::ViewScene scene;  // for its GL state and projection
            scene.Init("");
            scene.Reshape(800, 600);

            auto t = clock_type::now();
            libgr::image2d_t image;
            libgr::image_jpeg1_t codec;
            codec.setRGBA(true);
            if (!codec.load(image, pages[0].c_str())) return 1;
            decode.push_back(ms_since(t));
            if (run == 0) rss[1] = rss_mb();
            width = image.m_width;
            height = image.m_height;

            t = clock_type::now();
            zanolib::multi_square_image_t squares;
            zanolib::multi_texture_object_t textures;
            zanolib::rectangle_to_squares(squares, image, 256, true);
            zanolib::squares_to_texobjs(textures, squares);
            textures.setTexParm(&parameters);
            tiling.push_back(ms_since(t));

            t = clock_type::now();
            textures.Preload();
            glFinish();
            upload.push_back(ms_since(t));
            if (run == 0) rss[2] = rss_mb();

            picture_node picture;
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
            if (run == 0) rss[3] = rss_mb();

            t = clock_type::now();
            glfwSwapBuffers(window);
            glFinish();
            swap.push_back(ms_since(t));
            dsplist.Unload();
            textures.Unload();
        }
        // The whole way through the scene, then on to the next page.
        {
            zanolib::ViewScene scene;
            scene.Init("");
            scene.Reshape(800, 600);
            auto t = clock_type::now();
            scene.addImage(pages[0].c_str(), "");
            scene.make_graph("");
            scene.Display();
            glfwSwapBuffers(window);
            glFinish();
            total.push_back(ms_since(t));

            double const cpu = cpu_ms();
            t = clock_type::now();
            scene.delImage();
            scene.addImage(pages[1].c_str(), "");
            scene.make_graph("");
            scene.Display();
            glfwSwapBuffers(window);
            glFinish();
            step.push_back(ms_since(t));
            step_cpu.push_back(cpu_ms() - cpu);
            scene.delImage();
        }
    }
    std::printf("picture %ux%u, %d runs, median milliseconds\n", width, height, runs);
    std::printf("  decode (JPEG to RGBA)     %8.1f\n", median(decode));
    std::printf("  tiling                    %8.1f\n", median(tiling));
    std::printf("  upload with levels        %8.1f\n", median(upload));
    std::printf("  display list              %8.1f\n", median(list));
    std::printf("  first draw                %8.1f\n", median(draw));
    std::printf("  swap                      %8.1f\n", median(swap));
    std::printf("  file to frame, scene      %8.1f\n", median(total));
    std::printf("  page step, scene          %8.1f (CPU %.1f)\n", median(step), median(step_cpu));
    std::printf("resident MB in the first run: at start %ld, decoded %ld, uploaded %ld, drawn %ld\n", rss[0],
                rss[1], rss[2], rss[3]);
    return 0;
}
