#include "Headless.h"

#include <mutex>

namespace {

// One record for the process: boxes may be shown from any thread.
struct Record {
    std::mutex guard;
    std::vector<headless::MessageBoxCall> boxes;
    int answer = IDOK;
    std::wstring debug;
};

Record& TheRecord() {
    static Record record;
    return record;
}

std::wstring TextOrEmpty(LPCWSTR text) {
    return text != nullptr ? text : L"";
}

}  // namespace

int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR title, UINT type) {
    Record& record = TheRecord();
    const std::lock_guard<std::mutex> lock(record.guard);
    record.boxes.push_back({owner, TextOrEmpty(text), TextOrEmpty(title), type});
    return record.answer;
}

void OutputDebugStringW(LPCWSTR text) {
    Record& record = TheRecord();
    const std::lock_guard<std::mutex> lock(record.guard);
    record.debug += TextOrEmpty(text);
}

namespace headless {

std::vector<MessageBoxCall> MessageBoxes() {
    Record& record = TheRecord();
    const std::lock_guard<std::mutex> lock(record.guard);
    return record.boxes;
}

void AnswerMessageBoxes(int answer) {
    Record& record = TheRecord();
    const std::lock_guard<std::mutex> lock(record.guard);
    record.answer = answer;
}

std::wstring DebugOutput() {
    Record& record = TheRecord();
    const std::lock_guard<std::mutex> lock(record.guard);
    return record.debug;
}

void ForgetCalls() {
    Record& record = TheRecord();
    const std::lock_guard<std::mutex> lock(record.guard);
    record.boxes.clear();
    record.debug.clear();
    record.answer = IDOK;
    ForgetFocusCalls();
}

}  // namespace headless
