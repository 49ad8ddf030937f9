#pragma once

#include "base/ZoArray.h"
#include "base/ZoPlexManager.h"
#include "base/ZoSmartPointer.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <new>
#include <type_traits>
#include <vector>

/// The hash of a string key: h = h * 33 + c over the UTF-16 code units from h = 0, modulo 2^32.
/// Stored bucket orders depend on it, so it never changes. A key type of your own needs a
/// ZoHashKey overload of its own.
/// @ingroup containers
inline uint32_t ZoHashKey(const CString& key)
{
    // Four code units per step while none of them is the terminator: h * 33^4 + c0 * 33^3 + ... is
    // the same value modulo 2^32 as four single steps, with a shorter chain of dependent multiplies.
    const char16_t* unit = key.GetString();
    const char16_t* const end = unit + key.GetLength();
    uint32_t hash = 0;
    for (; end - unit >= 4 && unit[0] != 0 && unit[1] != 0 && unit[2] != 0 && unit[3] != 0; unit += 4)
        hash = hash * (33u * 33u * 33u * 33u) + unit[0] * (33u * 33u * 33u) + unit[1] * (33u * 33u) + unit[2] * 33u + unit[3];
    for (; *unit != 0; ++unit)
        hash = hash * 33u + *unit;
    return hash;
}

/// The hash of an integer or enumeration key: the key shifted right by 4 (as unsigned 64 bits), cut
/// to 32 bits. Keys that differ only in their low four bits share a bucket.
/// @ingroup containers
template <class Key, std::enable_if_t<std::is_integral_v<Key> || std::is_enum_v<Key>, int> = 0>
inline uint32_t ZoHashKey(Key key)
{
    return static_cast<uint32_t>(static_cast<uint64_t>(key) >> 4);
}

/// The hash of a pointer key: the address shifted right by 4, cut to 32 bits.
/// @ingroup containers
template <class Pointee>
inline uint32_t ZoHashKey(Pointee* key)
{
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(key) >> 4);
}

/// ZoMap's `Flags` bit for a bucket table that keeps the size it was given.
const int ZoMapFixedBucketCount = 0x01;

/// ZoMap<Key, Value, flags>: a chained hash map. The bucket table is a ZoArray of association
/// pointers (17 buckets unless chosen otherwise); associations come from a ZoPlexManager, so inserting
/// allocates no memory of its own most of the time. A new association goes to the front of its
/// bucket's chain and chains are searched from their head.
///
/// Keys hash with ZoHashKey: strings as h = h * 33 + c over their UTF-16 code units (up to the first
/// NUL, modulo 2^32, from h = 0), unsigned integers and pointers as (key >> 4). The bucket is the hash
/// modulo the bucket count. Iteration visits buckets in order and each chain from its head.
///
/// The bucket table is made on the first insertion (or at construction when asked) and released when
/// the last association is removed. When the associations outnumber the buckets the table grows to
/// 2n + 1 buckets and the chains are relinked (no association moves in memory), so a lookup walks
/// about one association whatever the map holds; a table released on emptying starts again at the
/// size it was given. With `Flags` holding ZoMapFixedBucketCount the table never grows: for maps
/// whose bucket order is a rule of their owner (the thread pool serves submitters in that order).
/// Positions are opaque: a position is an association, null at the end. Not synchronised.
/// @ingroup containers
template <class Key, class Value, int Flags = 0>
class ZO_TEMPLATE_API ZoMap
{
public:
    /// One key-value pair, a node of the pool; chained within its bucket through `next`.
    struct SAssociation
    {
        /// The next association of the same bucket, or null.
        SAssociation* next;
        /// The bucket the association hangs in; iteration continues from it.
        uint32_t bucketIndex;
        /// The key's full hash: a chain walk compares it before the key, so a string key is compared
        /// only when it very likely matches, and growing never hashes a key again.
        uint32_t hash;
        /// The key, copied in on insertion.
        Key key;
        /// The value, default-made on insertion.
        Value value;
    };
    /// The pool the associations come from.
    typedef ZoPlexManager<SAssociation, 0, 0> PlexManager;
    /// Opaque iteration position: an association; null at the end.
    typedef void* Position;

