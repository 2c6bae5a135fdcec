// Keywords of prompts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host::editor {

// The keyword that a reply means, or none. `keywords` are separated by blanks; the capitals that
// one begins with are its shortest form ("WPolygon": WP), any longer beginning will do, case is
// ignored and a "_" in front passed over. A list "Yes No _Yes No" of local and global names is
// searched in both halves and answers with the global one.
std::optional<std::wstring> matchKeyword(std::wstring_view reply, std::wstring_view keywords);

}  // namespace host::editor
