// The ledger: what has been handed out and not given back. Audited at the end of every test and of
// every command. The database keeps objects and iterators here, the editor adds its own kinds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host::database {

class Ledger {
  public:
    // Text for one entry, asked for when a leak is reported.
    using Describe = std::string (*)(std::uint64_t key);

    static Ledger& instance();

    // One opening more of `key` of `kind` ("object", "iterator", "selection set", "result buffer").
    // `describer` may be null; the key then stands for itself.
    void opened(std::string_view kind, std::uint64_t key, Describe describer = nullptr);
    // One opening less; what is not in the ledger is left alone.
    void closed(std::string_view kind, std::uint64_t key);
    // Fixes the text of an entry whose subject is about to go.
    void keepText(std::string_view kind, std::uint64_t key);

    // Openings of one kind, and of all.
    std::size_t count(std::string_view kind) const;
    std::size_t count() const;

    // One line for each entry: "object: AcDbText 2F open for read, 2 times". Empty when all is
    // given back.
    std::vector<std::string> leaks() const;

    // Starts afresh, after the leaks were reported.
    void forget();

  private:
    struct Entry {
        std::size_t count = 0;
        Describe describe = nullptr;
        std::string text;  // wins over `describe`
    };
    using Entries = std::unordered_map<std::uint64_t, Entry>;

    static std::string describe(std::uint64_t key, const Entry& entry);

    std::map<std::string, Entries, std::less<>> kinds_;
};

}  // namespace host::database
