#include "config/shared_attributes.h"

#include <functional>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ads::detail {

namespace {
using Key = std::pair<std::string_view, std::string_view>;

struct KeyHash {
    size_t operator()(const Key& key) const {
        const std::hash<std::string_view> hash;
        return hash(key.first) * 31 + hash(key.second);
    }
};
}  // namespace

class TextStore {
    struct ListHash {
        size_t operator()(const SharedList* list) const { return list->hash; }
    };
    struct ListEqual {
        bool operator()(const SharedList* a, const SharedList* b) const {
            if (a->items.size() != b->items.size()) return false;
            for (size_t i = 0; i < a->items.size(); ++i) {
                if (a->items[i].pair_ != b->items[i].pair_) return false;
            }
            return true;
        }
    };

    static size_t HashOf(const std::vector<ConfigNode::Attribute>& items) {
        size_t hash = items.size();
        for (const ConfigNode::Attribute& a : items) hash = hash * 1000003 ^ std::hash<const void*>()(a.pair_);
        return hash;
    }

public:
    const SharedAttribute* Acquire(std::string_view name, std::string_view value) {
        std::lock_guard<std::mutex> lock(mutex_);
        auto found = pairs_.find(Key(name, value));
        if (found != pairs_.end()) {
            // A pair whose last user is letting go is never taken back: it
            // leaves the table here and a new one takes its place.
            std::atomic<uint32_t>& users = found->second->users;
            for (uint32_t n = users.load(std::memory_order_relaxed); n != 0;) {
                if (users.compare_exchange_weak(n, n + 1, std::memory_order_relaxed)) return found->second;
            }
            pairs_.erase(found);
        }
        auto* shared = new SharedAttribute;
        shared->store = this;
        shared->name.assign(name.data(), name.size());
        shared->value.assign(value.data(), value.size());
        pairs_.emplace(Key(shared->name, shared->value), shared);
        return shared;
    }

    // Called once, by whoever took the count to zero.
    void Release(const SharedAttribute* shared) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            auto found = pairs_.find(Key(shared->name, shared->value));
            if (found != pairs_.end() && found->second == shared) pairs_.erase(found);
        }
        delete shared;
    }

    const SharedList* AcquireList(std::vector<ConfigNode::Attribute>* items) {
        SharedList probe;
        probe.hash = HashOf(*items);
        probe.items.swap(*items);
        std::unique_lock<std::mutex> lock(mutex_);
        auto found = lists_.find(&probe);
        if (found != lists_.end()) {
            const SharedList* list = *found;
            std::atomic<uint32_t>& users = list->users;
            for (uint32_t n = users.load(std::memory_order_relaxed); n != 0;) {
                if (users.compare_exchange_weak(n, n + 1, std::memory_order_relaxed)) {
                    lock.unlock();
                    for (const ConfigNode::Attribute& a : probe.items) ReleaseAttribute(a.pair_);
                    return list;
                }
            }
            lists_.erase(found);
        }
        auto* list = new SharedList;
        list->store = this;
        list->hash = probe.hash;
        list->items.swap(probe.items);
        lists_.insert(list);
        return list;
    }

    void ReleaseList(const SharedList* shared) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            auto found = lists_.find(const_cast<SharedList*>(shared));
            if (found != lists_.end() && *found == shared) lists_.erase(found);
        }
        for (const ConfigNode::Attribute& a : shared->items) ReleaseAttribute(a.pair_);
        delete shared;
    }

    size_t Count() {
        std::lock_guard<std::mutex> lock(mutex_);
        return pairs_.size();
    }

private:
    std::mutex mutex_;
    std::unordered_map<Key, SharedAttribute*, KeyHash> pairs_;
    std::unordered_set<SharedList*, ListHash, ListEqual> lists_;
};

namespace {
// Kept past static destruction while it holds anything: a node that outlives
// it (a leaked or a static tree) still releases into a live store.
TextStore*& StorePointer() {
    static TextStore* store = nullptr;
    return store;
}

TextStore& ThisModuleStore() {
    TextStore*& store = StorePointer();
    if (store == nullptr) store = new TextStore;
    return *store;
}

// A module that is unloaded (the plug-in freed by its host) takes its empty
// store with it; its pointer would otherwise go, and the store be lost.
struct EmptyStoreRelease {
    ~EmptyStoreRelease() {
        TextStore*& store = StorePointer();
        if (store != nullptr && store->Count() == 0) {
            delete store;
            store = nullptr;
        }
    }
} empty_store_release;
}  // namespace

const SharedAttribute* AcquireAttribute(std::string_view name, std::string_view value) {
    return ThisModuleStore().Acquire(name, value);
}

const SharedAttribute* ShareAttribute(const SharedAttribute* shared) {
    if (shared->store == &ThisModuleStore()) {
        shared->users.fetch_add(1, std::memory_order_relaxed);
        return shared;
    }
    return AcquireAttribute(shared->name, shared->value);
}

void ReleaseAttribute(const SharedAttribute* shared) {
    if (shared == nullptr) return;
    if (shared->users.fetch_sub(1, std::memory_order_acq_rel) == 1) shared->store->Release(shared);
}

const SharedList* AcquireList(std::vector<ConfigNode::Attribute>* items) {
    return ThisModuleStore().AcquireList(items);
}

const SharedList* ShareList(const SharedList* shared) {
    if (shared->store != &ThisModuleStore()) return nullptr;
    shared->users.fetch_add(1, std::memory_order_relaxed);
    return shared;
}

void ReleaseList(const SharedList* shared) {
    if (shared == nullptr) return;
    if (shared->users.fetch_sub(1, std::memory_order_acq_rel) == 1) shared->store->ReleaseList(shared);
}

size_t StoredAttributeCount() { return ThisModuleStore().Count(); }

}  // namespace ads::detail
