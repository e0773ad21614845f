#include "config/shared_text.h"

#include <mutex>
#include <unordered_map>

namespace ads::detail {

class TextStore {
public:
    const SharedText* Acquire(std::string_view text) {
        std::lock_guard<std::mutex> lock(mutex_);
        auto found = texts_.find(text);
        if (found != texts_.end()) {
            // A text whose last user is letting go is never taken back: it
            // leaves the table here and a new one takes its place.
            std::atomic<uint32_t>& users = found->second->users;
            for (uint32_t n = users.load(std::memory_order_relaxed); n != 0;) {
                if (users.compare_exchange_weak(n, n + 1, std::memory_order_relaxed)) return found->second;
            }
            texts_.erase(found);
        }
        auto* shared = new SharedText;
        shared->store = this;
        shared->text.assign(text.data(), text.size());
        texts_.emplace(std::string_view(shared->text), shared);
        return shared;
    }

    // Called once, by whoever took the count to zero.
    void Release(const SharedText* shared) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            auto found = texts_.find(std::string_view(shared->text));
            if (found != texts_.end() && found->second == shared) texts_.erase(found);
        }
        delete shared;
    }

    size_t Count() {
        std::lock_guard<std::mutex> lock(mutex_);
        return texts_.size();
    }

private:
    std::mutex mutex_;
    std::unordered_map<std::string_view, SharedText*> texts_;
};

namespace {
// Never destroyed: a node that outlives static destruction (a leaked or a
// static tree) still releases into a live store.
TextStore& ThisModuleStore() {
    static TextStore* store = new TextStore;
    return *store;
}
}  // namespace

const SharedText* AcquireText(std::string_view text) { return ThisModuleStore().Acquire(text); }

const SharedText* ShareText(const SharedText* shared) {
    if (shared->store == &ThisModuleStore()) {
        shared->users.fetch_add(1, std::memory_order_relaxed);
        return shared;
    }
    return AcquireText(shared->text);
}

void ReleaseText(const SharedText* shared) {
    if (shared == nullptr) return;
    if (shared->users.fetch_sub(1, std::memory_order_acq_rel) == 1) shared->store->Release(shared);
}

size_t StoredTextCount() { return ThisModuleStore().Count(); }

}  // namespace ads::detail
