#include "host/picture/PictureFile.h"

#include <algorithm>
#include <map>
#include <memory>

#include "host/dxf/Files.h"
#include "host/editor/Session.h"
#include "host/editor/SharedLibrary.h"
#include "host/picture/renderer/Renderer.h"

namespace host::picture {
namespace {

// Libraries below the module keep threads and types for good: it is never unloaded.
const editor::SharedLibrary& loaded(const std::filesystem::path& module) {
    static auto* const modules =
        new std::map<std::filesystem::path, std::unique_ptr<editor::SharedLibrary>>;
    auto& library = (*modules)[module];
    if (library == nullptr) library = std::make_unique<editor::SharedLibrary>(module);
    return *library;
}

void append(void* receiver, const char* bytes, std::size_t size) {
    static_cast<std::string*>(receiver)->append(bytes, size);
}

}  // namespace

const char* const renderingModule = "OrlinthRender.so";

std::optional<Format> formatOf(const std::filesystem::path& file) {
    std::string extension = file.extension().u8string();
    for (char& letter : extension)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + ('a' - 'A'));
    if (extension == ".svg") return Format::svg;
    if (extension == ".png") return Format::png;
    if (extension == ".pdf") return Format::pdf;
    return std::nullopt;
}

Rendering::Rendering(const std::filesystem::path& module) : function_(nullptr) {
    try {
        function_ = loaded(module).function("orlinthRender");
    } catch (const editor::ModuleError& error) {
        throw NotRendered(std::string("librsvg is not available (") + error.what() + ")");
    }
    if (function_ == nullptr)
        throw NotRendered("'" + module.u8string() + "' does not render pictures");
}

std::string Rendering::render(const std::string& svg, Format format, double dotsPerInch) const {
    char reason[200] = "";
    std::string bytes;
    const auto function = reinterpret_cast<OrlinthRender*>(function_);
    const int failed =
        function(svg.data(), svg.size(), format == Format::png ? orlinthPng : orlinthPdf,
                 dotsPerInch, append, &bytes, reason, sizeof reason);
    if (failed != 0) throw NotRendered(reason);
    return bytes;
}

void writeFile(const std::filesystem::path& file, const std::string& bytes) {
    dxf::ReplacingFile target(file);
    target.write(bytes);
    target.commit();
}

}  // namespace host::picture
