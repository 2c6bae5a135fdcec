// The words of a session on the standard streams and in the log.
#pragma once

#include <string>
#include <string_view>

#include "host/console/Meter.h"
#include "host/console/Printer.h"
#include "host/editor/Console.h"

namespace host::console {

class SessionOutput : public editor::Output {
  public:
    // `printer` outlives this object.
    explicit SessionOutput(Printer& printer) : printer_(printer) {}

    // The next reply stands on the screen already, because a person has typed it there.
    void nextReplyIsShown() { shown_ = true; }

    // Whether the last line of a prompt waits for `takePrompt`, because the editor of the reply
    // shows it; anything else that comes first shows it here.
    void holdPrompts(bool hold) { holds_ = hold; }
    // The line that waits, for whoever shows it; empty when there is none.
    std::wstring takePrompt();

    // Shows the last line of the last prompt once more.
    void promptAgain();

    void print(std::wstring_view text) override;
    void prompt(std::wstring_view text) override;
    void reply(const editor::Reply& reply) override;
    void error(std::wstring_view sentence) override;
    void meter(const editor::Meter* meter) override;

  private:
    void showHeldPrompt();

    Printer& printer_;
    StatusLine meter_;
    bool shown_ = false;
    bool holds_ = false;
    std::wstring held_;
    std::wstring lastPrompt_;
};

}  // namespace host::console
