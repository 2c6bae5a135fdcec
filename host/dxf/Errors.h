// What reading and writing drawings raise, and the places they name.
//
// Texts are UTF-8 and whole sentences, ready to be printed.
#ifndef HOST_DXF_ERRORS_H
#define HOST_DXF_ERRORS_H

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace host::dxf {

// A place in a drawing: a line of an ASCII file (the first is 1) or a byte of a binary one (the
// first is 0).
struct Position {
    enum class Unit : std::uint8_t { line, byte };
    Unit unit = Unit::line;
    std::uint64_t number = 1;

    std::string text() const;  // "line 17", "byte 340"
};

// A drawing that can't be read: which file, where, what was expected and what stands there.
class ReadError : public std::runtime_error {
  public:
    // `where` is missing when the file as a whole can't be had, e.g. does not exist.
    ReadError(std::string file, std::optional<Position> where, std::string expected,
              std::string found);
    // The system refuses the file: "katu.dxf can't be ", with `refusal` "opened: Permission denied"
    // behind. Nothing is expected or found then.
    ReadError(std::string file, const std::string& refusal);

    const std::string& file() const { return file_; }
    const std::optional<Position>& where() const { return where_; }
    const std::string& expected() const { return expected_; }
    const std::string& found() const { return found_; }

  private:
    std::string file_;
    std::optional<Position> where_;
    std::string expected_;
    std::string found_;
};

// A drawing that can't be written. The target, if there was one, stands as it was, and no file of
// ours is left beside it.
class WriteError : public std::runtime_error {
  public:
    WriteError(std::string file, std::string reason);

    const std::string& file() const { return file_; }
    const std::string& reason() const { return reason_; }

  private:
    std::string file_;
    std::string reason_;
};

// Bytes of a file for a message: in quotes, at most 40 of them, control characters and what is no
// UTF-8 as \xNN, "..." where something was cut off.
std::string shown(std::string_view bytes);

}  // namespace host::dxf

#endif
