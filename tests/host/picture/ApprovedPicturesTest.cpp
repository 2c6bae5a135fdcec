// Pictures that people have looked at: tests/data/pictures/NAME.png against the picture of today,
// by blocks of pixels, so that fonts and renderers may differ a little. Where a picture is meant to
// change, set ORLINTH_APPROVE to 1, run this test, look at the files and commit them.
#ifdef ORLINTH_RENDERS

#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "host/picture/PictureFile.h"
#include "tests/host/dxf/Drawings.h"
#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;
namespace fs = std::filesystem;

constexpr double dotsPerInch = 50;
constexpr int block = 8;               // pixels
constexpr double mostOfBlock = 40;     // of 255, the mean over a block
constexpr double mostOfPicture = 1.5;  // the mean over all blocks

class Bitmap {
  public:
    explicit Bitmap(const std::string& png) : rest_(png) {
        cairo_surface_t* surface = cairo_image_surface_create_from_png_stream(&Bitmap::read, this);
        if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS)
            throw std::runtime_error("no PNG");
        width = cairo_image_surface_get_width(surface);
        height = cairo_image_surface_get_height(surface);
        const int stride = cairo_image_surface_get_stride(surface);
        const unsigned char* data = cairo_image_surface_get_data(surface);
        for (int y = 0; y < height; ++y)
            pixels_.insert(pixels_.end(), data + y * stride, data + y * stride + 4 * width);
        cairo_surface_destroy(surface);
    }

    // The mean of a colour over a block.
    double mean(int left, int top, int channel) const {
        double sum = 0;
        int count = 0;
        for (int y = top; y < std::min(top + block, height); ++y)
            for (int x = left; x < std::min(left + block, width); ++x, ++count)
                sum += pixels_[static_cast<std::size_t>(4 * (y * width + x) + channel)];
        return sum / count;
    }

    int width = 0, height = 0;

  private:
    static cairo_status_t read(void* self, unsigned char* to, unsigned size) {
        auto& rest = static_cast<Bitmap*>(self)->rest_;
        if (rest.size() < size) return CAIRO_STATUS_READ_ERROR;
        std::memcpy(to, rest.data(), size);
        rest.remove_prefix(size);
        return CAIRO_STATUS_SUCCESS;
    }

    std::string_view rest_;
    std::vector<unsigned char> pixels_;
};

struct Difference {
    double largest = 0, mean = 0;
};

Difference difference(const Bitmap& a, const Bitmap& b) {
    Difference result;
    int count = 0;
    for (int y = 0; y < a.height; y += block)
        for (int x = 0; x < a.width; x += block)
            for (int channel = 0; channel < 3; ++channel, ++count) {
                const double difference = std::fabs(a.mean(x, y, channel) - b.mean(x, y, channel));
                result.largest = std::max(result.largest, difference);
                result.mean += difference;
            }
    result.mean /= count;
    return result;
}

struct Approved {
    const char* name;
    std::string (*svg)();
};

std::string svgOf(const fs::path& drawing) {
    const auto database = host::database::readDrawing(drawing);
    return Pictured(*database, {}, {drawing.filename().wstring(), L""}).bytes;
}

fs::path examples() {
    return host::dxf::test::dataFolder().parent_path().parent_path() / "examples";
}

