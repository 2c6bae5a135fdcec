// The answers that `orlinth align` gives to the prompts of the command, in turn.
#pragma once

#include "host/console/Options.h"
#include "host/editor/Console.h"

namespace host::console {

class AlignAnswers : public editor::Input {
  public:
    explicit AlignAnswers(AlignRequest request) : request_(std::move(request)) {}

    // The command, the line, the selection, the reply to the question, then the end. The selection
    // is made in the drawing that the session has open when it is asked for.
    editor::Reply next(const editor::Request& request) override;
    void stop() override { step_ = Step::end; }
    bool stopsWhenOutOfStep() const override { return true; }
    bool pending() const override { return step_ != Step::end; }

  private:
    enum class Step { command, line, selection, endOfSelection, flip, end };

    editor::Reply line() const;
    editor::Reply selection() const;

    const AlignRequest request_;
    Step step_ = Step::command;
};

}  // namespace host::console
