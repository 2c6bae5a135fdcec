// For tests: answers prompts in turn and keeps what was printed and drawn, with or without a
// session.
//
// While a Scripted lives, every prompt of the interface is answered by it: by the next answer
// queued for that function, otherwise by RTCAN. Destroying it drops answers that nobody asked for;
// `unused` tells them.
#pragma once

#include <adscodes.h>
#include <dbid.h>
#include <gepnt3d.h>

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/editor/Console.h"
#include "host/editor/Variables.h"

namespace host::editor {

class Scripted {
  public:
    Scripted();
    ~Scripted();
    Scripted(const Scripted&) = delete;
    Scripted& operator=(const Scripted&) = delete;
    // The living one, or null.
    static Scripted* current();

    // --- answers -------------------------------------------------------------------------------

    // acedEntSel: an entity, with the point of the pick. A failing code writes the point all the
    // same and leaves the name cleared.
    void pick(AcDbObjectId entity, const AcGePoint3d& point = {});
    void failPick(int code, const AcGePoint3d& point = {});
    // acedEntSel answers RTNORM with a name that no database knows.
    void pickStaleName(const AcGePoint3d& point = {});
    // acedSSGet, whatever its arguments: a set of these, in this order, repeats included.
    void select(std::vector<AcDbObjectId> entities);
    void failSelect(int code);
    // acedSSName fails for this index of the next selected set.
    void refuseMember(int index);
    // acedSSLength of the next selected set answers `code`.
    void refuseLength(int code = RTERROR);
    // acedGetString. A failing code leaves the buffer alone.
    void type(std::wstring text);
    void failType(int code);
    // acedGetPoint. A failing code writes the point when `write` is set.
    void point(const AcGePoint3d& point);
    void failPoint(int code, const AcGePoint3d& point = {}, bool write = false);
    // acedGetKword, and what acedGetInput tells then. A failing code leaves the buffer alone.
    void keyword(std::wstring word);
    void failKeyword(int code);
    // acedUsrBrk gives 1 from its n-th call on (1 is the next one); 0 takes the order back.
    void breakAt(int call);
    // A system variable has this value, of whatever type, also without a session; acedSetVar
    // changes it when the type is the same.
    void variable(std::wstring_view name, VariableValue value);
    // Answers that nobody has asked for, as "acedEntSel 2".
    std::vector<std::string> unused() const;

    // --- records -------------------------------------------------------------------------------

    // All that acutPrintf has printed, joined.
    const std::wstring& printed() const { return printed_; }

    struct Prompt {
        std::string function;   // "acedEntSel"
        std::wstring text;      // the prompt, empty for null
        int withBlanks = 0;     // the first argument of acedGetString
        void* focus = nullptr;  // the window that had the focus
        std::wstring mode;      // of acedSSGet
        bool hasPoint = false;  // acedSSGet's first point, acedGetPoint's base
        AcGePoint3d point;
        bool hasFilter = false;
    };
    const std::vector<Prompt>& prompts() const { return prompts_; }

    struct Line {
        AcGePoint3d from, to;
        int colour = 0;
        int highlight = 0;
    };
    const std::vector<Line>& lines() const { return lines_; }

    struct Redraw {
        AcDbObjectId entity;  // null: everything
        int mode = 0;
    };
    const std::vector<Redraw>& redraws() const { return redraws_; }
    const std::vector<std::wstring>& alerts() const { return alerts_; }

    struct Initial {  // acedInitGet
        int bits = 0;
        std::wstring keywords;
    };
    const std::vector<Initial>& initials() const { return initials_; }

    struct Setting {  // acedSetVar, refused ones too
        std::wstring name;
        VariableValue value;
    };
    const std::vector<Setting>& settings() const { return settings_; }

    struct Sent {  // sendStringToExecute, which sends it all the same
        std::wstring text;
        bool activate = false;
        bool wrapUp = false;
        bool echo = false;
    };
    const std::vector<Sent>& sent() const { return sent_; }

    // The meter after each call that changed it; none when it has gone.
    const std::vector<std::optional<Meter>>& meters() const { return meters_; }

    // Empties the records.
    void forget();

    // --- for the functions of the interface ----------------------------------------------------

    struct PickAnswer {
        int code = RTCAN;
        bool stale = false;
        AcDbObjectId entity;
        AcGePoint3d point;
    };
    struct SelectAnswer {
        int code = RTCAN;
        std::vector<AcDbObjectId> entities;
        std::vector<int> refusedMembers;
        int lengthCode = RTNORM;
    };
    struct TypeAnswer {
        int code = RTCAN;
        std::wstring text;
    };
    struct PointAnswer {
        int code = RTCAN;
        bool write = false;
        AcGePoint3d point;
    };
    struct KeywordAnswer {
        int code = RTCAN;
        std::wstring word;
    };
    PickAnswer nextPick();
    SelectAnswer nextSelect();
    TypeAnswer nextType();
    PointAnswer nextPoint();
    KeywordAnswer nextKeyword();
    const std::wstring& keywordInput() const { return keywordInput_; }
    bool userBreak();
    // Null when no value was given for that name.
    const VariableValue* variable(std::wstring_view name) const;
    void record(Prompt prompt);
    void recordPrint(const std::wstring& text) { printed_ += text; }
    void recordLine(const Line& line) { lines_.push_back(line); }
    void recordRedraw(const Redraw& redraw) { redraws_.push_back(redraw); }
    void recordInitial(Initial initial) { initials_.push_back(std::move(initial)); }
    void recordSetting(Setting setting) { settings_.push_back(std::move(setting)); }
    void recordSent(Sent sent) { sent_.push_back(std::move(sent)); }
    void recordMeter(const std::optional<Meter>& meter) { meters_.push_back(meter); }
    std::optional<Meter>& standingMeter() { return standingMeter_; }  // without a session
    void recordAlert(const std::wstring& text) { alerts_.push_back(text); }

  private:
    std::deque<PickAnswer> picks_;
    std::deque<SelectAnswer> selections_;
    std::deque<TypeAnswer> texts_;
    std::deque<PointAnswer> points_;
    std::deque<KeywordAnswer> keywords_;
    std::wstring keywordInput_;
    std::map<std::wstring, VariableValue> variables_;  // by names in capitals
    int breakAt_ = 0;
    std::vector<int> refusedMembers_;
    int lengthCode_ = RTNORM;
    std::wstring printed_;
    std::vector<Prompt> prompts_;
    std::vector<Line> lines_;
    std::vector<Redraw> redraws_;
    std::vector<std::wstring> alerts_;
    std::vector<Initial> initials_;
    std::vector<Setting> settings_;
    std::vector<Sent> sent_;
    std::vector<std::optional<Meter>> meters_;
    std::optional<Meter> standingMeter_;
};

}  // namespace host::editor
