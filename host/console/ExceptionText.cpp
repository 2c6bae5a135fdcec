#include "host/console/ExceptionText.h"

#include <cxxabi.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <string_view>
#include <typeinfo>

#include "host/editor/Words.h"
#include "tam/TamExceptions.h"

namespace host::console {

namespace {

std::string className(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    return status == 0 ? name.get() : type.name();
}

std::string quoted(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    return text.empty() ? std::string() : " \"" + text + "\"";
}

std::string describe(const TamLib::TamExpBase& exception) {
    const wchar_t* const file = exception.file == nullptr ? L"an unknown source" : exception.file;
    return className(typeid(exception)) + quoted(editor::toUtf8(exception.message)) + " at line " +
           std::to_string(exception.line) + " in " + editor::toUtf8(file);
}

std::string describe(const std::exception& exception) {
    return className(typeid(exception)) + quoted(exception.what());
}

// The class of whatever is being handled, when nothing better is known.
std::string describeUnknown() {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    return type == nullptr ? "an exception of an unknown class"
                           : "an exception of class " + className(*type);
}

}  // namespace

std::string describeException() {
    try {
        throw;
    } catch (const TamLib::TamExpBase& exception) {
        return describe(exception);
    } catch (TamLib::TamExpWinSeException* exception) {
        if (exception == nullptr)
            return "TamLib::TamExpWinSeException without an object, for want of memory";
        std::string text = describe(*exception);
        exception->Delete();
        return text;
    } catch (const TamLib::TamExpBase* exception) {
        return exception == nullptr ? describeUnknown() : describe(*exception);
    } catch (const std::exception& exception) {
        return describe(exception);
    } catch (const std::exception* exception) {
        return exception == nullptr ? describeUnknown() : describe(*exception);
    } catch (const char* text) {
        return "the text" + quoted(text == nullptr ? "" : text);
    } catch (const wchar_t* text) {
        return "the text" + quoted(text == nullptr ? "" : editor::toUtf8(text));
    } catch (...) {
        return describeUnknown();
    }
}

}  // namespace host::console
