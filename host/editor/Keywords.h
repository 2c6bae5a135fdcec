// Keywords of prompts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host::editor {

// The keyword that a reply means, or none. `keywords` are separated by blanks; the first capitals
// of one are its shortest form ("WPolygon": WP, "eXit": X), any beginning that holds them will do
// ("WPoly", "ex"), case is ignored and a "_" in front passed over. A list "Yes No _Yes No" of local
// and global names is searched in both halves and answers with the global one.
std::optional<std::wstring> matchKeyword(std::wstring_view reply, std::wstring_view keywords);

}  // namespace host::editor
