// Pictures as files: formats, a module that is missing, files that can't be written.
#include "host/picture/PictureFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <new>

#include "host/dxf/Files.h"
#include "host/editor/SharedLibrary.h"
#include "host/picture/renderer/Renderer.h"
#include "tests/host/dxf/Drawings.h"
#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;
using host::dxf::WriteError;
using host::dxf::WriteFault;
using host::picture::Format;
using host::picture::formatOf;
using host::picture::NotRendered;
using host::picture::Rendering;

TEST(PictureFile, FormatIsToldByTheExtensionInAnyCase) {
    EXPECT_EQ(formatOf("a.svg"), Format::svg);
    EXPECT_EQ(formatOf("folder.pdf/a.PNG"), Format::png);
    EXPECT_EQ(formatOf("a.b.Pdf"), Format::pdf);
    for (const char* other : {"a.jpg", "a", "svg", ".svg", "a.svgz", "a.svg.", ""})
        EXPECT_EQ(formatOf(other), std::nullopt) << other;
}

TEST(PictureFile, RenderingWithoutItsModuleIsRefusedWithAReason) {
    try {
        const Rendering rendering("nowhere/OrlinthRender.so");
        FAIL() << "rendered by nothing";
    } catch (const NotRendered& error) {
        EXPECT_NE(std::string(error.what()).find("librsvg is not available"), std::string::npos)
            << error.what();
        EXPECT_NE(std::string(error.what()).find("does not exist"), std::string::npos);
    }
}

TEST(PictureFile, TakesThePlaceOfAnotherAsAWholeOrNotAtAll) {
    const host::dxf::test::TemporaryFolder folder;
    host::picture::writeFile(folder / "a.svg", "first");
    EXPECT_EQ(host::dxf::test::readBytes(folder / "a.svg"), "first");
    using Step = WriteFault::Step;
    for (const Step step : {Step::create, Step::write, Step::flush, Step::rename}) {
        host::dxf::armWriteFault({step, 2});
        EXPECT_THROW(host::picture::writeFile(folder / "a.svg", "second"), WriteError);
        host::dxf::armWriteFault({});
        EXPECT_EQ(host::dxf::test::readBytes(folder / "a.svg"), "first");
    }
    host::picture::writeFile(folder / "a.svg", "second");
    EXPECT_EQ(host::dxf::test::readBytes(folder / "a.svg"), "second");
}

#ifdef ORLINTH_RENDERS

const Rendering& rendering() {
    static const Rendering instance(std::filesystem::path(ORLINTH_BIN_DIR) /
                                    host::picture::renderingModule);
    return instance;
}

std::string someSvg() {
    DrawingText drawing;
    drawing.entity("LINE|5 2F|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
    drawing.entity("TEXT|5 30|8 0|10 20.0|20 30.0|40 5.0|1 Name");
    return Pictured(drawing).bytes;
}

TEST(Rendered, PngAndPdfAreWhatTheySayAndTheSameEveryTime) {
    const std::string png = rendering().render(someSvg(), Format::png, 50);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(png, rendering().render(someSvg(), Format::png, 50));
    const std::string pdf = rendering().render(someSvg(), Format::pdf);
    EXPECT_EQ(pdf.substr(0, 5), "%PDF-");
    EXPECT_EQ(pdf, rendering().render(someSvg(), Format::pdf));
    EXPECT_EQ(pdf.find("CreationDate"), std::string::npos);
    EXPECT_NE(pdf.find("/MediaBox"), std::string::npos);
}

// What takes the bytes may run out of memory.
TEST(Rendered, ExceptionOfTheReceiverIsAReason) {
    const host::editor::SharedLibrary module(std::filesystem::path(ORLINTH_BIN_DIR) /
                                             host::picture::renderingModule);
    const auto render = reinterpret_cast<OrlinthRender*>(module.function("orlinthRender"));
    const std::string svg = someSvg();
    for (const OrlinthFormat format : {orlinthPng, orlinthPdf}) {
        char reason[100] = "";
        EXPECT_EQ(render(
                      svg.data(), svg.size(), format, 50,
                      [](void*, const char*, std::size_t) { throw std::bad_alloc(); }, nullptr,
                      reason, sizeof reason),
                  1);
        EXPECT_STREQ(reason, "out of memory");
    }
}

TEST(Rendered, WhatIsNoSvgIsRefusedWithAReason) {
    EXPECT_THROW(rendering().render("no xml", Format::png), NotRendered);
    EXPECT_THROW(rendering().render("", Format::pdf), NotRendered);
}

#endif

}  // namespace
