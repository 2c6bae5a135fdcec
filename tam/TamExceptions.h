// The exceptions of the library: one family under TamExpBase, raised by value for what a return
// value cannot answer. An exception is self-contained and of fixed size, so that it can be raised
// when memory is short: the text, the source line and the source name (the path of the source from
// the root without extension, such as L"datastruct/Array", a static text that is not copied).
//
// The classes have no virtual destructor; they are caught by reference. TamExpWinSeException alone
// is thrown as a pointer by the two translators, and its catcher calls Delete().
#pragma once

#include <cstdint>

class CWnd;
struct _EXCEPTION_POINTERS;

// The classes are read across the borders of shared libraries, by a host of a module.
#if defined(__ELF__)
#define TAM_EXCEPTION __attribute__((visibility("default")))
#else
#define TAM_EXCEPTION
#endif

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // intended, see above
#endif

namespace TamLib {

// The root of the family; not raised by itself.
class TAM_EXCEPTION TamExpBase {
  public:
    static constexpr std::uint32_t kMessageSize = 2048;

    // `message` is copied and cut at 2047 characters; null is an empty message.
    TamExpBase(const wchar_t* message, std::int32_t line, const wchar_t* file);
    // Copies the whole block of the message.
    TamExpBase(const TamExpBase& other);
    TamExpBase& operator=(const TamExpBase& other) = default;

    // An extension point; does nothing.
    virtual void Hook();
    // Hands "\n<message> Error at line <line> in file <file>.\n", cut at 1999 characters and
    // without any "\r", to `reportFunction` under the title "TamLib error".
    virtual void Report();

    wchar_t message[kMessageSize];  // zero-terminated
    std::int32_t line;
    const wchar_t* file;
};
static_assert(sizeof(TamExpBase) ==
                  2 * sizeof(void*) + TamExpBase::kMessageSize * sizeof(wchar_t) + 8,
              "table pointer, message, line (padded), file");

// A broken condition within the library.
class TAM_EXCEPTION TamExpInternal : public TamExpBase {
  public:
    TamExpInternal(const wchar_t* message, std::int32_t line, const wchar_t* file);
    void Hook() override;  // calls InternalHook()
    virtual void InternalHook();
};

// Memory is exhausted. The state of the memory is appended to the message on construction, and not
// again when the exception is copied.
class TAM_EXCEPTION TamExpNoMem : public TamExpInternal {
  public:
    TamExpNoMem(const wchar_t* message, std::int32_t line, const wchar_t* file);
    virtual const wchar_t* Title() const;  // L"Out of memory"
};

// An index outside its array; raised with an empty message.
class TAM_EXCEPTION TamExpRange : public TamExpInternal {
  public:
    using TamExpInternal::TamExpInternal;
};

// The host refused an object or a call.
class TAM_EXCEPTION TamExpAcad : public TamExpInternal {
  public:
    using TamExpInternal::TamExpInternal;
};

// A divisor is zero.
class TAM_EXCEPTION TamExpDivZero : public TamExpInternal {
  public:
    using TamExpInternal::TamExpInternal;
    // An empty message, line 445, file L"tam/TamExceptions".
    TamExpDivZero();
};

// A structured exception of the platform, translated. See TranslateSeException.
class TAM_EXCEPTION TamExpWinSeException final : public TamExpInternal {
  public:
    using TamExpInternal::TamExpInternal;
    // An empty message, line 398, file L"tam/TamExceptions"; code 0 and no record.
    TamExpWinSeException();
    // The same with `code` and the platform's record, which is not owned. A record that reports an
    // overflown stack is reported by three lines to the debugger, since little stack is left; the
    // message stays empty. Clears `translatingSeException` as its last act.
    TamExpWinSeException(std::uint32_t code, _EXCEPTION_POINTERS* pointers);
    // Takes code and record; intended: the message is empty and the line 398 whatever
    // the source holds.
    TamExpWinSeException(const TamExpWinSeException& other);
    TamExpWinSeException& operator=(const TamExpWinSeException& other) = default;

    std::uint32_t GetCode() const { return code; }
    _EXCEPTION_POINTERS* GetPointers() const { return pointers; }
    // The address at which the fault happened; null without a record.
    void* GetAddress() const;
    // Frees an object that a translator has thrown.
    void Delete() { delete this; }

    std::uint32_t code = 0;
    _EXCEPTION_POINTERS* pointers = nullptr;
};

// A failure caused by the user's action or data.
class TAM_EXCEPTION TamExpUser : public TamExpBase {
  public:
    TamExpUser(const wchar_t* message, std::int32_t line, const wchar_t* file);
    virtual void UserHook();
};

// A call with unusable arguments or in an unusable state.
class TAM_EXCEPTION TamExpInvalidArgs : public TamExpUser {
  public:
    using TamExpUser::TamExpUser;
    // An empty message, line 486, file L"tam/TamExceptions".
    TamExpInvalidArgs();
};

// The user stopped a long action.
class TAM_EXCEPTION TamExpActionCancelled : public TamExpUser {
  public:
    TamExpActionCancelled(const wchar_t* message, std::int32_t line, const wchar_t* file);
    virtual const wchar_t* Title() const;  // L"Cancelled"
};

// What Report() shows its text with. Null until a program settles it; the text goes to the
// debugger's output then.
using ReportFunction = void (*)(const wchar_t* text, const wchar_t* title);
extern ReportFunction reportFunction;

// Appends eight lines to the message, at once behind what it holds: the load of the memory in
// percent, physical memory, paging file and virtual memory in MB (total, free), and the text of the
// last error of the platform without line ends; then "\n\n". What does not fit is cut.
void AppendMemoryReport(TamExpBase& exception);

// Shows "\nException \"<message>\" at line <line> in file <file>.\n" in a plain message box
// with the title "TamLib error" and gives its answer. A null `message` reads "unknown error".
// The box belongs to `parent`, or to the frame window when that is null, or to none when there
// is no frame window.
int ShowException(std::int32_t line, const wchar_t* file, CWnd* parent, const wchar_t* message);

// Set while a structured exception is being turned into an object; a fault of that work is not
// translated again.
extern bool translatingSeException;

// A translator of structured exceptions, for the program that owns the threads: throws a pointer to
// a new TamExpWinSeException. Returns when `translatingSeException` is set, so that the platform
// goes on with its own handling. Intended: without memory for the object a null pointer is thrown
// and the flag stays set.
void TranslateSeException(unsigned code, _EXCEPTION_POINTERS* pointers);

// The same as a filter of unhandled exceptions, with the code 1000. Returns 0 when the
// flag was set.
long SeExceptionFilter(_EXCEPTION_POINTERS* pointers);

}  // namespace TamLib

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