    /// 17: the bucket count the library gives every map it makes.
    static const uint32_t sc_uiDefaultBucketCount = 17;

    /// `createBuckets` makes the (cleared) bucket table at once instead of on the first insertion.
    explicit ZoMap(uint32_t nodesPerBlock = 10, uint32_t bucketCount = sc_uiDefaultBucketCount, bool createBuckets = false)
        : m_plexManager(new PlexManager(nodesPerBlock)), m_count(0), m_bucketCount(bucketCount == 0 ? 1 : bucketCount),
          m_initialBucketCount(m_bucketCount)
    {
        if (createBuckets)
            createBucketTable();
    }
    /// A map with `other`'s pool block size and current bucket count, filled with copies of its pairs (a pool of its own).
    ZoMap(const ZoMap& other) : ZoMap(other.m_plexManager->GetNodesPerBlock(), other.m_bucketCount)
    {
        for (Position position = other.GetStartPosition(); position != nullptr;) {
            const SAssociation* association = other.nextAssociation(position);
            (*this)[association->key] = association->value;
        }
    }
    /// Removes this map's pairs, then inserts copies of `other`'s; the bucket count stays this map's.
    ZoMap& operator=(const ZoMap& other)
    {
        if (this != &other) {
            RemoveAll();
            for (Position position = other.GetStartPosition(); position != nullptr;) {
                const SAssociation* association = other.nextAssociation(position);
                (*this)[association->key] = association->value;
            }
        }
        return *this;
    }
    ~ZoMap() { RemoveAll(); }

    /// Number of key-value pairs; 0 for an empty map.
    uint32_t GetCount() const { return m_count; }
    /// True when the map holds no pair.
    bool IsEmpty() const { return m_count == 0; }
    /// The number of buckets, whether or not the table exists yet.
    uint32_t GetHashTableSize() const { return m_bucketCount; }
    /// True while the bucket table exists (after the first insertion, or when made at construction).
    bool HasHashTable() const { return m_buckets.GetCount() != 0; }
    /// Changes the bucket count; only while the map is empty (otherwise nothing happens).
    void InitHashTable(uint32_t bucketCount, bool createNow = true)
    {
        if (m_count != 0 || bucketCount == 0)
            return;
        m_buckets.SetMemoryElementCount(0, 0);
        m_bucketCount = m_initialBucketCount = bucketCount;
        if (createNow)
            createBucketTable();
    }

    /// The value stored under `key`, or null. Never inserts.
    Value* Find(const Key& key) const
    {
        SAssociation* association = findAssociation(key, ZoHashKey(key));
        return association != nullptr ? &association->value : nullptr;
    }
    /// Copies the value under `key` into `value` and returns true; false (and `value` untouched) when absent.
    bool Lookup(const Key& key, Value& value) const
    {
        const Value* found = Find(key);
        if (found == nullptr)
            return false;
        value = *found;
        return true;
    }
    /// The value under `key`, inserted default-constructed when absent.
    Value& operator[](const Key& key)
    {
        const uint32_t hash = ZoHashKey(key);
        if (SAssociation* association = findAssociation(key, hash))
            return association->value;
        return insertAssociation(key, hash)->value;
    }
    /// Stores `value` under `key`, replacing an earlier value.
    void SetAt(const Key& key, const Value& value) { (*this)[key] = value; }
    /// False when the key was absent. Removing the last association releases the bucket table.
    bool RemoveKey(const Key& key)
    {
        if (!HasHashTable())
            return false;
        const uint32_t hash = ZoHashKey(key);
        SAssociation** link = &m_buckets[hash % m_bucketCount];
        for (SAssociation* association = *link; association != nullptr; association = association->next) {
            if (association->hash == hash && association->key == key) {
                *link = association->next;
                freeAssociation(association);
                if (--m_count == 0) {
                    m_buckets.SetMemoryElementCount(0, 0);
                    m_bucketCount = m_initialBucketCount;
                }
                return true;
            }
            link = &association->next;
        }
        return false;
    }
    /// Removes every pair, releases the bucket table and returns to the initial bucket count.
    void RemoveAll()
    {
        for (uint32_t bucket = 0; bucket < m_buckets.GetCount(); ++bucket) {
            SAssociation* association = m_buckets[bucket];
            while (association != nullptr) {
                SAssociation* next = association->next;
                freeAssociation(association);
                association = next;
            }
        }
        m_count = 0;
        m_buckets.SetMemoryElementCount(0, 0);
        m_bucketCount = m_initialBucketCount;
    }

