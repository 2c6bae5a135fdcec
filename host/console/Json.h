// Writing JSON (RFC 8259).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host::console {

// Builds one JSON text. The caller opens and closes what nests and gives each member of an object
// its key; commas, line ends and indents come by themselves.
//
// Texts are UTF-8; what is none in them becomes U+FFFD. Numbers are the shortest decimals that read
// back as the identical double, whatever the locale; one that JSON has no form for (infinite, no
// number) is null. The same calls give the same bytes everywhere.
class JsonWriter {
  public:
    // How the members of an object or array stand: each on a line of its own, or all in one row.
    // What stands in a row holds rows only.
    enum class Layout { lines, row };

    void beginObject(Layout layout = Layout::lines) { begin('{', layout); }
    void endObject() { end('}'); }
    void beginArray(Layout layout = Layout::lines) { begin('[', layout); }
    void endArray() { end(']'); }

    JsonWriter& key(std::string_view name);

    void text(std::string_view utf8);
    void textOrNull(std::string_view utf8);  // null for an empty text
    void number(double value);
    void number(std::size_t value);
    void boolean(bool value);
    void null();

    // The text so far, ended by a line end; complete when everything is closed.
    std::string take() const { return json_ + "\n"; }

  private:
    struct Level {
        Layout layout;
        bool empty = true;
    };

    void begin(char bracket, Layout layout);
    void end(char bracket);
    void nextMember();
    void raw(std::string_view token);
    void quoted(std::string_view utf8);
    void newLine();

    std::string json_;
    std::vector<Level> levels_;
    bool afterKey_ = false;
};

}  // namespace host::console
