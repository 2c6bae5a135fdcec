#include "host/editor/Scripted.h"

#include <stdexcept>
#include <utility>

#include "host/editor/Words.h"

namespace host::editor {

namespace {

Scripted* living = nullptr;

// The front of a queue, or what stands for no answer at all.
template <class Answer>
Answer take(std::deque<Answer>& queue) {
    if (queue.empty()) return {};
    Answer answer = std::move(queue.front());
    queue.pop_front();
    return answer;
}

}  // namespace

Scripted::Scripted() {
    if (living != nullptr) throw std::logic_error("there is one Scripted at a time");
    living = this;
}

Scripted::~Scripted() {
    living = nullptr;
}

Scripted* Scripted::current() {
    return living;
}

void Scripted::pick(AcDbObjectId entity, const AcGePoint3d& point) {
    picks_.push_back({RTNORM, false, entity, point});
}

void Scripted::failPick(int code, const AcGePoint3d& point) {
    picks_.push_back({code, false, {}, point});
}

void Scripted::pickStaleName(const AcGePoint3d& point) {
    picks_.push_back({RTNORM, true, {}, point});
}

void Scripted::select(std::vector<AcDbObjectId> entities) {
    selections_.push_back({RTNORM, std::move(entities), std::exchange(refusedMembers_, {}),
                           std::exchange(lengthCode_, RTNORM)});
}

void Scripted::failSelect(int code) {
    selections_.push_back({code, {}, {}, RTNORM});
}

void Scripted::refuseMember(int index) {
    refusedMembers_.push_back(index);
}

void Scripted::refuseLength(int code) {
    lengthCode_ = code;
}

void Scripted::type(std::wstring text) {
    texts_.push_back({RTNORM, std::move(text)});
}

void Scripted::failType(int code) {
    texts_.push_back({code, {}});
}

void Scripted::point(const AcGePoint3d& point) {
    points_.push_back({RTNORM, true, point});
}

void Scripted::failPoint(int code, const AcGePoint3d& point, bool write) {
    points_.push_back({code, write, point});
}

void Scripted::keyword(std::wstring word) {
    keywords_.push_back({RTNORM, std::move(word)});
}

void Scripted::failKeyword(int code) {
    keywords_.push_back({code, {}});
}

void Scripted::breakAt(int call) {
    breakAt_ = call;
}

void Scripted::variable(std::wstring_view name, VariableValue value) {
    variables_[upperCase(name)] = std::move(value);
}

const VariableValue* Scripted::variable(std::wstring_view name) const {
    const auto found = variables_.find(upperCase(name));
    return found == variables_.end() ? nullptr : &found->second;
}

std::vector<std::string> Scripted::unused() const {
    std::vector<std::string> left;
    const auto tell = [&left](const char* function, std::size_t count) {
        if (count != 0) left.push_back(std::string(function) + " " + std::to_string(count));
    };
    tell("acedEntSel", picks_.size());
    tell("acedSSGet", selections_.size());
    tell("acedGetString", texts_.size());
    tell("acedGetPoint", points_.size());
    tell("acedGetKword", keywords_.size());
    return left;
}

void Scripted::forget() {
    printed_.clear();
    prompts_.clear();
    lines_.clear();
    redraws_.clear();
    alerts_.clear();
    initials_.clear();
    settings_.clear();
    sent_.clear();
    meters_.clear();
}

Scripted::PickAnswer Scripted::nextPick() {
    return take(picks_);
}
Scripted::SelectAnswer Scripted::nextSelect() {
    return take(selections_);
}
Scripted::TypeAnswer Scripted::nextType() {
    return take(texts_);
}
Scripted::PointAnswer Scripted::nextPoint() {
    return take(points_);
}

Scripted::KeywordAnswer Scripted::nextKeyword() {
    KeywordAnswer answer = take(keywords_);
    keywordInput_ = answer.word;
    return answer;
}

bool Scripted::userBreak() {
    if (breakAt_ <= 1) return breakAt_ == 1;
    --breakAt_;
    return false;
}

void Scripted::record(Prompt prompt) {
    prompts_.push_back(std::move(prompt));
}

}  // namespace host::editor
