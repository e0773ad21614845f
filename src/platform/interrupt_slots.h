// The tables an interruption reads (interrupt.h), shared by the backends.
// A signal handler, or the thread Windows starts for a console event, reads
// them while other threads claim and release slots: every slot is one
// lock-free atomic word, and nothing here allocates or locks.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>

namespace ads::platform::interrupt {

// Room for the largest -j of orvhost, and some.
constexpr size_t kSlots = 1100;

template <typename T>
class Slots {
public:
    // A free slot, now holding `value` (never T{}); -1 when none is free.
    int Claim(T value) {
        for (size_t i = 0; i < kSlots; ++i) {
            T expected{};
            if (slots_[i].compare_exchange_strong(expected, value)) return static_cast<int>(i);
        }
        return -1;
    }
    void Set(int slot, T value) { slots_[slot].store(value); }
    // Empties the slot; answers what it held.
    T Release(int slot) { return slots_[slot].exchange(T{}); }
    T Get(size_t slot) const { return slots_[slot].load(); }

private:
    std::atomic<T> slots_[kSlots]{};
};

// A file to delete, in the form the system takes, and what to say then.
struct GuardedFile {
    std::string path;
    std::string note;
};

// Set by the interruption before it reads any slot. Whoever releases a slot
// and then finds it set must leave what the slot held alone (not free it,
// not close it): the interruption may be using it, and the process ends soon.
std::atomic<bool>& Interrupted();
Slots<GuardedFile*>& GuardedFiles();

// The files guarded at the moment of the interruption, into `files` (room
// for kSlots), and their number: their commands end meanwhile, and their
// guards with them.
size_t GuardedNow(const GuardedFile** files);

// The path as the system takes it (on POSIX "\" becomes "/").
std::string SystemFormOf(const std::string& path);

}  // namespace ads::platform::interrupt
