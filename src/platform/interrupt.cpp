#include "platform/interrupt.h"

#include "platform/interrupt_slots.h"

namespace ads::platform {

namespace interrupt {

// Statics of the namespace, not of a function: a signal handler must not be
// the one to run a first-use initialisation.
namespace {
std::atomic<bool> g_interrupted{false};
Slots<GuardedFile*> g_files;
}  // namespace

std::atomic<bool>& Interrupted() { return g_interrupted; }
Slots<GuardedFile*>& GuardedFiles() { return g_files; }

size_t GuardedNow(const GuardedFile** files) {
    size_t count = 0;
    for (size_t i = 0; i < kSlots; ++i) {
        if (const GuardedFile* file = g_files.Get(i)) files[count++] = file;
    }
    return count;
}

}  // namespace interrupt

bool Interrupted() { return interrupt::Interrupted().load(); }

// With every slot taken the file goes unguarded: the build itself goes on.
InterruptGuard::InterruptGuard(const std::string& path, const std::string& note) {
    auto* file = new interrupt::GuardedFile{interrupt::SystemFormOf(path), note + "\n"};
    slot_ = interrupt::GuardedFiles().Claim(file);
    if (slot_ < 0) delete file;
}

InterruptGuard::~InterruptGuard() {
    if (slot_ < 0) return;
    interrupt::GuardedFile* file = interrupt::GuardedFiles().Release(slot_);
    if (!interrupt::Interrupted().load()) delete file;
}

}  // namespace ads::platform
