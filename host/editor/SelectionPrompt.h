// "Select objects": a dialogue that collects entities until Enter.
#pragma once

#include <dbid.h>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/editor/Drawn.h"
#include "host/editor/Filter.h"
#include "host/editor/SessionState.h"

namespace host::editor {

struct SelectionOptions {
    std::wstring addPrompt = L"\nSelect objects: ";
    std::wstring removePrompt = L"\nRemove objects: ";
    bool single = false;        // the first selection ends it
    bool refuseLocked = false;  // entities on locked layers are left out
};

class SelectionPrompt {
  public:
    SelectionPrompt(Session::Implementation& state, AcDbDatabase& drawing, const Filter& filter,
                    SelectionOptions options);

    // RTNORM with at least one member, RTCAN, otherwise RTERROR.
    int run();
    const std::vector<AcDbObjectId>& members() const { return members_; }
    // What was found and left out for its locked layer, and is no member all the same.
    std::vector<AcDbObjectId> lockedOut() const;

  private:
    enum class Step { goOn, done, cancelled };
    using Ids = std::vector<AcDbObjectId>;

    Step take(const Answer& answer);
    Step takeOption(std::wstring_view word);
    Step takePoint(const AcGePoint3d& point);
    Step takeValue(const lisp::Value& value, const Ids& lockedOut);
    Step rectangle(bool crossing, bool byDirection);
    Step rectangleFrom(const AcGePoint3d& first, bool crossing, bool byDirection);
    Step polygon(bool crossing);
    Step fence();
    Step multiple();
    Step selectAll();
    Step takeBack();
    Step refuse();

    // Points of an option; nothing when Enter gave it up or when it was cancelled, which `ended`
    // then tells.
    std::optional<AcGePoint3d> askPoint(std::wstring_view prompt, Step& ended);
    std::optional<std::vector<PlanPoint>> askLine(std::wstring_view first, bool closed,
                                                  Step& ended);

    // Adds or removes what was found and says so.
    Step apply(const Ids& found, Ids locked = {});
    Ids filtered(const Ids& found, std::size_t& filteredOut, Ids& locked) const;
    std::wstring add(const Ids& ids);
    std::wstring remove(const Ids& ids);
    Ids under(const AcGePoint3d& point);

    Session::Implementation& state_;
    Drawn drawn_;
    const Filter& filter_;
    SelectionOptions options_;
    Ids members_;
    std::unordered_set<AcDbObjectId> known_;
    std::vector<Ids> earlier_;  // the members before each change
    Ids locked_;                // left out so far, some perhaps repeatedly
    bool removing_ = false;
    bool automatic_ = false;  // a point that misses opens a window
};

}  // namespace host::editor
