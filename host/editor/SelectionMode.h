// The first argument of a selection, "_CP:$L", taken apart.
#pragma once

#include <string>
#include <string_view>

namespace host::editor {

struct SelectionMode {
    // What the method is told besides its name.
    enum class Takes {
        point,    // nothing, which asks, or one point to pick at
        prompts,  // the two texts to ask with
        corners,  // two points
        points,   // a chain of points
        nothing,
        unknown,  // there is no such method or flag
    };

    std::wstring method;  // upper case, empty for a prompt or a pick
    bool prompts = false;
    bool single = false;
    bool refuseLocked = false;
    Takes takes = Takes::unknown;
};

// A "_" or "." in front of the method is passed over, case is ignored. The flags behind the colon:
// $ own prompts, S the first selection ends it, L what stands on locked layers is left out. Prompts
// have a say only where a method does not find by itself.
SelectionMode parseSelectionMode(std::wstring_view text);

}  // namespace host::editor
