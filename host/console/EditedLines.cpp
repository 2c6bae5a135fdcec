// Lines at a terminal by libedit: arrows, history, completion.
#ifndef _WIN32

#include <histedit.h>
#include <locale.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <deque>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "host/console/LineHistory.h"
#include "host/console/LineReader.h"
#include "host/console/Printer.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

constexpr wchar_t escape = L'\x1B';
constexpr wchar_t toLineEnd = L'\x05';  // Ctrl-E
constexpr wchar_t cancelKey = L'\x03';  // Ctrl-C, which the terminal hands over as a key

// Keys like the arrows are an escape with more behind it, which comes at once. A person who presses
// Escape presses nothing else within this time (in milliseconds).
constexpr int escapeAlone = 50;

// What follows the Escape of the keys that mean something: arrows, Home, End, Delete, and a word to
// the left and to the right.
constexpr std::string_view sequences[] = {"[A",  "[B",  "[C",  "[D",    "[H",   "[F",  "OA",
                                          "OB",  "OC",  "OD",  "OH",    "OF",   "[1~", "[3~",
                                          "[4~", "[7~", "[8~", "[1;5C", "[1;5D"};
constexpr std::size_t longestSequence = 32;

// The editor's names of what those do that it does not know by itself.
constexpr const wchar_t* moves[][2] = {
    {L"\\e[1~", L"ed-move-to-beg"},      {L"\\e[7~", L"ed-move-to-beg"},
    {L"\\e[H", L"ed-move-to-beg"},       {L"\\eOH", L"ed-move-to-beg"},
    {L"\\e[4~", L"ed-move-to-end"},      {L"\\e[8~", L"ed-move-to-end"},
    {L"\\e[F", L"ed-move-to-end"},       {L"\\eOF", L"ed-move-to-end"},
    {L"\\e[3~", L"ed-delete-next-char"}, {L"\\e[1;5C", L"em-next-word"},
    {L"\\e[1;5D", L"ed-prev-word"}};

// libedit asks the locale how characters are written. Ours are UTF-8 whatever the user's locale is,
// and only while a line is edited: nothing else of the program depends on a locale.
class Utf8Locale {
  public:
    Utf8Locale() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t())) {
        if (locale_ != locale_t()) before_ = uselocale(locale_);
    }
    ~Utf8Locale() {
        if (locale_ == locale_t()) return;
        uselocale(before_);
        freelocale(locale_);
    }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;

  private:
    locale_t locale_;
    locale_t before_ = locale_t();
};

int columnsOf(std::wstring_view text) {
    int columns = 0;
    for (const wchar_t c : text) columns += std::max(0, wcwidth(c));
    return columns;
}

int screenWidth() {
    winsize size{};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

// Most terminals break the lines that they show anew when their width changes. Xterm itself, screen
// and the console of the system leave them as they were.
bool breaksLinesAnew() {
    const auto isSet = [](const char* name) { return std::getenv(name) != nullptr; };
    const char* const kind = std::getenv("TERM");
    if (isSet("TMUX")) return true;
    return !isSet("XTERM_VERSION") && !isSet("STY") &&
           (kind == nullptr || std::string_view(kind).substr(0, 5) != "linux");
}

// The choices in columns, as wide as the screen.
std::string inColumns(const std::vector<std::wstring>& choices) {
    int widest = 0;
    for (const std::wstring& choice : choices) widest = std::max(widest, columnsOf(choice));
    const int perLine = std::max(1, screenWidth() / (widest + 2));
    std::string text;
    int column = 0;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const bool last = ++column == perLine || i + 1 == choices.size();
        text += editor::toUtf8(choices[i]);
        text +=
            last ? "\n"
                 : std::string(static_cast<std::size_t>(widest + 2 - columnsOf(choices[i])), ' ');
        if (last) column = 0;
    }
    return text;
}

class EditedLines : public LineReader {
  public:
    explicit EditedLines(TerminalSignals& signals) : signals_(signals), lines_(historyFile()) {
        const Utf8Locale locale;
        history_ = history_winit();
        HistEventW event;
        history_w(history_, &event, H_SETSIZE, static_cast<int>(2 * LineHistory::most));
        for (const std::wstring& line : lines_.lines())
            history_w(history_, &event, H_ENTER, line.c_str());
        edit_ = el_init("orlinth", stdin, stdout, stderr);
        el_wset(edit_, EL_CLIENTDATA, this);
        el_wset(edit_, EL_PROMPT, &EditedLines::promptOf);
        el_wset(edit_, EL_EDITOR, L"emacs");
        el_wset(edit_, EL_HIST, history_w, history_);
        el_wset(edit_, EL_GETCFN, &EditedLines::keyOf);
        bind(L"orlinth-complete", L"completes the word", L"^I", &EditedLines::completeWord);
        bind(L"orlinth-cancel", L"cancels the command", L"^C", &EditedLines::cancelLine);
        bind(L"orlinth-suspend", L"suspends the program", L"^Z", &EditedLines::suspend);
        for (const auto& [key, move] : moves)
            el_wset(edit_, EL_BIND, key, move, static_cast<wchar_t*>(nullptr));
        // Ctrl-C and Ctrl-Z come as keys, so that none is lost between two of them.
        el_wset(edit_, EL_SETTY, L"-d", L"-isig", static_cast<wchar_t*>(nullptr));
    }