// Every justification, every way to lie, in one drawing.
std::string letteringSvg() {
    DrawingText drawing;
    for (int i = 0; i < 4; ++i)
        for (int k = 0; k < 3; ++k) {
            const std::string at =
                std::to_string(20 + 40 * k) + ".0|21 " + std::to_string(10 + 12 * i) + ".0";
            drawing.entity("POINT|8 0|62 1|10 " + at.substr(0, at.find('|')) + "|20 " +
                           at.substr(at.find(' ') + 1));
            drawing.entity("TEXT|8 0|40 5.0|1 Agy" + std::to_string(i) + "|72 " +
                           std::to_string(k) + "|73 " + std::to_string(i) + "|10 " +
                           at.substr(0, at.find('|')) + "|20 " + at.substr(at.find(' ') + 1) +
                           "|11 " + at);
        }
    drawing.entity("TEXT|8 0|62 5|10 10.0|20 60.0|40 5.0|1 fitted|72 5|11 60.0|21 70.0");
    drawing.entity("TEXT|8 0|62 3|10 80.0|20 60.0|40 5.0|1 aligned|72 3|11 110.0|21 70.0");
    drawing.entity("TEXT|8 0|10 60.0|20 80.0|40 5.0|1 backward|71 2");
    drawing.entity("TEXT|8 0|10 70.0|20 85.0|40 5.0|1 upside|71 4");
    drawing.entity("TEXT|8 0|10 95.0|20 80.0|40 5.0|1 slanted|51 20.0|41 0.7");
    drawing.entity(
        "MTEXT|8 0|10 5.0|20 -2.0|40 4.0|41 50.0|71 1|1 words that are broken into lines");
    return Pictured(drawing).bytes;
}

std::string changeSvg() {
    DrawingText drawing;
    drawing.layer("0").layer("names", 0, 5).layer("held", 4, 3);
    drawing.block("SYMBOL",
                  {"CIRCLE|8 0|10 0.0|20 0.0|40 3.0", "LINE|8 0|10 0.0|20 0.0|11 6.0|21 0.0"});
    drawing.entity("LWPOLYLINE|5 2F|8 0|90 3|70 0|10 0.0|20 0.0|10 60.0|20 20.0|10 80.0|20 60.0");
    drawing.entity("TEXT|5 30|8 names|10 15.0|20 10.0|40 5.0|1 Street|50 18.4");
    drawing.entity("INSERT|5 31|8 0|62 30|2 SYMBOL|10 60.0|20 40.0|50 63.4");
    drawing.entity("TEXT|5 32|8 held|10 10.0|20 40.0|40 5.0|1 Held");
    const auto database = drawing.database();
    host::picture::Change change;
    change.line = idOf(*database, L"2F");
    change.turned = {{idOf(*database, L"30"), 0.0}, {idOf(*database, L"31"), 0.0}};
    change.left = {{idOf(*database, L"32"), L"locked layer"}};
    return Pictured(*database, change).bytes;
}

// Line types, weights, widths and hatches, with a text that they must not hide.
std::string strokesSvg() {
    DrawingText drawing;
    drawing.table("LTYPE",
                  {"LTYPE|2 DASHED|70 0|3 |72 65|73 2|40 3.0|49 2.0|49 -1.0",
                   "LTYPE|2 DASHDOT|70 0|3 |72 65|73 4|40 5.0|49 3.0|49 -1.0|49 0.0|49 -1.0"});
    drawing.entity("TEXT|8 0|62 5|10 62.0|20 20.0|40 6.0|1 Readable");
    int y = 60;
    for (const char* groups :
         {"6 DASHED", "6 DASHDOT", "6 DASHED|48 3.0|62 1", "370 0", "370 50", "370 211|62 3"}) {
        y -= 6;
        drawing.entity("LINE|8 0|" + std::string(groups) + "|10 0.0|20 " + std::to_string(y) +
                       ".0|11 50.0|21 " + std::to_string(y) + ".0");
    }
    drawing.entity(
        "LWPOLYLINE|8 0|62 4|90 3|70 0|43 3.0|10 0.0|20 15.0|10 30.0|20 15.0|10 50.0|20 5.0");
    drawing.entity(
        "LWPOLYLINE|8 0|62 6|90 3|70 0|10 0.0|20 5.0|40 5.0|41 0.0|10 20.0|20 5.0|42 -0.6|40 0.0"
        "|41 4.0|10 40.0|20 0.0");
    drawing.entity(
        "HATCH|100 AcDbEntity|8 0|62 30|100 AcDbHatch|2 SOLID|70 1|91 2|92 7|72 0|73 1|93 4"
        "|10 60.0|20 10.0|10 100.0|20 10.0|10 100.0|20 35.0|10 60.0|20 35.0|97 0|92 2|72 1"
        "|73 1|93 2|10 85.0|20 30.0|42 1.0|10 95.0|20 30.0|42 1.0|97 0|75 0|76 1");
    drawing.entity(
        "HATCH|100 AcDbEntity|8 0|62 5|100 AcDbHatch|2 ANSI31|70 0|91 1|92 1|93 2|72 2"
        "|10 80.0|20 45.0|40 8.0|50 0.0|51 180.0|73 1|72 1|10 72.0|20 45.0|11 88.0|21 45.0"
        "|97 0|75 0|76 1");
    drawing.entity(
        "MLINE|8 0|2 STANDARD|40 2.0|71 1|10 60.0|20 0.0|11 60.0|21 0.0|13 0.0|23 1.0|74 1"
        "|41 0.0|74 1|41 -2.0|11 100.0|21 4.0|13 0.0|23 1.0|74 1|41 0.0|74 1|41 -2.0");
    return Pictured(drawing).bytes;
}

