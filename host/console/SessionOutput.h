// The words of a session on the standard streams and in the log.
#pragma once

#include <string_view>

#include "host/console/Printer.h"
#include "host/editor/Console.h"

namespace host::console {

class SessionOutput : public editor::Output {
  public:
    // `printer` outlives this object.
    explicit SessionOutput(Printer& printer) : printer_(printer) {}

    // The next reply stands on the screen already, because a person has typed it there.
    void nextReplyIsShown() { shown_ = true; }

    void print(std::wstring_view text) override;
    void prompt(std::wstring_view text) override;
    void reply(const editor::Reply& reply) override;
    void error(std::wstring_view sentence) override;

  private:
    Printer& printer_;
    bool shown_ = false;
};

}  // namespace host::console
