// The library's map: chains in buckets, entries in their order of insertion within a chain, nothing
// ever removed. For small and middling sets, such as counts per class or names of layers.
//
// The bucket of a key is its hash modulo the number of buckets. The table starts with the buckets
// it was built with; intended: the first insertion into an empty table leaves one, and from there
// the series is 1, 10, 37, 118, 361 and so on (3n + 7). A table grows when a chain reaches
// `maxChain` while there are more entries than buckets.
//
// References from operator[] die with the next insertion. For values that are pointers the table
// does not own what they point to. TamExpNoMem when memory for buckets is refused (see Array); the
// table is whole then. Intended: memory refused to a chain is not noticed (see LwArray).
#pragma once

#include <cassert>
#include <cstdint>

#include "datastruct/Array.h"
#include "datastruct/Bytes.h"
#include "datastruct/LwArray.h"

namespace TamLib {

// When two keys are the same one: integers and pointers by value. Other keys specialise it.
template <class K>
struct HashKeys {
    static bool Equal(const K& first, const K& second) { return first == second; }
};

template <class K, class V>
class Hash {
  public:
    using HashFunction = std::uint32_t (*)(const K*);

    struct Pair {
        K key;
        V value;
    };
    using Chain = LwArray<Pair, 5>;

    // A table of `bucketCount` empty chains; 10 is the usual `chainLimit`. A null `function` hashes
    // the bytes of the key by ByteHash.
    explicit Hash(std::uint32_t bucketCount = 1, std::uint32_t chainLimit = 10,
                  HashFunction function = nullptr)
        : hashFunction(function), buckets(bucketCount), maxChain(chainLimit) {
        buckets.count = bucketCount;
    }
    Hash(const Hash&) = default;
    Hash& operator=(const Hash&) = default;
    virtual ~Hash() { Clear(); }

    // True and the value copied when the key is present; otherwise false, and `*value` stays.
    bool Lookup(const K& key, V* value) const {
        const Pair* pair = FindPair(key);
        if (pair == nullptr) return false;
        *value = pair->value;
        return true;
    }

    bool Contains(const K& key) const { return FindPair(key) != nullptr; }

    // The key's value; a missing key is inserted with the value V(). Grows before it adds to a
    // chain of at least `maxChain`.
    V& operator[](const K& key);

    // Stores the value; a present key has its value replaced. Intended: unlike operator[] it grows
    // after it has added, to a chain of more than `maxChain` before.
    void Set(const K& key, const V& value);

    // Spreads the entries over `bucketCount` chains, in the order in which they stand; a negative
    // number means three times the present one and 7. 0 is for an empty table only. The table stays
    // as it was when memory is refused.
    void Rehash(std::int32_t bucketCount);

    // Gives up all entries and buckets.
    void Clear() {
        buckets.Clear();
        entries = 0;
    }

    std::uint32_t HashOf(const K& key) const {
        return hashFunction != nullptr ? hashFunction(&key) : ByteHash(&key, kElementBytes<K>);
    }

    HashFunction hashFunction;
    Array<Chain> buckets;
    std::uint32_t maxChain;
    std::uint32_t entries = 0;

  private:
    Chain& ChainOf(const K& key) { return buckets.data[HashOf(key) % buckets.count]; }
    static Pair* FindIn(const Chain& chain, const K& key);
    const Pair* FindPair(const K& key) const;
    bool MayGrow() const { return entries > buckets.count; }
};

template <class K, class V>
typename Hash<K, V>::Pair* Hash<K, V>::FindIn(const Chain& chain, const K& key) {
    Pair* const end = chain.data + chain.count;
    for (Pair* pair = chain.data; pair != end; ++pair) {
        if (HashKeys<K>::Equal(pair->key, key)) return pair;
    }
    return nullptr;
}

template <class K, class V>
const typename Hash<K, V>::Pair* Hash<K, V>::FindPair(const K& key) const {
    if (entries == 0) return nullptr;
    return FindIn(buckets.data[HashOf(key) % buckets.count], key);
}

template <class K, class V>
V& Hash<K, V>::operator[](const K& key) {
    if (entries == 0) Rehash(1);
    Chain* chain = &ChainOf(key);
    if (Pair* found = FindIn(*chain, key)) return found->value;
    Pair added{key, V()};
    if (chain->count >= maxChain && MayGrow()) {
        Rehash(-1);
        chain = &ChainOf(added.key);
    }
    Pair& pair = (*chain)[static_cast<std::uint32_t>(chain->AddMoved(added))];
    ++entries;
    return pair.value;
}

template <class K, class V>
void Hash<K, V>::Set(const K& key, const V& value) {
    if (entries == 0) Rehash(1);
    Chain& chain = ChainOf(key);
    if (Pair* found = FindIn(chain, key)) {
        found->value = value;
        return;
    }
    Pair added{key, value};
    const std::int32_t index = chain.AddMoved(added);
    ++entries;
    if (static_cast<std::uint32_t>(index) > maxChain && MayGrow()) Rehash(-1);
}

template <class K, class V>
void Hash<K, V>::Rehash(std::int32_t bucketCount) {
    const std::uint32_t n =
        bucketCount < 0 ? 3 * buckets.count + 7 : static_cast<std::uint32_t>(bucketCount);
    assert(n != 0 || entries == 0);
    Array<Chain> fresh(n);
    fresh.count = n;
    for (const Chain& chain : buckets) {
        for (const Pair& pair : chain) fresh.data[HashOf(pair.key) % n].Add(pair);
    }
    buckets.SwapBlocks(fresh);
}

}  // namespace TamLib