    /// Position of the first pair in bucket order; null for an empty map.
    Position GetStartPosition() const { return firstFrom(0); }
    /// Requires: position is not null. Hands out the association's key and value and advances.
    void GetNextAssoc(Position& position, Key& key, Value& value) const
    {
        const SAssociation* association = nextAssociation(position);
        key = association->key;
        value = association->value;
    }
    /// The pool the associations come from.
    const ZoSmartPointer<PlexManager>& GetPlexManager() const { return m_plexManager; }

private:
    void createBucketTable()
    {
        m_buckets.SetElementCount(m_bucketCount, 0);
        m_buckets.Reset();
    }
    SAssociation* findAssociation(const Key& key, uint32_t hash) const
    {
        if (!HasHashTable())
            return nullptr;
        for (SAssociation* association = m_buckets[hash % m_bucketCount]; association != nullptr; association = association->next)
            if (association->hash == hash && association->key == key)
                return association;
        return nullptr;
    }
    SAssociation* insertAssociation(const Key& key, uint32_t hash)
    {
        if (!HasHashTable())
            createBucketTable();
        SAssociation* association = m_plexManager->AllocateNode();
        if (association == nullptr)
            throw std::bad_alloc();
        const uint32_t bucket = hash % m_bucketCount;
        try {
            new (&association->key) Key(key);
            try {
                new (&association->value) Value();
            } catch (...) {
                association->key.~Key();
                throw;
            }
        } catch (...) {
            m_plexManager->FreeNode(association);
            throw;
        }
        association->bucketIndex = bucket;
        association->hash = hash;
        association->next = m_buckets[bucket];
        m_buckets[bucket] = association;
        ++m_count;
        // One association per bucket at most, as the standard unordered map keeps it: with four a
        // lookup of a 32-bit key walked twice as far and lost to it.
        if ((Flags & ZoMapFixedBucketCount) == 0 && m_count > m_bucketCount && m_bucketCount < 0x7FFFFFFFu)
            rehash(m_bucketCount * 2 + 1);
        return association;
    }
    /// Relinks every association into a table of `bucketCount` buckets; chains keep their relative
    /// order within each new bucket.
    void rehash(uint32_t bucketCount)
    {
        ZoArray<SAssociation*, 0> buckets;
        buckets.SetElementCount(bucketCount, 0);
        buckets.Reset();
        std::vector<SAssociation**> tails(bucketCount);
        for (uint32_t i = 0; i < bucketCount; ++i)
            tails[i] = &buckets[i];
        for (uint32_t old = 0; old < m_buckets.GetCount(); ++old) {
            for (SAssociation* association = m_buckets[old]; association != nullptr;) {
                SAssociation* next = association->next;
                const uint32_t bucket = association->hash % bucketCount;
                association->bucketIndex = bucket;
                association->next = nullptr;
                *tails[bucket] = association;
                tails[bucket] = &association->next;
                association = next;
            }
        }
        m_buckets = buckets;
        m_bucketCount = bucketCount;
    }
    void freeAssociation(SAssociation* association)
    {
        association->value.~Value();
        association->key.~Key();
        m_plexManager->FreeNode(association);
    }
    Position firstFrom(uint32_t bucket) const
    {
        for (; bucket < m_buckets.GetCount(); ++bucket)
            if (m_buckets[bucket] != nullptr)
                return m_buckets[bucket];
        return nullptr;
    }
    const SAssociation* nextAssociation(Position& position) const
    {
        const auto* association = static_cast<const SAssociation*>(position);
        position = association->next != nullptr ? association->next : firstFrom(association->bucketIndex + 1);
        return association;
    }

    ZoSmartPointer<PlexManager> m_plexManager;
    ZoArray<SAssociation*, 0> m_buckets;
    uint32_t m_count;
    uint32_t m_bucketCount;
    uint32_t m_initialBucketCount;
};
