// A drawing judged by a Python script, for an independent reader is a package of the distribution's
// own Python: natively only.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace host::test {

// A folder of its own that goes with what is in it.
class Folder {
  public:
    Folder() {
        char name[] = "/tmp/orlinth-new-XXXXXX";
        path_ = ::mkdtemp(name);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::filesystem::path operator/(const char* name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

// `after`, the drawing that is told first; its audit by ezdxf may find no more than that of the
// drawing before, told second.
constexpr char kAudited[] = R"(import sys, ezdxf
def audited(path):
    drawing = ezdxf.readfile(path)
    auditor = drawing.audit()
    return drawing, len(auditor.errors) + len(auditor.fixes), auditor
after, troubles, auditor = audited(sys.argv[1])
if troubles != audited(sys.argv[2])[1]:
    sys.exit('audit: ' + '; '.join(e.message for e in auditor.errors + auditor.fixes))
)";

// What two pieces of a script end with, 0 when they are content, on arguments that are quoted for
// the shell.
inline int runPython(const Folder& folder, const char* begin, const char* script,
                     const std::string& arguments) {
    std::ofstream(folder / "check.py") << begin << script;
    const std::string command =
        "/usr/bin/python3 '" + (folder / "check.py").string() + "' " + arguments + " 2>&1";
    return std::system(command.c_str());
}

}  // namespace host::test
