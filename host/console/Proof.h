// The proof that --verify gives: two drawings compared group by group, each difference listed and
// judged.
#pragma once

#include <cstddef>
#include <string>

#include "host/dxf/Document.h"
#include "host/dxf/Edit.h"

namespace host::console {

struct Proof {
    std::string text;     // a line for each difference, "!" before those no command made, and a sum
    std::string strange;  // the lines with "!" and the sum; empty when there are none
    std::size_t strangers = 0;  // how many differences no command made
};

// `changes` is what the commands did to `before`. A difference is theirs when they changed that
// group of that entity to that very value, and it is what turning does: group 50 of a TEXT or
// INSERT, or groups 10 and 20 of a TEXT that stands by its group 11 (justified, but neither aligned
// nor fitted). So is a record that they made, group by group, and with such records what follows
// from them: $HANDSEED, the count of a table, group 66 of an INSERT. Everything else is a stranger,
// a record that a command has erased among it, down to a blank before a group code.
Proof prove(const dxf::Document& before, const dxf::Document& after, const dxf::Changes& changes);

}  // namespace host::console