std::string streetsSvg() {
    return svgOf(examples() / "streets.dxf");
}

void PrintTo(const Approved& approved, std::ostream* out) {
    *out << approved.name;
}

class ApprovedPicture : public testing::TestWithParam<Approved> {};

TEST_P(ApprovedPicture, LooksAsItDid) {
    const host::picture::Rendering rendering(fs::path(ORLINTH_BIN_DIR) /
                                             host::picture::renderingModule);
    const std::string png =
        rendering.render(GetParam().svg(), host::picture::Format::png, dotsPerInch);
    const fs::path approved =
        host::dxf::test::dataFolder() / "pictures" / (std::string(GetParam().name) + ".png");
    if (const char* approve = std::getenv("ORLINTH_APPROVE"); approve != nullptr && *approve == '1')
        host::picture::writeFile(approved, png);
    const std::string approvedBytes = host::dxf::test::readBytes(approved);
    const Bitmap now(png), then(approvedBytes);
    ASSERT_EQ(now.width, then.width);
    ASSERT_EQ(now.height, then.height);
    const Difference found = difference(now, then);
    EXPECT_LT(found.largest, mostOfBlock);
    EXPECT_LT(found.mean, mostOfPicture);
}

INSTANTIATE_TEST_SUITE_P(Pictures, ApprovedPicture,
                         testing::Values(Approved{"lettering", letteringSvg},
                                         Approved{"change", changeSvg},
                                         Approved{"strokes", strokesSvg},
                                         Approved{"streets", streetsSvg}),
                         [](const auto& approved) { return approved.param.name; });

// The comparison itself: what is not drawn is noticed.
TEST(ApprovedPictures, DifferWhenATextIsTurnedOrMissing) {
    const host::picture::Rendering rendering(fs::path(ORLINTH_BIN_DIR) /
                                             host::picture::renderingModule);
    const auto bitmap = [&](std::string svg) {
        return rendering.render(svg, host::picture::Format::png, dotsPerInch);
    };
    const std::string svg = changeSvg();
    std::string turned = svg;
    const std::size_t at = turned.find("rotate(18.4)");
    ASSERT_NE(at, std::string::npos);
    turned.replace(at, 12, "rotate(78.4)");
    std::string missing = svg;
    const std::size_t words = missing.find(">Held<");
    ASSERT_NE(words, std::string::npos);
    missing.erase(words + 1, 4);
    const std::string plain = bitmap(svg), other = bitmap(turned), without = bitmap(missing);
    EXPECT_GT(difference(Bitmap(plain), Bitmap(other)).largest, mostOfBlock);
    EXPECT_GT(difference(Bitmap(plain), Bitmap(without)).largest, mostOfBlock);
}

}  // namespace

#endif
