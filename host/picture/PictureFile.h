// Pictures as files: SVG as it is, PNG and PDF rendered from it.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace host::picture {

enum class Format { svg, png, pdf };

// By the extension of a file's name, in any case; none for another.
std::optional<Format> formatOf(const std::filesystem::path& file);

// The picture could not be rendered; what() says why, as a part of a sentence.
class NotRendered : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Renders pictures by librsvg and cairo, which stand in a module of their own. It stays loaded
// until the program ends.
class Rendering {
  public:
    // Loads the module. Throws NotRendered when it is missing, as in builds without librsvg.
    explicit Rendering(const std::filesystem::path& module);

    // The bytes of a PNG with so many dots per inch, or of a PDF. Throws NotRendered.
    std::string render(const std::string& svg, Format format, double dotsPerInch = 200.0) const;

  private:
    void* function_;
};

// The file name of the module, which stands beside the program.
extern const char* const renderingModule;

// Writes a whole file, which takes the place of one of the same name when it is complete. Throws
// dxf::WriteError; what stood there is as it was then.
void writeFile(const std::filesystem::path& file, const std::string& bytes);

}  // namespace host::picture