    ~EditedLines() override {
        el_end(edit_);
        history_wend(history_);
    }

    bool showsPrompt() const override { return true; }

    Line read(const std::wstring& prompt, const Vocabulary& vocabulary) override {
        const Utf8Locale locale;
        prompt_ = prompt;
        vocabulary_ = &vocabulary;
        cancelled_ = false;
        ahead_.clear();
        signals_.takeResize();
        takeWidth();
        // Before the prompt is there: what is typed behind it has to be shown once.
        el_wset(edit_, EL_PREP_TERM, 1);
        int count = 0;
        const wchar_t* const typed = el_wgets(edit_, &count);
        vocabulary_ = nullptr;
        if (cancelled_) return {Line::Kind::cancel, {}};
        if (typed == nullptr || count <= 0) return {};
        std::wstring line(typed, static_cast<std::size_t>(count));
        while (!line.empty() && (line.back() == L'\n' || line.back() == L'\r')) line.pop_back();
        remember(line);
        return {Line::Kind::text, std::move(line)};
    }

  private:
    using Function = unsigned char (*)(EditLine*, wint_t);

    static EditedLines& self(EditLine* edit) {
        EditedLines* lines = nullptr;
        el_wget(edit, EL_CLIENTDATA, &lines);
        return *lines;
    }

    void bind(const wchar_t* name, const wchar_t* help, const wchar_t* key, Function function) {
        el_wset(edit_, EL_ADDFN, name, help, function);
        el_wset(edit_, EL_BIND, key, name, static_cast<wchar_t*>(nullptr));
    }

    void remember(const std::wstring& line) {
        HistEventW event;
        if (lines_.add(line)) history_w(history_, &event, H_ENTER, line.c_str());
    }

    static wchar_t* promptOf(EditLine* edit) { return self(edit).prompt_.data(); }

    // --- keys ----------------------------------------------------------------------------------

    static int keyOf(EditLine* edit, wchar_t* key) { return self(edit).nextKey(*key); }

    // 1 with a key, 0 at the end of input.
    int nextKey(wchar_t& key) {
        if (ahead_.empty() && cancelled_) ahead_.push_back(cancelKey);
        while (ahead_.empty())
            if (!readKey()) return 0;
        key = ahead_.front();
        ahead_.pop_front();
        return 1;
    }

    // Cancelling leaves the cursor behind what was typed, for "*Cancel*" to follow it.
    bool cancel() {
        cancelled_ = true;
        ahead_ = {toLineEnd, cancelKey};
        return true;
    }

    // Puts what a key stands for into `ahead_`; false at the end of input.
    bool readKey() {
        for (;;) {
            heedSignals();
            if (!waitForByte(-1)) {
                if (signals_.takeCancel()) return cancel();
                continue;
            }
            char byte = 0;
            const ssize_t count = readByte(byte);
            if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
            if (count <= 0) return false;
            if (byte == cancelKey) return cancel();
            return byte == escape ? readSequence() : readRestOfCharacter(byte);
        }
    }

    // Before any key: what it does is drawn in the width that the window has.
    void heedSignals() {
        if (signals_.takeContinue()) {
            // Whoever had the terminal meanwhile has left it in another mode.
            el_wset(edit_, EL_PREP_TERM, 0);
            el_wset(edit_, EL_PREP_TERM, 1);
            el_wset(edit_, EL_REFRESH);
        }
        if (signals_.takeResize()) redrawAfterResize();
    }

    // False when the time (in milliseconds; -1: none) has run out or a signal has come before.
    bool waitForByte(int time) {
        if (!bytesAhead_.empty()) return true;
        pollfd watched[2] = {{STDIN_FILENO, POLLIN, 0}, {signals_.descriptor(), POLLIN, 0}};
        const int ready = poll(watched, time < 0 ? 2 : 1, time);
        if (ready > 0 && watched[0].revents != 0) return true;
        if (time < 0) signals_.drain();
        return false;
    }

    ssize_t readByte(char& byte) {
        if (bytesAhead_.empty()) return ::read(STDIN_FILENO, &byte, 1);
        byte = bytesAhead_.front();
        bytesAhead_.pop_front();
        return 1;
    }

    // What belongs to the byte before comes at once; none when nothing does.
    std::optional<char> nextAtOnce() {
        char byte = 0;
        if (!waitForByte(escapeAlone) || readByte(byte) != 1) return std::nullopt;
        return byte;
    }

