#include "host/database/Ledger.h"

#include <algorithm>

namespace host::database {

Ledger& Ledger::instance() {
    static Ledger ledger;
    return ledger;
}

void Ledger::opened(std::string_view kind, std::uint64_t key, Describe describer) {
    auto found = kinds_.find(kind);
    if (found == kinds_.end()) found = kinds_.emplace(std::string(kind), Entries{}).first;
    Entry& entry = found->second[key];
    ++entry.count;
    entry.describe = describer;
}

void Ledger::closed(std::string_view kind, std::uint64_t key) {
    const auto found = kinds_.find(kind);
    if (found == kinds_.end()) return;
    const auto entry = found->second.find(key);
    if (entry == found->second.end()) return;
    if (--entry->second.count == 0) found->second.erase(entry);
}

void Ledger::keepText(std::string_view kind, std::uint64_t key) {
    const auto found = kinds_.find(kind);
    if (found == kinds_.end()) return;
    const auto entry = found->second.find(key);
    if (entry != found->second.end()) entry->second.text = describe(key, entry->second);
}

std::size_t Ledger::count(std::string_view kind) const {
    const auto found = kinds_.find(kind);
    if (found == kinds_.end()) return 0;
    std::size_t sum = 0;
    for (const auto& [key, entry] : found->second) sum += entry.count;
    return sum;
}

std::size_t Ledger::count() const {
    std::size_t sum = 0;
    for (const auto& [kind, entries] : kinds_) sum += count(kind);
    return sum;
}

std::string Ledger::describe(std::uint64_t key, const Entry& entry) {
    if (!entry.text.empty()) return entry.text;
    return entry.describe != nullptr ? entry.describe(key) : std::to_string(key);
}

std::vector<std::string> Ledger::leaks() const {
    std::vector<std::string> lines;
    for (const auto& [kind, entries] : kinds_) {
        for (const auto& [key, entry] : entries) {
            std::string line = kind + ": " + describe(key, entry);
            if (entry.count > 1) line += ", " + std::to_string(entry.count) + " times";
            lines.push_back(std::move(line));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

void Ledger::forget() {
    kinds_.clear();
}

}  // namespace host::database
