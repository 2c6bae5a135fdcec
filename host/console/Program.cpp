#include "host/console/Program.h"

#include <variant>

#include "host/console/Options.h"
#include "host/console/Printer.h"

namespace host::console {

int runProgram(const std::vector<std::string>& arguments) {
    const auto parsed = parseOptions(arguments);
    if (const Farewell* farewell = std::get_if<Farewell>(&parsed)) {
        Printer printer({});
        printer.print(farewell->output);
        if (!farewell->error.empty()) printer.error(farewell->error);
        return static_cast<int>(farewell->code);
    }
    return 0;
}

}  // namespace host::console
