#include "host/console/Arguments.h"

#include <algorithm>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "host/editor/Nearest.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using editor::fromUtf8;
using editor::toUtf8;

[[noreturn]] void refuse(const std::string& sentence) {
    throw std::invalid_argument(sentence);
}

bool isSwitch(const std::string& word, const std::vector<OptionForm>& forms) {
    return std::any_of(forms.begin(), forms.end(), [&](const OptionForm& form) {
        return *form.slash != '\0' &&
               editor::equalIgnoringCase(fromUtf8(word), fromUtf8(form.slash));
    });
}

std::string writeSo(const std::string& word) {
    return " (write ./" + word + " for a file of that name)";
}

void refuseValue(const OptionForm& form, const std::string& typed, const std::string& value,
                 const std::vector<OptionForm>& forms) {
    if (*form.needs == '\0') {
        if (value != "true") refuse(typed + " takes no value; '=" + value + "' is too much");
        return;
    }
    const std::string needs = typed + " needs " + form.needs + "; ";
    if (value.empty()) refuse(needs + "what it was given is empty");
    if (!form.isFile || (form.takesDash && value == "-")) return;
    if (value.front() == '=' && typed == form.letter)
        refuse(typed + " and its value have a blank between them, no '='" + writeSo(value));
    if (value.front() == '-') refuse(needs + "'" + value + "' is an option" + writeSo(value));
    if (isSwitch(value, forms)) refuse(needs + "'" + value + "' is an option");
}

void take(const OptionForm& form, const std::string& typed, const std::string& value,
          Arguments& result) {
    const auto& known = result.options;
    const auto first = std::find_if(known.begin(), known.end(), [&](const GivenOption& given) {
        return given.name == form.name;
    });
    if (first != known.end() && !form.mayRepeat && *form.needs != '\0')
        refuse((first->typed == typed ? typed + " was given twice: '"
                                      : first->typed + " and " + typed +
                                            " are one option, which was given twice: '") +
               first->value + "' and '" + value + "'");
    result.options.push_back({form.name, typed, value});
}

// "--output=" would take the next word for its value. Where a shell variable was not set, that is
// a drawing, which the result must not replace.
void refuseEmptyTails(const CLI::App& app, const std::vector<std::string>& words) {
    for (const std::string& word : words) {
        if (word == "--") return;
        if (word.find('=') + 1 != word.size()) continue;
        const auto* const option = app.get_option_no_throw(word.substr(0, word.find('=')));
        if (option != nullptr && option->get_expected_max() > 0)
            refuse(option->get_name() + " needs " + option->get_type_name() +
                   "; what it was given is empty");
    }
}

void refuseStranger(const std::string& word, const std::vector<OptionForm>& forms) {
    if (word == "-") refuse("'-' is no drawing" + writeSo(word));
    const std::string typed = word.substr(0, word.find('='));
    std::vector<std::wstring> names(forms.size());
    std::transform(forms.begin(), forms.end(), names.begin(),
                   [](const OptionForm& form) { return fromUtf8(form.name); });
    refuse("there is no option " + typed + toUtf8(editor::didYouMean(fromUtf8(typed), names)));
}

// The parser leaves over, in their order, the names, "--" itself and the options it does not know.
void takeNames(const std::vector<std::string>& left, const std::vector<OptionForm>& forms,
               Arguments& result) {
    const auto dashes = std::find(left.begin(), left.end(), "--");
    for (auto word = left.begin(); word != left.end(); ++word) {
        if (word == dashes) continue;
        if (word->empty()) refuse("the name of a drawing is empty");
        if (word < dashes && word->front() == '-') refuseStranger(*word, forms);
        result.names.push_back(*word);
    }
    result.namesBeforeDashes = static_cast<std::size_t>(dashes - left.begin());
}

}  // namespace

bool Arguments::has(std::string_view option) const {
    return !values(option).empty();
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
    Arguments result;
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    app.allow_windows_style_options();
    // Each spelling is an option of the parser by itself: it tells which one was typed.
    const auto add = [&](const OptionForm& form, const std::string& typed) {
        app.add_option(typed, CLI::callback_t([&, typed](const CLI::results_t& values) {
                           refuseValue(form, typed, values.front(), forms);
                           take(form, typed, values.front(), result);
                           return true;
                       }))
            ->expected(*form.needs == '\0' ? 0 : 1)
            ->type_name(form.needs)
            ->ignore_case(*form.slash != '\0')
            ->trigger_on_parse();
    };
    for (const OptionForm& form : forms) {
        add(form, form.name);
        if (*form.letter != '\0') add(form, form.letter);
    }
    refuseEmptyTails(app, words);
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::ArgumentMismatch& error) {  // "NAME: ..."; only the last word lacks a value
        const std::string what = error.what();
        const CLI::Option* const option = app.get_option(what.substr(0, what.find(':')));
        refuse(words.back() + " needs " + option->get_type_name());
    }
    takeNames(app.remaining(), forms, result);
    return result;
}

}  // namespace host::console
