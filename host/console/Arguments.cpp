#include "host/console/Arguments.h"

#include <algorithm>
#include <stdexcept>

#include "host/editor/Nearest.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using editor::fromUtf8;
using editor::toUtf8;

[[noreturn]] void refuse(const std::string& sentence) {
    throw std::invalid_argument(sentence);
}

bool isSlash(const OptionForm& form, const std::string& word) {
    return *form.slash != '\0' && editor::equalIgnoringCase(fromUtf8(word), fromUtf8(form.slash));
}

std::string writeSo(const std::string& word) {
    return " (write ./" + word + " for a file of that name)";
}

class Reader {
  public:
    Reader(const std::vector<std::string>& words, const std::vector<OptionForm>& forms)
        : words_(words), forms_(forms) {}

    Arguments read() {
        while (next_ < words_.size()) {
            const std::string& word = words_[next_++];
            if (word == "--") return restAreNames();
            if (!isOption(word))
                takeName(word);
            else if (word == "-")
                refuse("'-' is no drawing" + writeSo(word));
            else
                takeOption(word);
        }
        result_.namesBeforeDashes = result_.names.size();
        return std::move(result_);
    }

  private:
    bool isOption(const std::string& word) const {
        return word.substr(0, 1) == "-" ||
               std::any_of(forms_.begin(), forms_.end(),
                           [&](const OptionForm& form) { return isSlash(form, word); });
    }

    Arguments restAreNames() {
        result_.namesBeforeDashes = result_.names.size();
        while (next_ < words_.size()) takeName(words_[next_++]);
        return std::move(result_);
    }

    void takeName(const std::string& name) {
        if (name.empty()) refuse("the name of a drawing is empty");
        result_.names.push_back(name);
    }

    // "--output=a.dxf" and "-oa.dxf" have their value in them.
    void takeOption(const std::string& word) {
        const bool isLong = word.substr(0, 2) == "--";
        const std::size_t equals = isLong ? word.find('=') : std::string::npos;
        const std::string typed = word.substr(0, equals);
        if (const OptionForm* form = find(typed)) {
            if (equals == std::string::npos) return takeOption(*form, typed);
            return takeValue(*form, typed, word.substr(equals + 1));
        }
        const OptionForm* const form = isLong ? nullptr : find(word.substr(0, 2));
        if (form == nullptr || *form->needs == '\0') refuseStranger(typed);
        if (form->isFile && word[2] == '=')
            refuse(std::string(form->letter) + " and its value have a blank between them, no '='" +
                   writeSo(word.substr(2)));
        takeValue(*form, form->letter, word.substr(2));
    }

    const OptionForm* find(const std::string& typed) const {
        const auto found = std::find_if(forms_.begin(), forms_.end(), [&](const OptionForm& form) {
            return typed == form.name || typed == form.letter || isSlash(form, typed);
        });
        return found == forms_.end() ? nullptr : &*found;
    }

    [[noreturn]] void refuseStranger(const std::string& typed) const {
        std::vector<std::wstring> names;
        for (const OptionForm& form : forms_) names.push_back(fromUtf8(form.name));
        refuse("there is no option " + typed + toUtf8(editor::didYouMean(fromUtf8(typed), names)));
    }

    void takeOption(const OptionForm& form, const std::string& typed) {
        if (*form.needs == '\0') return note(form, typed, {});
        if (next_ == words_.size()) refuse(typed + " needs " + form.needs);
        const std::string& value = words_[next_++];
        const bool dash = form.takesDash && value == "-";
        if (form.isFile && !dash && isOption(value))
            refuse(typed + " needs " + form.needs + "; '" + value + "' is an option" +
                   (value.front() == '-' ? writeSo(value) : ""));
        takeValue(form, typed, value);
    }

    void takeValue(const OptionForm& form, const std::string& typed, const std::string& value) {
        if (*form.needs == '\0') refuse(typed + " takes no value; '=" + value + "' is too much");
        if (value.empty()) refuse(typed + " needs " + form.needs + "; what it was given is empty");
        note(form, typed, value);
    }

    void note(const OptionForm& form, const std::string& typed, const std::string& value) {
        const auto same = [&](const GivenOption& given) { return given.name == form.name; };
        const auto& known = result_.options;
        const auto first = std::find_if(known.begin(), known.end(), same);
        if (first != known.end() && !form.mayRepeat && *form.needs != '\0')
            refuse(first->typed == typed
                       ? typed + " was given twice: '" + first->value + "' and '" + value + "'"
                       : first->typed + " and " + typed +
                             " are one option, which was given twice: '" + first->value +
                             "' and '" + value + "'");
        result_.options.push_back({form.name, typed, value});
    }

    const std::vector<std::string>& words_;
    const std::vector<OptionForm>& forms_;
    std::size_t next_ = 0;
    Arguments result_;
};

}  // namespace

bool Arguments::has(std::string_view option) const {
    return std::any_of(options.begin(), options.end(),
                       [&](const GivenOption& given) { return given.name == option; });
}

std::string Arguments::value(std::string_view option) const {
    const std::vector<std::string> all = values(option);
    return all.empty() ? std::string() : all.front();
}

std::vector<std::string> Arguments::values(std::string_view option) const {
    std::vector<std::string> all;
    for (const GivenOption& given : options)
        if (given.name == option) all.push_back(given.value);
    return all;
}

void refuseMisplaced(const Arguments& given, const std::vector<OptionForm>& forms) {
    for (const GivenOption& option : given.options)
        for (const OptionForm& form : forms)
            if (option.name == form.name && *form.elsewhere != '\0')
                refuse(option.typed + " " + form.elsewhere);
}

Arguments readArguments(const std::vector<std::string>& words,
                        const std::vector<OptionForm>& forms) {
    return Reader(words, forms).read();
}

}  // namespace host::console
