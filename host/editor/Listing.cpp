#include "host/editor/Listing.h"

#include <acdbads.h>
#include <acedads.h>
#include <acutads.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbsymtb.h>

#include <algorithm>
#include <cwchar>
#include <memory>

#include "host/database/Drawing.h"
#include "host/editor/Keywords.h"
#include "host/editor/ResultBuffers.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

using State = Session::Implementation;

constexpr double degreesInRadian = 57.29577951308232;

State& stateWithDrawing(Session& session) {
    State& state = session.implementation();
    if (state.drawing() == nullptr) throw CommandFailure(L"No drawing is open; OPEN opens one");
    return state;
}

// --- entities ----------------------------------------------------------------------------------

// The lines that tell of one entity, below its heading.
class Details {
  public:
    explicit Details(State& state)
        : lengthDigits_(digits(state, L"LUPREC")), angleDigits_(digits(state, L"AUPREC")) {}

    void point(const wchar_t* what, const AcGePoint3d& point) {
        line(std::wstring(what) + L", X=" + length(point.x) + L"  Y=" + length(point.y) + L"  Z=" +
             length(point.z));
    }
    void value(const wchar_t* what, double number) { line(what + (L" " + length(number))); }
    void angle(const wchar_t* what, double radians) {
        line(what + (L" " + fixed(radians * degreesInRadian, angleDigits_)));
    }
    void line(const std::wstring& text) { text_ += L"\n    " + text; }

    const std::wstring& text() const { return text_; }

  private:
    static int digits(State& state, const wchar_t* name) {
        const VariableValue* value = state.variables.get(name);
        const auto* number = value == nullptr ? nullptr : std::get_if<short>(value);
        return number == nullptr ? 4 : *number;
    }

    static std::wstring fixed(double value, int digits) {
        wchar_t text[400];
        const int length = std::swprintf(text, 400, L"%.*f", digits, value);
        return length < 0 ? numberText(value) : std::wstring(text);
    }

    std::wstring length(double value) const { return fixed(value, lengthDigits_); }

    const int lengthDigits_;
    const int angleDigits_;
    std::wstring text_;
};

std::wstring nameOf(AcDbObjectId symbol) {
    AcDbSymbolTableRecord* record = nullptr;
    if (acdbOpenObject(record, symbol, AcDb::kForRead) != Acad::eOk) return L"?";
    const ACHAR* name = nullptr;
    std::wstring text = record->getName(name) == Acad::eOk && name != nullptr ? name : L"?";
    record->close();
    return text;
}

void describe(const AcDbLine& line, Details& details) {
    details.point(L"from point", line.startPoint());
    details.point(L"to point", line.endPoint());
    const AcGeVector3d along = line.endPoint() - line.startPoint();
    details.value(L"length", along.length());
}

void describe(const AcDbPolyline& line, Details& details) {
    details.line(line.isClosed() ? L"closed" : L"open");
    for (unsigned int i = 0; i < line.numVerts(); ++i) {
        AcGePoint3d point;
        if (line.getPointAt(i, point) == Acad::eOk) details.point(L"at point", point);
    }
}

void describe(const AcDbText& text, Details& details) {
    const ACHAR* const words = text.textStringConst();
    details.line(L"text \"" + std::wstring(words == nullptr ? L"" : words) + L"\"");
    details.point(L"start point", text.position());
    const bool justified =
        text.horizontalMode() != AcDb::kTextLeft || text.verticalMode() != AcDb::kTextBase;
    if (justified) details.point(L"alignment point", text.alignmentPoint());
    details.value(L"height", text.height());
    details.angle(L"rotation angle", text.rotation());
    details.value(L"width factor", text.widthFactor());
}

void describe(const AcDbMText& text, Details& details) {
    ACHAR* const words = text.contents();
    details.line(L"text \"" + std::wstring(words == nullptr ? L"" : words) + L"\"");
    freeText(words);
    details.point(L"location", text.location());
    details.value(L"height", text.textHeight());
    details.angle(L"rotation angle", text.rotation());
}

void describe(const AcDbBlockReference& reference, Details& details) {
    details.line(L"block name \"" + nameOf(reference.blockTableRecord()) + L"\"");
    details.point(L"at point", reference.position());
    const AcGeScale3d scale = reference.scaleFactors();
    details.value(L"X scale factor", scale.sx);
    details.value(L"Y scale factor", scale.sy);
    details.value(L"Z scale factor", scale.sz);
    details.angle(L"rotation angle", reference.rotation());
}