    // Behind an Escape: a key that sends a sequence, or a person's wish to cancel, who types on.
    bool readSequence() {
        const std::optional<char> kind = nextAtOnce();
        const bool isSequence = kind && (*kind == '[' || *kind == 'O');
        if (!isSequence) {
            if (kind) bytesAhead_.push_front(*kind);
            return cancel();
        }
        std::string sequence(1, *kind);
        std::optional<char> byte;
        do {
            byte = nextAtOnce();
            if (byte) sequence += *byte;
        } while (byte && (*byte < '@' || *byte > '~') && sequence.size() < longestSequence);
        if (std::find(std::begin(sequences), std::end(sequences), sequence) == std::end(sequences))
            return true;  // a key without a meaning
        ahead_.push_back(escape);
        ahead_.insert(ahead_.end(), sequence.begin(), sequence.end());
        return true;
    }

    // A character in UTF-8; a byte that begins none counts as Windows-1252.
    bool readRestOfCharacter(char first) {
        std::string bytes(1, first);
        const auto lead = static_cast<unsigned char>(first);
        const int more = lead >= 0xF5   ? 0
                         : lead >= 0xF0 ? 3
                         : lead >= 0xE0 ? 2
                         : lead >= 0xC2 ? 1
                                        : 0;
        for (int i = 0; i < more; ++i) {
            const std::optional<char> byte = nextAtOnce();
            if (byte && (static_cast<unsigned char>(*byte) & 0xC0U) != 0x80U) {
                bytesAhead_.push_front(*byte);
                break;
            }
            if (byte) bytes += *byte;
        }
        const std::wstring text = editor::decodeScript(bytes);
        ahead_.insert(ahead_.end(), text.begin(), text.end());
        return true;
    }

    // The width that lines are drawn in from here on.
    void takeWidth() {
        el_resize(edit_);
        width_ = screenWidth();
    }

    // The cursor goes up to where the prompt began, by the width that the lines now have.
    void redrawAfterResize() {
        const LineInfoW* const line = el_wline(edit_);
        const std::wstring before(line->buffer, line->cursor);
        const int broken = breaksLinesAnew_ ? screenWidth() : width_;
        const int rows = (columnsOf(prompt_) + columnsOf(before)) / broken;
        if (rows > 0) std::fprintf(stdout, "\x1B[%dA", rows);
        std::fputs("\r\x1B[J", stdout);
        std::fflush(stdout);
        takeWidth();
        el_wset(edit_, EL_REFRESH);
    }

    // --- functions bound to keys ---------------------------------------------------------------

    static unsigned char cancelLine(EditLine* edit, wint_t) {
        self(edit).cancelled_ = true;
        return CC_EOF;
    }

    static unsigned char suspend(EditLine* edit, wint_t) {
        el_wset(edit, EL_PREP_TERM, 0);
        kill(0, SIGTSTP);  // all of the job, as the terminal would
        self(edit).signals_.takeContinue();
        el_wset(edit, EL_PREP_TERM, 1);
        return CC_REDISPLAY;
    }

    static unsigned char completeWord(EditLine* edit, wint_t) {
        const LineInfoW* const line = el_wline(edit);
        const std::wstring before(line->buffer, line->cursor);
        const Vocabulary* const vocabulary = self(edit).vocabulary_;
        const Completion completion =
            vocabulary == nullptr ? Completion() : complete(before, *vocabulary);
        if (completion.text.empty() && completion.choices.empty()) return CC_REFRESH_BEEP;
        if (!completion.changesNothing(before)) {
            el_wdeletestr(edit, static_cast<int>(completion.replaced));
            el_winsertstr(edit, completion.text.c_str());
            return CC_REFRESH;
        }
        if (completion.choices.empty()) return CC_REFRESH_BEEP;
        std::fprintf(stdout, "\n%s", visible(inColumns(completion.choices)).c_str());
        return CC_REDISPLAY;
    }

    TerminalSignals& signals_;
    LineHistory lines_;
    HistoryW* history_ = nullptr;
    EditLine* edit_ = nullptr;
    const bool breaksLinesAnew_ = breaksLinesAnew();
    int width_ = 80;  // that the line is drawn in
    std::wstring prompt_;
    const Vocabulary* vocabulary_ = nullptr;
    std::deque<wchar_t> ahead_;    // keys that libedit has not asked for yet
    std::deque<char> bytesAhead_;  // read, and left for the next key
    bool cancelled_ = false;
};

}  // namespace

std::unique_ptr<LineReader> editedLines(TerminalSignals& signals) {
    const char* const kind = std::getenv("TERM");
    const bool plain = kind == nullptr || *kind == '\0' || std::string_view(kind) == "dumb";
    if (plain || isatty(STDOUT_FILENO) == 0) return nullptr;
    return std::make_unique<EditedLines>(signals);
}

}  // namespace host::console

#endif
