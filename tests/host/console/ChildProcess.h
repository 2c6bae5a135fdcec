// Runs the real program as its users do: a process of its own with its streams in files, in the
// native build and under Wine alike. Texts are UTF-8.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace console_test {

struct Outcome {
    int exit = -1;  // the exit code; -1 when the program was killed by a signal or ran out of time
    std::string output;  // standard output, every byte
    std::string error;   // standard error, every byte
};

struct Call {
    std::filesystem::path program;
    std::vector<std::string> arguments;
    std::filesystem::path folder;  // the working folder
    std::string input;             // what standard input holds
};

// A program that has not ended after two minutes is stopped.
Outcome run(const Call& call);

// The program under test, its module, and the drawing of the examples.
std::filesystem::path orlinth();
std::filesystem::path exampleDrawing();

// A fresh empty folder that is removed with everything in it.
class Folder {
  public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return path_ / name;
    }

  private:
    std::filesystem::path path_;
};

// Whole files as bytes. `read` gives an empty text for a file that is not there.
std::string read(const std::filesystem::path& file);
void write(const std::filesystem::path& file, const std::string& bytes);

}  // namespace console_test