void describe(const AcDbEntity& entity, Details& details) {
    if (const auto* line = AcDbLine::cast(&entity)) return describe(*line, details);
    if (const auto* line = AcDbPolyline::cast(&entity)) return describe(*line, details);
    if (const auto* text = AcDbText::cast(&entity)) return describe(*text, details);
    if (const auto* text = AcDbMText::cast(&entity)) return describe(*text, details);
    if (const auto* reference = AcDbBlockReference::cast(&entity))
        return describe(*reference, details);
    if (const auto* point = AcDbPoint::cast(&entity))
        return details.point(L"at point", point->position());
    if (const auto* circle = AcDbCircle::cast(&entity)) {
        details.point(L"center point", circle->center());
        details.value(L"radius", circle->radius());
    } else if (const auto* arc = AcDbArc::cast(&entity)) {
        details.point(L"center point", arc->center());
        details.value(L"radius", arc->radius());
        details.angle(L"start angle", arc->startAngle());
        details.angle(L"end angle", arc->endAngle());
    }
}

std::wstring described(State& state, AcDbObjectId id) {
    const std::wstring record = database::recordName(id);
    std::wstring text = L"\n" + (record.empty() ? database::className(id) : record) + L" " +
                        database::handleText(id) + L", layer \"" + database::layerState(id).name +
                        L"\"";
    const std::wstring unreadable = database::unreadableReason(id);
    if (!unreadable.empty()) return text + L"\n    can't be read: " + unreadable;
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return text;
    Details details(state);
    describe(*entity, details);
    entity->close();
    return text + details.text();
}

// --- layers ------------------------------------------------------------------------------------

struct Row {
    std::wstring name, state, color, linetype;
};

Row rowOf(const AcDbLayerTableRecord& layer) {
    const ACHAR* name = nullptr;
    Row row;
    if (layer.getName(name) == Acad::eOk && name != nullptr) row.name = name;
    row.state = layer.isOff() ? L"off" : L"on";
    if (layer.isFrozen()) row.state += L", frozen";
    if (layer.isLocked()) row.state += L", locked";
    row.color = std::to_wstring(layer.colorIndex());
    row.linetype = nameOf(layer.linetypeObjectId());
    return row;
}

std::vector<Row> layersLike(const State& state, const std::wstring& pattern) {
    std::vector<Row> rows;
    AcDbLayerTable* table = nullptr;
    if (state.drawing()->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return rows;
    AcDbSymbolTableIterator* made = nullptr;
    table->newIterator(made);
    const std::unique_ptr<AcDbSymbolTableIterator> at(made);
    table->close();
    for (; at != nullptr && !at->done(); at->step()) {
        AcDbSymbolTableRecord* record = nullptr;
        if (at->getRecord(record) != Acad::eOk) continue;
        if (const auto* layer = AcDbLayerTableRecord::cast(record)) rows.push_back(rowOf(*layer));
        record->close();
    }
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [&](const Row& row) {
                                  return !acutWcMatchEx(row.name.c_str(), pattern.c_str(), true);
                              }),
               rows.end());
    std::sort(rows.begin(), rows.end(),
              [](const Row& a, const Row& b) { return upperCase(a.name) < upperCase(b.name); });
    return rows;
}

std::wstring table(std::vector<Row> rows) {
    rows.insert(rows.begin(), {L"Layer name", L"State", L"Color", L"Linetype"});
    const auto widest = [&](std::wstring Row::*part) {
        std::size_t width = 0;
        for (const Row& row : rows) width = std::max(width, (row.*part).size());
        return width + 2;
    };
    const std::size_t name = widest(&Row::name);
    const std::size_t state = widest(&Row::state);
    const std::size_t color = widest(&Row::color);
    std::wstring text;
    for (const Row& row : rows) {
        const auto cell = [](const std::wstring& words, std::size_t width) {
            return words + std::wstring(width - words.size(), L' ');
        };
        text += L"\n" + cell(row.name, name) + cell(row.state, state) + cell(row.color, color) +
                row.linetype;
    }
    return text;
}

}  // namespace

void listEntities(Session& session) {
    State& state = stateWithDrawing(session);
    ads_name set;
    const int code = acedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    if (code == RTCAN) throw Session::Cancelled();
    if (code != RTNORM) throw CommandFailure(L"nothing was selected, so there is nothing to list");
    const std::vector<AcDbObjectId> members = SelectionSets::instance().find(set)->members;
    acedSSFree(set);
    for (const AcDbObjectId id : members) state.print(described(state, id));
}

void listLayers(Session& session) {
    State& state = stateWithDrawing(session);
    state.print(L"\nCurrent layer: \"" + nameOf(state.drawing()->clayer()) + L"\"");
    while (true) {
        const std::wstring option = session.askWord(L"\nEnter an option [?]: ", {L"?"});
        if (option.empty()) return;
        if (option != L"?") {
            state.print(L"\n? lists layers; nothing else can be done with them here.");
            continue;
        }
        const std::wstring given = session.askWord(L"\nEnter layer name(s) to list <*>: ");
        const std::vector<Row> rows = layersLike(state, given.empty() ? L"*" : given);
        state.print(rows.empty() ? L"\nNo layer is called " + given + L"." : table(rows));
    }
}

}  // namespace host::editor
